#pragma once

#include <QString>

class IniBackend;

// The two primitives every data file goes through. No error trap of their own: a failure of the
// backend surfaces in the caller.
class Ini
{
public:
    explicit Ini(IniBackend& backend) : m_backend(backend) {}

    // At most 255 characters of the stored value, leading and trailing spaces removed; the
    // default (likewise cut and trimmed) when the entry is missing.
    QString ReadINI(const QString& section, const QString& key, const QString& defaultValue,
                    const QString& file) const;
    // Writes the value as it is; the result is the success flag, which no caller needs.
    int WriteINI(const QString& section, const QString& key, const QString& value,
                 const QString& file) const;
    // The sections the file holds, as stored (escaped characters stay escaped).
    QStringList SectionNames(const QString& file) const;

private:
    IniBackend& m_backend;
};

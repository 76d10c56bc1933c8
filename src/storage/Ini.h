#pragma once

#include <QList>
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
    // The section's entries as ReadINI reads them (cut and trimmed), keys as stored, in file
    // order.
    QList<std::pair<QString, QString>> Entries(const QString& section, const QString& file) const;
    // The same with values whole, as stored, for copying them elsewhere.
    QList<std::pair<QString, QString>> StoredEntries(const QString& section,
                                                     const QString& file) const;
    // Removes the entry ReadINI would read; the success flag.
    bool RemoveINI(const QString& section, const QString& key, const QString& file) const;

private:
    IniBackend& m_backend;
};

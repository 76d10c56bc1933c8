#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// The INI files themselves: one entry at a time, as the operating system's profile calls did.
class IniBackend
{
public:
    virtual ~IniBackend() = default;

    // The entry's value with surrounding blanks and one pair of enclosing quotes removed;
    // nullopt when the file, section or key is missing or the file cannot be read.
    virtual std::optional<QString> readEntry(const QString& file, const QString& section,
                                             const QString& key) = 0;

    // The names of the file's sections, in file order; empty when it cannot be read.
    virtual QStringList sectionNames(const QString& file) = 0;

    // Writes the value unchanged; false when nothing could be written (the file is then as
    // it was).
    virtual bool writeEntry(const QString& file, const QString& section, const QString& key,
                            const QString& value) = 0;
};

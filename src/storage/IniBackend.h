#pragma once

#include <QList>
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

    // The section's entries as reads see them (see readEntry), keys as stored, in file order.
    virtual QList<std::pair<QString, QString>> entries(const QString& file,
                                                       const QString& section) = 0;

    // Writes the value unchanged; false when nothing could be written (the file is then as
    // it was).
    virtual bool writeEntry(const QString& file, const QString& section, const QString& key,
                            const QString& value) = 0;
    // Removes the entry a read finds; false when there was none or the file could not be
    // written (it is then as it was).
    virtual bool removeEntry(const QString& file, const QString& section, const QString& key) = 0;
};

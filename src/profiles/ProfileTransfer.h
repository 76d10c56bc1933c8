#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class Ini;

// A profile in one file, to carry to another machine or into another profile: its name, its
// shortcuts, its site files (values and visits) and its Any.ini. The file is JSON (UTF-8):
//
//   {"format": "Tolvane profile", "version": 1, "profile": "<the profile's name>",
//    "files": [{"kind": "shortcuts" | "any" | "site",
//               "name": "<the file's name without the profile's one-letter prefix>",
//               "bytes": "<the file's bytes, base64>"}, ...]}
//
// The files inside are the profile's INI files byte for byte.
class ProfileTransfer
{
public:
    // Where a profile's files are.
    struct Profile
    {
        QString folder;       // the data folder
        QString prefix;       // the profile's file-name prefix
        QString profilesFile; // Profiles.ini
        int number = 1;       // 1 to 5
    };
    // What an import does, or why it is refused (then nothing is changed).
    struct Plan
    {
        QString refusal;
        QString name;
        int newFiles = 0;  // files the profile does not have yet, taken whole
        int added = 0;     // entries and shortcuts added to files it has
        int differing = 0; // entries both hold with other values
    };

    explicit ProfileTransfer(const Ini& ini) : m_ini(ini) {}

    QByteArray exportProfile(const Profile& profile, const QString& name) const;
    Plan examine(const QByteArray& document, const Profile& target) const;
    // Adds what is missing; a visit record keeps the later visit and the larger count; an entry
    // that differs takes the file's value when `takeImported`, else stays. The name is taken
    // where the target profile has none of its own. Returns what could not be written, if
    // anything.
    QString importProfile(const QByteArray& document, const Profile& target,
                          bool takeImported) const;

private:
    enum class Kind
    {
        Shortcuts,
        Any,
        Site
    };
    struct File
    {
        Kind kind;
        QString name;
        QByteArray bytes;
    };
    struct Document
    {
        QString refusal;
        QString name;
        QList<File> files;
    };
    struct Merge
    {
        bool write;
        bool takeImported;
        Plan plan;
        QStringList failures;
    };
    static Document read(const QByteArray& bytes);
    void apply(const Document& document, const Profile& target, Merge& merge) const;
    void mergeFile(const File& file, const QString& path, Merge& merge) const;
    // `sameBy`: the key that made the two sections the same (a shortcut's title), left as it is.
    void mergeSection(const QString& from, const QString& section, const QString& to,
                      const QString& toSection, Merge& merge, const QString& sameBy = {}) const;
    void mergeShortcuts(const QString& from, const QString& to, Merge& merge) const;
    void write(const QString& section, const QString& key, const QString& value,
               const QString& file, Merge& merge) const;

    const Ini& m_ini;
};

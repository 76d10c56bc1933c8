#include "ProfileTransfer.h"

#include "AppError.h"
#include "DateText.h"
#include "Ini.h"
#include "PrivateFiles.h"
#include "ShortcutFile.h"
#include "SiteFiles.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>
#include <QTemporaryDir>

namespace {
const QString Format = QStringLiteral("Tolvane profile");
constexpr int Version = 1;
const QString ShortcutsName = QStringLiteral("Shortcuts.ini");
const QString AnyName = QStringLiteral("Any.ini");
const QString ProfilesSection = QStringLiteral("Profiles");
// The one-letter prefix is part of a site file name's 40 characters.
constexpr qsizetype MaxSiteNameLength = 39 + 4;

const char* kindName(int kind)
{
    static const char* const names[] = {"shortcuts", "any", "site"};
    return names[kind];
}

bool hasControlCharacters(const QString& text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.category() == QChar::Other_Control; });
}

bool writeWhole(const QString& path, const QByteArray& bytes)
{
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    // The data files are the user's alone from their first byte on.
    out.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    out.write(bytes);
    if (!out.commit())
        return false;
    KeepPrivate(path);
    return true;
}

// Which of two differing visit entries a merge keeps: the later visit, the larger count.
bool importedVisitWins(const QString& key, const QString& current, const QString& imported)
{
    if (key.compare(QLatin1String("LastVisit"), Qt::CaseInsensitive) == 0) {
        const auto mine = DateText::toDateTime(current);
        const auto theirs = DateText::toDateTime(imported);
        return theirs && (!mine || *theirs > *mine);
    }
    try {
        return WholeNumber(imported) > WholeNumber(current);
    } catch (const AppError&) {
        return false;
    }
}
} // namespace

QByteArray ProfileTransfer::exportProfile(const Profile& profile, const QString& name) const
{
    QJsonArray files;
    const auto add = [&](Kind kind, const QString& fileName) {
        QFile file(profile.folder + QLatin1Char('/') + profile.prefix + fileName);
        if (!file.open(QIODevice::ReadOnly))
            return;
        files.append(QJsonObject{{"kind", QLatin1String(kindName(int(kind)))},
                                 {"name", fileName},
                                 {"bytes", QString::fromLatin1(file.readAll().toBase64())}});
    };
    add(Kind::Shortcuts, ShortcutsName);
    add(Kind::Any, AnyName);
    for (const QString& site : SiteFiles::SiteFileNames(profile.folder, profile.prefix))
        add(Kind::Site, site.mid(profile.prefix.size()));
    return QJsonDocument(
               QJsonObject{
                   {"format", Format}, {"version", Version}, {"profile", name}, {"files", files}})
        .toJson(QJsonDocument::Indented);
}

ProfileTransfer::Document ProfileTransfer::read(const QByteArray& bytes)
{
    Document document;
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(bytes, &error);
    const QJsonObject root = json.object();
    if (error.error != QJsonParseError::NoError || !json.isObject() ||
        root.value("format").toString() != Format) {
        document.refusal = QStringLiteral("The file is not a Tolvane profile, or it is damaged.");
        return document;
    }
    const int version = root.value("version").toInt(0);
    if (version > Version) {
        document.refusal = QStringLiteral("The file was made by a newer Tolvane (format %1); this "
                                          "one reads format %2.")
                               .arg(version)
                               .arg(Version);
        return document;
    }
    const auto damaged = [&document](const QString& why) {
        document.refusal = QStringLiteral("The profile file is damaged: %1.").arg(why);
        document.files.clear();
        return document;
    };
    if (version < 1 || !root.value("files").isArray() || !root.value("profile").isString())
        return damaged(QStringLiteral("its version, name or list of files is missing"));
    document.name = root.value("profile").toString();
    if (hasControlCharacters(document.name) || document.name.size() > 255)
        return damaged(QStringLiteral("the profile's name is not one a profile can have"));
    QSet<QString> seen;
    for (const QJsonValue& entry : root.value("files").toArray()) {
        const QJsonObject object = entry.toObject();
        const QString kind = object.value("kind").toString();
        const QString name = object.value("name").toString();
        File file{Kind::Site, name, {}};
        if (kind == QLatin1String(kindName(int(Kind::Shortcuts))) && name == ShortcutsName)
            file.kind = Kind::Shortcuts;
        else if (kind == QLatin1String(kindName(int(Kind::Any))) && name == AnyName)
            file.kind = Kind::Any;
        else if (kind != QLatin1String(kindName(int(Kind::Site))) ||
                 name.size() > MaxSiteNameLength || !SiteFiles::IsSiteFileName(name, QString()))
            return damaged(
                QStringLiteral("it names a file \"%1\" no profile has").arg(name.left(60)));
        const auto decoded = QByteArray::fromBase64Encoding(
            object.value("bytes").toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (!object.value("bytes").isString() || !decoded)
            return damaged(QStringLiteral("the content of %1 cannot be read").arg(name));
        if (seen.contains(name))
            return damaged(QStringLiteral("it holds %1 twice").arg(name));
        seen.insert(name);
        file.bytes = *decoded;
        document.files.append(file);
    }
    return document;
}

ProfileTransfer::Plan ProfileTransfer::examine(const QByteArray& document,
                                               const Profile& target) const
{
    const Document read = ProfileTransfer::read(document);
    Merge merge{false, false, {}, {}};
    merge.plan.refusal = read.refusal;
    if (read.refusal.isEmpty())
        apply(read, target, merge);
    return merge.plan;
}

QString ProfileTransfer::importProfile(const QByteArray& document, const Profile& target,
                                       bool takeImported) const
{
    const Document read = ProfileTransfer::read(document);
    if (!read.refusal.isEmpty())
        return read.refusal;
    Merge merge{true, takeImported, {}, {}};
    apply(read, target, merge);
    if (merge.failures.isEmpty())
        return {};
    return QStringLiteral("Some of the profile could not be written: %1")
        .arg(merge.failures.mid(0, 5).join(QStringLiteral(", ")));
}

void ProfileTransfer::apply(const Document& document, const Profile& target, Merge& merge) const
{
    merge.plan.name = document.name;
    for (const File& file : document.files)
        mergeFile(file, target.folder + QLatin1Char('/') + target.prefix + file.name, merge);
    const QString key = QStringLiteral("Profile%1").arg(target.number);
    if (merge.write && !document.name.trimmed().isEmpty() &&
        m_ini.ReadINI(ProfilesSection, key, QString(), target.profilesFile).isEmpty())
        write(ProfilesSection, key, document.name, target.profilesFile, merge);
}

void ProfileTransfer::mergeFile(const File& file, const QString& path, Merge& merge) const
{
    if (!QFile::exists(path)) {
        ++merge.plan.newFiles;
        if (merge.write && !writeWhole(path, file.bytes))
            merge.failures.append(file.name);
        return;
    }
    // Read through the INI layer as the profile's own files are: a copy in a folder of its own.
    QTemporaryDir scratch;
    const QString from = scratch.path() + QStringLiteral("/import.ini");
    if (!scratch.isValid() || !writeWhole(from, file.bytes)) {
        merge.failures.append(file.name);
        return;
    }
    if (file.kind == Kind::Shortcuts) {
        mergeShortcuts(from, path, merge);
        return;
    }
    for (const QString& section : m_ini.SectionNames(from))
        mergeSection(from, section, path, section, merge);
}

void ProfileTransfer::mergeSection(const QString& from, const QString& section, const QString& to,
                                   const QString& toSection, Merge& merge,
                                   const QString& sameBy) const
{
    QHash<QString, QString> current;
    for (const auto& [key, value] : m_ini.StoredEntries(toSection, to))
        current.insert(key.toCaseFolded(), value);
    const bool visits = IsVisitSection(section);
    for (const auto& [key, value] : m_ini.StoredEntries(section, from)) {
        const auto mine = current.constFind(key.toCaseFolded());
        if (!sameBy.isEmpty() && key.compare(sameBy, Qt::CaseInsensitive) == 0)
            continue;
        if (mine == current.constEnd()) {
            ++merge.plan.added;
            write(toSection, key, value, to, merge);
        } else if (*mine == value) {
            continue;
        } else if (visits) {
            if (importedVisitWins(key, *mine, value))
                write(toSection, key, value, to, merge);
        } else {
            ++merge.plan.differing;
            if (merge.takeImported)
                write(toSection, key, value, to, merge);
        }
    }
}

void ProfileTransfer::mergeShortcuts(const QString& from, const QString& to, Merge& merge) const
{
    using namespace ShortcutFile;
    static const QRegularExpression numbered(QStringLiteral("^shortcut([1-9][0-9]{0,8})$"),
                                             QRegularExpression::CaseInsensitiveOption);
    try {
        for (const QString& section : m_ini.SectionNames(from)) {
            const auto match = numbered.match(section);
            const QString title =
                match.hasMatch() ? Title(m_ini, from, match.captured(1).toInt()) : QString();
            if (title.isEmpty())
                continue;
            // A shortcut of the same title is the same contest: its keys are merged.
            if (const int same = NumberTitled(m_ini, to, title)) {
                mergeSection(from, section, to, Section(same), merge, TitleKey);
                continue;
            }
            ++merge.plan.added;
            if (!merge.write)
                continue;
            const int free = LowestFreeNumber(m_ini, to);
            for (const auto& [key, value] : m_ini.StoredEntries(section, from))
                write(Section(free), key, value, to, merge);
            RaiseMax(m_ini, to, free);
        }
    } catch (const AppError& error) {
        merge.failures.append(ShortcutsName + QStringLiteral(" (") + error.description() +
                              QLatin1Char(')'));
    }
}

void ProfileTransfer::write(const QString& section, const QString& key, const QString& value,
                            const QString& file, Merge& merge) const
{
    if (merge.write && m_ini.WriteINI(section, key, value, file) == 0)
        merge.failures.append(QStringLiteral("[%1] %2").arg(section.left(60), key.left(60)));
}

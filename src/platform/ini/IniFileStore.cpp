#include "IniFileStore.h"

#include "Cp1252.h"
#include "IniDocument.h"
#include "PrivateFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {
const QByteArray Utf8Bom = QByteArrayLiteral("\xEF\xBB\xBF");
// Larger files are parsed on every call rather than held in memory; the cache as a whole is
// kept to a few megabytes however many small site files it holds.
constexpr qint64 MaxCachedFileBytes = 4 * 1024 * 1024;
constexpr qint64 MaxCachedBytes = 8 * 1024 * 1024;
constexpr int MaxCachedFiles = 4096;

// What identifies one version of a file on disk; a missing file has no stamp.
struct Stamp
{
    bool exists = false;
    qint64 size = 0;
    qint64 modified = 0;
    qint64 changed = 0;
    quint64 inode = 0;
    bool operator==(const Stamp&) const = default;
};

Stamp stampOf(const QString& file)
{
    Stamp stamp;
#ifdef Q_OS_UNIX
    struct stat st;
    if (::stat(QFile::encodeName(file).constData(), &st) != 0)
        return stamp;
    stamp.exists = true;
    stamp.size = st.st_size;
    stamp.modified = qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    stamp.changed = qint64(st.st_ctim.tv_sec) * 1000000000 + st.st_ctim.tv_nsec;
    stamp.inode = st.st_ino;
#else
    const QFileInfo info(file);
    if (!info.exists())
        return stamp;
    stamp.exists = true;
    stamp.size = info.size();
    stamp.modified = info.lastModified().toMSecsSinceEpoch();
    stamp.changed = info.metadataChangeTime().toMSecsSinceEpoch();
#endif
    return stamp;
}

} // namespace

struct IniFileStore::Parsed
{
    Stamp stamp;
    bool utf8 = false; // written as UTF-8 with a byte-order mark
    IniDocument document;
};

IniFileStore::IniFileStore() = default;
IniFileStore::~IniFileStore() = default;

std::shared_ptr<const IniFileStore::Parsed> IniFileStore::load(const QString& file)
{
    const Stamp stamp = stampOf(file);
    if (!stamp.exists) {
        forget(file);
        return std::make_shared<const Parsed>();
    }
    if (const auto cached = m_cache.value(file); cached && cached->stamp == stamp)
        return cached;

    bool utf8 = false;
    const auto text = textOf(file, &utf8);
    if (!text)
        return nullptr;
    auto parsed = std::make_shared<Parsed>();
    parsed->stamp = stamp;
    parsed->utf8 = utf8;
    parsed->document = IniDocument(*text);
    remember(file, parsed);
    return parsed;
}

std::optional<QString> IniFileStore::textOf(const QString& file, bool* utf8)
{
    QFile in(file);
    if (QFileInfo(file).isDir() || !in.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = in.readAll();
    if (in.error() != QFileDevice::NoError)
        return std::nullopt;
    // A byte-order mark says UTF-8 (invalid sequences read as U+FFFD, the rest as written);
    // without one the file is in Windows' code page, as the Windows release wrote it.
    const bool marked = bytes.startsWith(Utf8Bom);
    if (utf8)
        *utf8 = marked;
    if (marked)
        return QString::fromUtf8(QByteArrayView(bytes).sliced(Utf8Bom.size()));
    return Cp1252::decode(bytes);
}

void IniFileStore::remember(const QString& file, std::shared_ptr<const Parsed> parsed)
{
    forget(file);
    if (parsed->stamp.size > MaxCachedFileBytes)
        return;
    while (!m_cache.isEmpty() && (m_cache.size() >= MaxCachedFiles ||
                                  m_cachedBytes + parsed->stamp.size > MaxCachedBytes))
        forget(m_cache.begin().key());
    m_cachedBytes += parsed->stamp.size;
    m_cache.insert(file, std::move(parsed));
}

void IniFileStore::forget(const QString& file)
{
    const auto found = m_cache.constFind(file);
    if (found == m_cache.constEnd())
        return;
    m_cachedBytes -= (*found)->stamp.size;
    m_cache.erase(found);
}

std::optional<QString> IniFileStore::readEntry(const QString& file, const QString& section,
                                               const QString& key)
{
    if (stampOf(file).size > MaxCachedFileBytes) {
        // Too large to hold parsed: one pass over its text answers the one read.
        const auto text = textOf(file);
        return text ? IniDocument::find(*text, section, key) : std::nullopt;
    }
    const auto parsed = load(file);
    if (!parsed)
        return std::nullopt;
    return parsed->document.value(section, key);
}

QStringList IniFileStore::sectionNames(const QString& file)
{
    const auto parsed = load(file);
    return parsed ? parsed->document.sectionNames() : QStringList();
}

QList<std::pair<QString, QString>> IniFileStore::entries(const QString& file,
                                                         const QString& section)
{
    const auto parsed = load(file);
    return parsed ? parsed->document.entries(section) : QList<std::pair<QString, QString>>();
}

bool IniFileStore::writeEntry(const QString& file, const QString& section, const QString& key,
                              const QString& value)
{
    return rewrite(file,
                   [&](IniDocument& document) { return document.setValue(section, key, value); });
}

bool IniFileStore::removeEntry(const QString& file, const QString& section, const QString& key)
{
    return QFileInfo::exists(file) &&
           rewrite(file, [&](IniDocument& document) { return document.removeValue(section, key); });
}

bool IniFileStore::rewrite(const QString& file, const std::function<bool(IniDocument&)>& change)
{
    const auto current = load(file);
    // A file we cannot read could not be rewritten without losing its other entries.
    if (!current)
        return false;
    // Read-only means no write bit at all, even for a user the system would let write.
    const QFileInfo info(file);
    const auto writeBits =
        QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    if (info.exists() && (!info.isWritable() || !(info.permissions() & writeBits)))
        return false;
    // Likewise a folder without a write bit takes no new file.
    const QFileInfo folder(info.absolutePath());
    if (!info.exists() && (!folder.isWritable() || !(folder.permissions() & writeBits)))
        return false;

    auto updated = std::make_shared<Parsed>(*current);
    if (!change(updated->document))
        return false;
    // The file stays in Windows' code page while it can hold every character, so a file of the
    // Windows release keeps its bytes; one that cannot becomes UTF-8, whole and at once.
    const QString text = updated->document.text();
    if (!updated->utf8 && !Cp1252::holds(text))
        updated->utf8 = true;

    QSaveFile out(file);
    // A folder that allows no new files still lets an existing file be rewritten in place.
    out.setDirectWriteFallback(true);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    // The data files are the user's alone from their first byte on.
    if (!info.exists())
        out.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    out.write(updated->utf8 ? Utf8Bom + text.toUtf8() : Cp1252::encode(text));
    if (!out.commit()) {
        forget(file);
        return false;
    }
    KeepPrivate(file);
    updated->stamp = stampOf(file);
    remember(file, std::move(updated));
    return true;
}

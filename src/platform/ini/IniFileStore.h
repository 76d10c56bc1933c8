#pragma once

#include "IniBackend.h"

#include <QHash>
#include <QString>
#include <functional>
#include <memory>

class IniDocument;

// The INI files on disk: Windows-1252 text, any line ends read, CR LF written, every write an
// atomic replace of the whole file. Parsed files are cached while their size and times on disk
// are unchanged, so every read still reflects the file's present content.
class IniFileStore : public IniBackend
{
public:
    IniFileStore();
    ~IniFileStore() override;

    std::optional<QString> readEntry(const QString& file, const QString& section,
                                     const QString& key) override;
    QStringList sectionNames(const QString& file) override;
    QList<std::pair<QString, QString>> entries(const QString& file,
                                               const QString& section) override;
    bool writeEntry(const QString& file, const QString& section, const QString& key,
                    const QString& value) override;
    bool removeEntry(const QString& file, const QString& section, const QString& key) override;

private:
    struct Parsed;
    // nullopt when the file exists but cannot be read; an empty document when it is missing.
    std::shared_ptr<const Parsed> load(const QString& file);
    // The file's text without its byte-order mark; nullopt when it cannot be read.
    static std::optional<QString> textOf(const QString& file, bool* utf8 = nullptr);
    // Applies the change to the file's document and replaces the file with the result; false,
    // and the file as it was, when the change or the write fails.
    bool rewrite(const QString& file, const std::function<bool(IniDocument&)>& change);
    void remember(const QString& file, std::shared_ptr<const Parsed> parsed);
    void forget(const QString& file);

    QHash<QString, std::shared_ptr<const Parsed>> m_cache;
    qint64 m_cachedBytes = 0;
};

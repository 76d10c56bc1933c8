#pragma once

#include "IniBackend.h"

#include <QHash>
#include <QString>
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
    bool writeEntry(const QString& file, const QString& section, const QString& key,
                    const QString& value) override;

private:
    struct Parsed;
    // nullopt when the file exists but cannot be read; an empty document when it is missing.
    std::shared_ptr<const Parsed> load(const QString& file);
    // The file's text without its byte-order mark; nullopt when it cannot be read.
    static std::optional<QString> textOf(const QString& file, bool* utf8 = nullptr);
    void remember(const QString& file, std::shared_ptr<const Parsed> parsed);
    void forget(const QString& file);

    QHash<QString, std::shared_ptr<const Parsed>> m_cache;
    qint64 m_cachedBytes = 0;
};

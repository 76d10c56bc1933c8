#pragma once

#include <QHash>
#include <QJsonObject>
#include <functional>
#include <memory>
#include <vector>

class PageScriptHost;
class ScriptDocument;

// The documents of one browser by the realm of their page script: made when first asked for,
// kept while someone holds them. The script's reports go to them; what a report said of the focus
// before anyone held the document is kept for it.
class ScriptDocuments
{
public:
    using DocumentList = std::vector<std::shared_ptr<ScriptDocument>>;

    explicit ScriptDocuments(PageScriptHost& host) : m_host(host) {}

    // The realm's document, made for that frame if nobody holds one.
    std::shared_ptr<ScriptDocument> get(const QString& realm, const QString& frameId);
    // The documents held whose realm passes the test.
    DocumentList held(const std::function<bool(const QString& realm)>& which) const;
    // A report of the page script ("focusin", "readystatechange", ...) from that realm.
    void report(const QString& realm, const QString& kind, const QJsonObject& payload);
    // The realm has gone with its document.
    void forget(const QString& realm);
    void forgetIf(const std::function<bool(const QString& realm)>& which);
    void clear();

    // Fetches ahead what each document's fill reads first, then calls `fetched` once: the
    // documents are held until then, so what was fetched stays with them.
    static void prefetch(const DocumentList& documents, std::function<void()> fetched);

private:
    PageScriptHost& m_host;
    QHash<QString, std::weak_ptr<ScriptDocument>> m_documents;
    QHash<QString, qint64> m_reportedActive;
};

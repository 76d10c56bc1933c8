#include "ScriptDocuments.h"

#include "ScriptDocument.h"

std::shared_ptr<ScriptDocument> ScriptDocuments::get(const QString& realm, const QString& frameId)
{
    if (auto known = m_documents.value(realm).lock())
        return known;
    auto document = std::make_shared<ScriptDocument>(m_host, realm, frameId);
    // What the page reported before anyone followed it still says where its focus is.
    if (const auto active = m_reportedActive.constFind(realm);
        active != m_reportedActive.constEnd())
        document->noteActive(*active);
    m_documents.insert(realm, document);
    return document;
}

ScriptDocuments::DocumentList
ScriptDocuments::held(const std::function<bool(const QString&)>& which) const
{
    DocumentList documents;
    for (auto it = m_documents.constBegin(); it != m_documents.constEnd(); ++it) {
        if (auto document = it.value().lock(); document && which(it.key()))
            documents.push_back(std::move(document));
    }
    return documents;
}

void ScriptDocuments::report(const QString& realm, const QString& kind, const QJsonObject& payload)
{
    if (const auto document = m_documents.value(realm).lock())
        document->raise(kind, payload);
    else if (payload.contains(QLatin1String("active")))
        m_reportedActive.insert(realm, payload.value(QLatin1String("active")).toInteger());
}

void ScriptDocuments::forget(const QString& realm)
{
    forgetIf([&realm](const QString& known) { return known == realm; });
}

void ScriptDocuments::forgetIf(const std::function<bool(const QString&)>& which)
{
    // A holder keeps its document; the realm has nothing more to report to it.
    for (auto it = m_documents.begin(); it != m_documents.end();)
        it = which(it.key()) ? m_documents.erase(it) : std::next(it);
    for (auto it = m_reportedActive.begin(); it != m_reportedActive.end();)
        it = which(it.key()) ? m_reportedActive.erase(it) : std::next(it);
}

void ScriptDocuments::clear()
{
    m_documents.clear();
    m_reportedActive.clear();
}

void ScriptDocuments::prefetch(const DocumentList& documents, std::function<void()> fetched)
{
    auto remaining = std::make_shared<size_t>(documents.size());
    auto holding = std::make_shared<DocumentList>(documents);
    for (const auto& document : documents) {
        document->prefetch([remaining, holding, fetched] {
            if (--*remaining == 0)
                fetched();
        });
    }
}

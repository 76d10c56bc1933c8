#include "BidiContexts.h"

#include "AppError.h"
#include "BidiRealmNames.h"
#include "PageScript.h"
#include "ScriptDocument.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace BidiRealmNames;

namespace {
// The sandbox the page script runs in, and the channel it reports through.
const QString Sandbox = QStringLiteral("tolvane");
const QString Channel = QStringLiteral("tolvane");

QJsonArray channelArgument()
{
    return {QJsonObject{{"type", "channel"}, {"value", QJsonObject{{"channel", Channel}}}}};
}

// The page script as a function of the channel the browser hands it.
QString pageScriptFunction()
{
    return QStringLiteral("(channel) => {") +
           PageScript::source(QStringLiteral("(message) => channel(message)")) +
           QStringLiteral("}");
}

} // namespace

void BidiContexts::follow()
{
    RemoteConnection& connection = browserConnection();
    // Not a jump within a page: a page jumping to its own anchor in a loop would flood the
    // connection; the page script says where such a jump went.
    connection.call(
        QStringLiteral("session.subscribe"),
        {{"events",
          QJsonArray{"browsingContext.contextCreated", "browsingContext.contextDestroyed",
                     "browsingContext.navigationStarted", "browsingContext.navigationCommitted",
                     "browsingContext.historyUpdated", "browsingContext.load", "script",
                     "network.beforeRequestSent", "network.responseCompleted",
                     "network.fetchError"}}});
    connection.call(QStringLiteral("script.addPreloadScript"),
                    {{"functionDeclaration", pageScriptFunction()},
                     {"arguments", channelArgument()},
                     {"sandbox", Sandbox}});
}

void BidiContexts::takeUpOpenContexts()
{
    QJsonArray pending = browserConnection()
                             .call(QStringLiteral("browsingContext.getTree"))
                             .value("contexts")
                             .toArray();
    QStringList contexts;
    while (!pending.isEmpty()) {
        const QJsonObject info = pending.takeAt(0).toObject();
        addContext(info);
        contexts.append(info.value("context").toString());
        for (const QJsonValue& child : info.value("children").toArray())
            pending.append(child);
    }
    for (const QString& context : std::as_const(contexts))
        putScriptIn(context);
}

void BidiContexts::putScriptIn(const QString& context)
{
    try {
        const QJsonObject answer = browserConnection().call(
            QStringLiteral("script.callFunction"),
            {{"functionDeclaration", pageScriptFunction()},
             {"arguments", channelArgument()},
             {"target", QJsonObject{{"context", context}, {"sandbox", Sandbox}}},
             {"awaitPromise", false},
             {"resultOwnership", "none"}});
        m_contexts[context].realm = answer.value("realm").toString();
        m_contexts[context].scripted = true;
    } catch (const AppError&) {
        // A context that went meanwhile has nothing to follow.
    }
}

void BidiContexts::addContext(const QJsonObject& info)
{
    const QString id = info.value("context").toString();
    if (m_contexts.contains(id) && m_contexts[id].open)
        return;
    Context& context = m_contexts[id];
    context.parent = info.value("parent").toString();
    context.url = info.value("url").toString();
    context.open = true;
    if (context.parent.isEmpty())
        addWindow(id);
}

QJsonObject BidiContexts::call(const QString& method, const QJsonObject& params)
{
    return bidi().call(method, params);
}

void BidiContexts::AppActivate(const QString& title)
{
    // The tabs' titles are their documents' own: the browser keeps none for them.
    const auto shown = [this](const QString& id, const char* what) {
        const DocPtr document = documentFor({}, id);
        try {
            return document ? evaluate(std::static_pointer_cast<ScriptDocument>(document)->realm(),
                                       PageCall::of("doc", {QLatin1String(what)}))
                                  .toString()
                            : QString();
        } catch (const AppError&) {
            return QString();
        }
    };
    activateTitled(
        title, [&](const QString& id) { return shown(id, "title"); },
        [&](const QString& id) {
            if (shown(id, "visibility") != QLatin1String("visible"))
                return false;
            bidi().call(QStringLiteral("browsingContext.activate"), {{"context", id}});
            return true;
        });
}

void BidiContexts::openInNewTab(const QString& address)
{
    const QString context = bidi()
                                .call(QStringLiteral("browsingContext.create"), {{"type", "tab"}})
                                .value("context")
                                .toString();
    bidi().call(QStringLiteral("browsingContext.navigate"),
                {{"context", context}, {"url", address}, {"wait", "none"}});
}

void BidiContexts::dialogClosedIn(const QString& tab)
{
    const auto page = window(tab);
    const auto documents = m_documents.held(
        [&](const QString& realm) { return page && pageOf(contextOf(realm)) == page; });
    for (const auto& document : documents)
        document->dialogClosed();
}

void BidiContexts::forgetAll()
{
    m_contexts.clear();
    m_documents.clear();
}

void BidiContexts::markAllClosed()
{
    for (Context& known : m_contexts)
        known.open = false;
}

void BidiContexts::onEvent(const RemoteConnection::Event& event)
{
    const QString& method = event.method;
    const QJsonObject& params = event.params;
    const QString context = params.value("context").toString();
    if (method == QLatin1String("browsingContext.contextCreated")) {
        addContext(params);
    } else if (method == QLatin1String("browsingContext.contextDestroyed")) {
        onContextGone(context);
    } else if (method == QLatin1String("browsingContext.navigationStarted")) {
        if (window(context))
            restartProgress(context);
    } else if (method == QLatin1String("browsingContext.navigationCommitted")) {
        // The new document reports itself: until then the realm may still be the empty one's.
        if (m_contexts.contains(context)) {
            m_contexts[context].url = params.value("url").toString();
            m_contexts[context].scripted = false;
        }
    } else if (method == QLatin1String("browsingContext.historyUpdated")) {
        if (m_contexts.contains(context))
            m_contexts[context].url = params.value("url").toString();
    } else if (method == QLatin1String("browsingContext.load")) {
        const auto known = m_contexts.find(context);
        if (known == m_contexts.end())
            return;
        known->url = params.value("url").toString();
        // A frame's first document taken over by the page it loads (same site) keeps its window,
        // and no preload runs for it: the script is put in, and reports the load as attached.
        if (known->scripted)
            onLoaded(context, known->url);
        else if (known->url != QLatin1String("about:blank"))
            putScriptIn(context);
    } else if (method == QLatin1String("script.realmCreated")) {
        // A frame's first, empty document gets no page script: its realm serves once it reports.
        if (params.value("sandbox").toString() == Sandbox && m_contexts.contains(context)) {
            m_contexts[context].realm = params.value("realm").toString();
            m_contexts[context].scripted = false;
        }
    } else if (method == QLatin1String("script.realmDestroyed")) {
        const QString realm = params.value("realm").toString();
        for (auto it = m_contexts.begin(); it != m_contexts.end(); ++it) {
            if (it->realm == realm) {
                it->realm.clear();
                m_documents.forget(realmName(it.key(), realm));
            }
        }
    } else if (method == QLatin1String("script.message")) {
        onMessage(params);
    } else if (method.startsWith(QLatin1String("network."))) {
        onNetwork(event);
    }
}

void BidiContexts::onContextGone(const QString& id)
{
    const auto context = m_contexts.find(id);
    if (context == m_contexts.end() || !context->open)
        return;
    context->open = false;
    if (window(id))
        windowClosed(id);
    else
        m_contexts.erase(context);
}

std::shared_ptr<ScriptWindow> BidiContexts::pageOf(QString context) const
{
    for (int depth = 0; depth < 32 && !context.isEmpty(); ++depth) {
        if (const auto page = window(context))
            return page;
        context = m_contexts.value(context).parent;
    }
    return nullptr;
}

void BidiContexts::onLoaded(const QString& context, const QString& url)
{
    // A frame's first, empty document is replaced at once: filling it would only fail.
    const std::shared_ptr<ScriptWindow> page = pageOf(context);
    if (!page || url.isEmpty() || url == QLatin1String("about:blank"))
        return;
    reportLoad(
        page, context, documentFor({}, context), m_documents,
        [&](const QString& realm) { return pageOf(contextOf(realm)) == page; },
        [this, context] { return documentFor({}, context); });
}

void BidiContexts::onMessage(const QJsonObject& params)
{
    if (params.value("channel").toString() != Channel)
        return;
    const QJsonObject payload =
        QJsonDocument::fromJson(params.value("data").toObject().value("value").toString().toUtf8())
            .object();
    const QJsonObject source = params.value("source").toObject();
    const QString context = source.value("context").toString();
    const QString realm = source.value("realm").toString();
    const QString kind = payload.value("kind").toString();
    const bool current = m_contexts.value(context).realm == realm;
    if (current)
        m_contexts[context].scripted = true;
    if (kind == QLatin1String("address")) {
        if (current)
            m_contexts[context].url = payload.value("url").toString();
        return;
    }
    if (kind == QLatin1String("status")) {
        if (const auto page = pageOf(context))
            page->statusText(payload.value("text").toString());
        return;
    }
    if (kind == QLatin1String("attached")) {
        // The script came into a document that had already loaded when Tolvane came: it has no
        // load of its own to report, unless its frame has gone on to another document since.
        if (current)
            onLoaded(context, m_contexts.value(context).url);
        return;
    }
    m_documents.report(realmName(context, realm), kind, payload);
}

void BidiContexts::onNetwork(const RemoteConnection::Event& event)
{
    // The figures are the page's requests since its tab started navigating, and how many ended.
    const std::shared_ptr<ScriptWindow> page = pageOf(event.params.value("context").toString());
    if (!page)
        return;
    if (event.method == QLatin1String("network.beforeRequestSent"))
        requestSent(page);
    else
        requestEnded(page);
}

QString BidiContexts::pageUrl(const QString& context) const
{
    return m_contexts.value(context).url;
}

void BidiContexts::reload(const QString& context)
{
    bidi().call(QStringLiteral("browsingContext.reload"), {{"context", context}});
}

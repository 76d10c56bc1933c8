#include "CdpWindowList.h"

#include "AppError.h"
#include "CdpDialogGuard.h"
#include "CdpRealmNames.h"
#include "ChromiumProcess.h"
#include "PageScript.h"
#include "ScriptDocument.h"
#include "ScriptWindow.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace CdpRealmNames;

namespace {

// Drops what a hash keeps for one session (keys are session + "\n" + ...).
template <class Value> void eraseSession(QHash<QString, Value>& hash, const QString& session)
{
    const QString prefix = session + QLatin1Char('\n');
    for (auto it = hash.begin(); it != hash.end();)
        it = it.key().startsWith(prefix) ? hash.erase(it) : std::next(it);
}

// The world the page script runs in, and the binding it reports through.
const QString World = QStringLiteral("tolvane");
const QString Binding = QStringLiteral("__tolvaneEvent");

// What every page and frame session gets before it may run: events on, our world and script
// in place, its own frames attached; then it is let go.
void prepareSession(RemoteConnection& cdp, const QString& session)
{
    cdp.send(QStringLiteral("Page.enable"), {}, session);
    cdp.send(QStringLiteral("Page.setLifecycleEventsEnabled"), {{"enabled", true}}, session);
    cdp.send(QStringLiteral("Runtime.enable"), {}, session);
    cdp.send(QStringLiteral("Network.enable"), {}, session);
    cdp.send(QStringLiteral("Runtime.addBinding"),
             {{"name", Binding}, {"executionContextName", World}}, session);
    cdp.send(
        QStringLiteral("Page.addScriptToEvaluateOnNewDocument"),
        {{"source", PageScript::source(QStringLiteral("(message) => %1(message)").arg(Binding))},
         {"worldName", World},
         {"runImmediately", true}},
        session);
    cdp.send(QStringLiteral("Target.setAutoAttach"),
             {{"autoAttach", true}, {"waitForDebuggerOnStart", true}, {"flatten", true}}, session);
    cdp.send(QStringLiteral("Runtime.runIfWaitingForDebugger"), {}, session);
}
} // namespace

CdpWindowList::CdpWindowList(Connector connector) : FollowedBrowser(std::move(connector)) {}

CdpWindowList::~CdpWindowList()
{
    releaseBrowser();
}

void CdpWindowList::openConnection()
{
    m_browser = m_connector();
    RemoteConnection& connection = m_browser->connection();
    m_dialogs = std::make_unique<CdpDialogGuard>(connection);
    // Targets that wait for their debugger must be let go at once, not when the user-interface
    // thread gets round to it; a dialog must stop calls that already wait.
    connection.setIoHook([&connection,
                          dialogs = m_dialogs.get()](const RemoteConnection::Event& event) {
        dialogs->onEvent(event);
        if (event.method != QLatin1String("Target.attachedToTarget"))
            return;
        const QString session = event.params.value("sessionId").toString();
        const QString type = event.params.value("targetInfo").toObject().value("type").toString();
        if (type == QLatin1String("page") || type == QLatin1String("iframe"))
            prepareSession(connection, session);
        else
            connection.send(QStringLiteral("Runtime.runIfWaitingForDebugger"), {}, session);
    });
    connection.setEventHandler([this](const RemoteConnection::Event& event) { onEvent(event); });
    connection.call(QStringLiteral("Target.setDiscoverTargets"), {{"discover", true}});
    connection.call(QStringLiteral("Target.setAutoAttach"),
                    {{"autoAttach", true}, {"waitForDebuggerOnStart", true}, {"flatten", true}});
    connection.setTimeout(RemoteConnection::CallTimeoutMs);
}

void CdpWindowList::AppActivate(const QString& title)
{
    activateTitled(
        title, [this](const QString& id) { return m_targets.value(id).title; },
        [this](const QString& id) {
            if (!isVisibleTab(id))
                return false;
            cdp().call(QStringLiteral("Page.bringToFront"), {}, m_targets.value(id).sessionId);
            return true;
        });
}

void CdpWindowList::OpenAddress(const QString& address)
{
    // A browser that has gone (closed by the user, crashed, never started) is started again
    // for it; its windows are taken up as they come, as at start-up.
    if (!isConnected())
        reconnect();
    cdp().call(QStringLiteral("Target.createTarget"), {{"url", address}});
}

void CdpWindowList::dropConnection()
{
    releaseBrowser();
    m_dialogs.reset();
    m_targets.clear();
    m_sessionTargets.clear();
    m_contexts.clear();
    m_contextFrames.clear();
    m_frameUrls.clear();
    m_documents.clear();
}

QJsonObject CdpWindowList::call(const QString& targetOrSession, const QString& method,
                                const QJsonObject& params)
{
    // Callers name a page by its target id or a frame by its session.
    const auto target = m_targets.constFind(targetOrSession);
    const QString session = target != m_targets.constEnd() ? target->sessionId : targetOrSession;
    return cdp().call(method, params, session);
}

QString CdpWindowList::pageUrl(const QString& targetId) const
{
    return m_targets.value(targetId).url;
}

void CdpWindowList::reload(const QString& targetId)
{
    call(targetId, QStringLiteral("Page.reload"));
}

std::shared_ptr<ScriptWindow> CdpWindowList::pageOfSession(const QString& sessionId) const
{
    QString session = sessionId;
    for (int depth = 0; depth < 32 && !session.isEmpty(); ++depth) {
        const QString targetId = m_sessionTargets.value(session);
        if (const auto page = window(targetId))
            return page;
        session = m_targets.value(targetId).parentSession;
    }
    return nullptr;
}

void CdpWindowList::markAllClosed()
{
    for (Target& target : m_targets)
        target.open = false;
}

void CdpWindowList::onEvent(const RemoteConnection::Event& event)
{
    // TOLVANE_CDP_TRACE=1 lists the browser's events on standard error.
    if (!takeEvent("TOLVANE_CDP_TRACE", "cdp", event))
        return;
    const QString& method = event.method;
    const QJsonObject& params = event.params;
    if (method == QLatin1String("Target.attachedToTarget")) {
        onAttached(event);
    } else if (method == QLatin1String("Target.detachedFromTarget")) {
        onClosed(params.value("targetId").toString().isEmpty()
                     ? m_sessionTargets.value(params.value("sessionId").toString())
                     : params.value("targetId").toString());
    } else if (method == QLatin1String("Target.targetDestroyed")) {
        onClosed(params.value("targetId").toString());
    } else if (method == QLatin1String("Target.targetInfoChanged")) {
        const QJsonObject info = params.value("targetInfo").toObject();
        auto target = m_targets.find(info.value("targetId").toString());
        if (target != m_targets.end()) {
            target->url = info.value("url").toString();
            target->title = info.value("title").toString();
        }
    } else if (method == QLatin1String("Runtime.executionContextCreated")) {
        onContextCreated(event);
    } else if (method == QLatin1String("Runtime.executionContextDestroyed")) {
        const int id = params.value("executionContextId").toInt();
        m_contextFrames.remove(realmOf(event.sessionId, id));
        m_documents.forget(realmOf(event.sessionId, id));
        for (auto it = m_contexts.begin(); it != m_contexts.end();)
            it = (it.key().startsWith(event.sessionId + QLatin1Char('\n')) && *it == id)
                     ? m_contexts.erase(it)
                     : std::next(it);
    } else if (method == QLatin1String("Runtime.executionContextsCleared")) {
        eraseSession(m_contexts, event.sessionId);
        eraseSession(m_contextFrames, event.sessionId);
        m_documents.forgetIf(
            [&event](const QString& realm) { return sessionOf(realm) == event.sessionId; });
    } else if (method == QLatin1String("Page.lifecycleEvent")) {
        if (params.value("name").toString() == QLatin1String("load"))
            onLoaded(event.sessionId, params.value("frameId").toString());
    } else if (method == QLatin1String("Runtime.bindingCalled")) {
        onBinding(event);
    } else if (method == QLatin1String("Page.frameNavigated")) {
        const QJsonObject frame = params.value("frame").toObject();
        m_frameUrls.insert(frame.value("id").toString(), frame.value("url").toString());
    } else if (method == QLatin1String("Page.frameDetached")) {
        m_frameUrls.remove(params.value("frameId").toString());
    } else if (method == QLatin1String("Page.javascriptDialogClosed")) {
        onDialogClosed(event.sessionId);
    } else if (method.startsWith(QLatin1String("Network.")) ||
               method == QLatin1String("Page.frameStartedLoading")) {
        onNetwork(event);
    }
}

void CdpWindowList::onAttached(const RemoteConnection::Event& event)
{
    const QJsonObject info = event.params.value("targetInfo").toObject();
    const QString id = info.value("targetId").toString();
    Target& target = m_targets[id];
    target.type = info.value("type").toString();
    target.url = info.value("url").toString();
    target.title = info.value("title").toString();
    target.sessionId = event.params.value("sessionId").toString();
    target.parentSession = event.sessionId;
    target.open = true;
    m_sessionTargets.insert(target.sessionId, id);
    if (target.type == QLatin1String("page") && event.sessionId.isEmpty())
        addWindow(id);
}

void CdpWindowList::onClosed(const QString& targetId)
{
    auto target = m_targets.find(targetId);
    if (target == m_targets.end() || !target->open)
        return;
    target->open = false;
    windowClosed(targetId);
}

void CdpWindowList::onContextCreated(const RemoteConnection::Event& event)
{
    const QJsonObject context = event.params.value("context").toObject();
    if (context.value("name").toString() != World)
        return;
    const QString frameId = context.value("auxData").toObject().value("frameId").toString();
    m_contexts.insert(key(event.sessionId, frameId), context.value("id").toInt());
    m_contextFrames.insert(realmOf(event.sessionId, context.value("id").toInt()), frameId);
}

void CdpWindowList::onLoaded(const QString& sessionId, const QString& frameId)
{
    const std::shared_ptr<ScriptWindow> page = pageOfSession(sessionId);
    if (!page)
        return;
    // A frame's first, empty document is replaced at once: filling it would only fail. The
    // address comes from the navigation, so a busy page is not asked for it.
    const auto navigated = m_frameUrls.constFind(frameId);
    if (navigated != m_frameUrls.constEnd() ? *navigated == QLatin1String("about:blank")
                                            : frameShowsBlank(sessionId, frameId))
        return;
    reportLoad(
        page, frameId, documentFor(sessionId, frameId), m_documents,
        [&](const QString& realm) { return pageOfSession(sessionOf(realm)) == page; },
        [this, sessionId, frameId] { return documentFor(sessionId, frameId); });
}

void CdpWindowList::onDialogClosed(const QString& sessionId)
{
    QStringList sessions{sessionId};
    for (const Target& target : std::as_const(m_targets)) {
        if (target.open && !target.sessionId.isEmpty() && target.parentSession == sessionId)
            sessions.append(target.sessionId);
    }
    const auto documents = m_documents.held(
        [&sessions](const QString& realm) { return sessions.contains(sessionOf(realm)); });
    for (const auto& document : documents)
        document->dialogClosed();
}

void CdpWindowList::onNetwork(const RemoteConnection::Event& event)
{
    // There is no progress event: the figures are the page's requests since its main frame
    // started loading, and how many of them have ended.
    const std::shared_ptr<ScriptWindow> page = pageOfSession(event.sessionId);
    if (!page)
        return;
    if (event.method == QLatin1String("Page.frameStartedLoading")) {
        if (event.params.value("frameId").toString() == page->windowId())
            restartProgress(page->windowId());
    } else if (event.method == QLatin1String("Network.requestWillBeSent")) {
        requestSent(page);
    } else if (event.method == QLatin1String("Network.loadingFinished") ||
               event.method == QLatin1String("Network.loadingFailed")) {
        requestEnded(page);
    }
}

void CdpWindowList::onBinding(const RemoteConnection::Event& event)
{
    if (event.params.value("name").toString() != Binding)
        return;
    const QJsonObject payload =
        QJsonDocument::fromJson(event.params.value("payload").toString().toUtf8()).object();
    const QString kind = payload.value("kind").toString();
    if (kind == QLatin1String("address"))
        return; // the target's own info has it
    if (kind == QLatin1String("status")) {
        if (const auto page = pageOfSession(event.sessionId))
            page->statusText(payload.value("text").toString());
        return;
    }
    const QString documentKey =
        realmOf(event.sessionId, event.params.value("executionContextId").toInt());
    if (kind == QLatin1String("attached")) {
        // The script came into a document that had already loaded when Tolvane came: it has no
        // load of its own to report. Unless its frame has gone on to another document since (a
        // new window's first, empty one), which reports its own load.
        const QString frameId = m_contextFrames.value(documentKey);
        const int context = event.params.value("executionContextId").toInt();
        if (m_contexts.value(key(event.sessionId, frameId)) == context)
            onLoaded(event.sessionId, frameId);
        return;
    }
    m_documents.report(documentKey, kind, payload);
}

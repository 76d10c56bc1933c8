#include "CdpShell.h"

#include "AppError.h"
#include "CdpDialogGuard.h"
#include "ChromiumProcess.h"
#include "PageScript.h"
#include "ScriptDocument.h"
#include "ScriptWindow.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {
QString key(const QString& session, const QString& part)
{
    return session + QLatin1Char('\n') + part;
}

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

QString realmOf(const QString& session, int context)
{
    return key(session, QString::number(context));
}

QString sessionOf(const QString& realm)
{
    return realm.section(QLatin1Char('\n'), 0, 0);
}

int contextOf(const QString& realm)
{
    return realm.section(QLatin1Char('\n'), 1).toInt();
}

AppError browserError(const QString& text)
{
    return AppError(ErrorNumber::BrowserCall, text);
}

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

CdpShell::CdpShell(Connector connector) : FollowedBrowser(std::move(connector)) {}

CdpShell::~CdpShell()
{
    if (m_browser) {
        m_browser->connection().setEventHandler(nullptr);
        m_browser->connection().setIoHook(nullptr);
    }
    m_browser.reset();
}

void CdpShell::openConnection()
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
}

void CdpShell::AppActivate(const QString& title)
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

bool CdpShell::isVisibleTab(const QString& targetId)
{
    const QString session = m_targets.value(targetId).sessionId;
    const auto context = m_contexts.constFind(key(session, targetId));
    if (context == m_contexts.constEnd())
        return false;
    try {
        return evaluate(realmOf(session, *context),
                        QStringLiteral("window.__tolvane.doc('visibility')")) ==
               QLatin1String("visible");
    } catch (const AppError&) {
        return false;
    }
}

void CdpShell::OpenAddress(const QString& address)
{
    // A browser that has gone (closed by the user, crashed, never started) is started again
    // for it; its windows are taken up as they come, as at start-up.
    if (!isConnected())
        reconnect();
    cdp().call(QStringLiteral("Target.createTarget"), {{"url", address}, {"newWindow", true}});
}

void CdpShell::dropConnection()
{
    if (m_browser) {
        m_browser->connection().setEventHandler(nullptr);
        m_browser->connection().setIoHook(nullptr);
    }
    m_browser.reset();
    m_dialogs.reset();
    m_targets.clear();
    m_sessionTargets.clear();
    m_contexts.clear();
    m_contextFrames.clear();
    m_frameUrls.clear();
    m_documents.clear();
}

QJsonObject CdpShell::call(const QString& targetOrSession, const QString& method,
                           const QJsonObject& params)
{
    // Callers name a page by its target id or a frame by its session.
    const auto target = m_targets.constFind(targetOrSession);
    const QString session = target != m_targets.constEnd() ? target->sessionId : targetOrSession;
    return cdp().call(method, params, session);
}

void CdpShell::evaluateLater(const QString& realm, const QString& expression)
{
    cdp().send(QStringLiteral("Runtime.evaluate"),
               {{"expression", expression}, {"contextId", contextOf(realm)}}, sessionOf(realm));
}

QJsonValue CdpShell::evaluate(const QString& realm, const QString& expression)
{
    const QJsonObject answer = cdp().call(
        QStringLiteral("Runtime.evaluate"),
        {{"expression", expression}, {"contextId", contextOf(realm)}, {"returnByValue", true}},
        sessionOf(realm));
    if (answer.contains("exceptionDetails")) {
        const QJsonObject details = answer.value("exceptionDetails").toObject();
        const QString text = details.value("exception").toObject().value("description").toString();
        throw browserError(text.isEmpty() ? details.value("text").toString()
                                          : text.section(QLatin1Char('\n'), 0, 0));
    }
    return answer.value("result").toObject().value("value");
}

QString CdpShell::pageUrl(const QString& targetId) const
{
    return m_targets.value(targetId).url;
}

void CdpShell::reload(const QString& targetId)
{
    call(targetId, QStringLiteral("Page.reload"));
}

DocPtr CdpShell::pageDocument(const QString& targetId)
{
    // A page's main frame has the page's own target id.
    return documentFor(m_targets.value(targetId).sessionId, targetId);
}

DocPtr CdpShell::documentFor(const QString& sessionId, const QString& frameId)
{
    // A frame in a process of its own is reached through its own session.
    QString session = sessionId;
    const auto oopif = m_targets.constFind(frameId);
    if (oopif != m_targets.constEnd() && oopif->open && !oopif->sessionId.isEmpty())
        session = oopif->sessionId;
    const auto context = m_contexts.constFind(key(session, frameId));
    if (context == m_contexts.constEnd())
        return nullptr;
    return m_documents.get(realmOf(session, *context), frameId);
}

FramePtr CdpShell::frameOwner(const QString& realm, int index)
{
    const QString session = sessionOf(realm);
    QJsonObject answer;
    try {
        answer =
            cdp().call(QStringLiteral("Runtime.evaluate"),
                       {{"expression", QStringLiteral("window.__tolvane.frame(%1)").arg(index)},
                        {"contextId", contextOf(realm)}},
                       session);
    } catch (const AppError& error) {
        // Behind a dialog the frame cannot be reached, as another site's frame cannot.
        if (!CdpDialogGuard::isRefusal(error))
            throw;
        return std::make_shared<ScriptFrameOwner>(*this, session, QString());
    }
    const QString objectId = answer.value("result").toObject().value("objectId").toString();
    if (objectId.isEmpty())
        throw AppError(ErrorNumber::InvalidCall,
                       QStringLiteral("Invalid procedure call or argument"));
    const QJsonObject node =
        cdp()
            .call(QStringLiteral("DOM.describeNode"), {{"objectId", objectId}}, session)
            .value("node")
            .toObject();
    cdp().send(QStringLiteral("Runtime.releaseObject"), {{"objectId", objectId}}, session);
    return std::make_shared<ScriptFrameOwner>(*this, session, node.value("frameId").toString());
}

PageScriptHost::Failure CdpShell::failureOf(const AppError& error) const
{
    if (CdpDialogGuard::isRefusal(error))
        return Failure::Refused;
    const bool gone =
        error.number() == ErrorNumber::BrowserCall &&
        (error.description().contains(QLatin1String("Cannot find context with specified id")) ||
         error.description().contains(QLatin1String("Execution context was destroyed")));
    return gone ? Failure::Gone : Failure::Other;
}

std::shared_ptr<ScriptWindow> CdpShell::pageOfSession(const QString& sessionId) const
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

void CdpShell::onEvent(const RemoteConnection::Event& event)
{
    // TOLVANE_CDP_TRACE=1 lists the browser's events on standard error, for diagnosis.
    static const bool trace = qEnvironmentVariableIsSet("TOLVANE_CDP_TRACE");
    if (trace)
        qInfo(
            "cdp %s %s %s", qPrintable(event.sessionId.left(8)), qPrintable(event.method),
            qPrintable(QString::fromUtf8(QJsonDocument(event.params).toJson(QJsonDocument::Compact))
                           .left(200)));
    const QString& method = event.method;
    const QJsonObject& params = event.params;
    if (method == RemoteConnection::ClosedEvent) {
        for (Target& target : m_targets)
            target.open = false;
        browserGone();
    } else if (method == QLatin1String("Target.attachedToTarget")) {
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

void CdpShell::onAttached(const RemoteConnection::Event& event)
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

void CdpShell::onClosed(const QString& targetId)
{
    auto target = m_targets.find(targetId);
    if (target == m_targets.end() || !target->open)
        return;
    target->open = false;
    windowClosed(targetId);
}

void CdpShell::onContextCreated(const RemoteConnection::Event& event)
{
    const QJsonObject context = event.params.value("context").toObject();
    if (context.value("name").toString() != World)
        return;
    const QString frameId = context.value("auxData").toObject().value("frameId").toString();
    m_contexts.insert(key(event.sessionId, frameId), context.value("id").toInt());
    m_contextFrames.insert(realmOf(event.sessionId, context.value("id").toInt()), frameId);
}

void CdpShell::onLoaded(const QString& sessionId, const QString& frameId)
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

void CdpShell::evaluateAnswered(const QString& realm, const QString& expression,
                                std::function<void(const QJsonValue&)> answered)
{
    try {
        cdp().callLater(
            QStringLiteral("Runtime.evaluate"),
            {{"expression", expression}, {"contextId", contextOf(realm)}, {"returnByValue", true}},
            sessionOf(realm), [answered](const QJsonObject& result, const QString& error) {
                const bool failed =
                    !error.isEmpty() || result.contains(QLatin1String("exceptionDetails"));
                answered(failed ? QJsonValue() : result.value("result").toObject().value("value"));
            });
    } catch (const AppError&) {
        answered({}); // the browser has gone: nothing to fetch
    }
}

bool CdpShell::frameShowsBlank(const QString& sessionId, const QString& frameId)
{
    try {
        // A document that has already gone answers with no address: nothing to fill either.
        const DocPtr shown = documentFor(sessionId, frameId);
        const QString url = shown ? shown->url() : QString();
        return url.isEmpty() || url == QLatin1String("about:blank");
    } catch (const AppError&) {
        return true;
    }
}

void CdpShell::onDialogClosed(const QString& sessionId)
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

void CdpShell::onNetwork(const RemoteConnection::Event& event)
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

void CdpShell::onBinding(const RemoteConnection::Event& event)
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

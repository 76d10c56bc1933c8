// The calls into the page script's realms of each frame, and what their failures mean.
#include "CdpWindowList.h"

#include "AppError.h"
#include "CdpDialogGuard.h"
#include "CdpRealmNames.h"
#include "ScriptDocument.h"
#include "ScriptWindow.h"

using namespace CdpRealmNames;

namespace {
int contextOf(const QString& realm)
{
    return realm.section(QLatin1Char('\n'), 1).toInt();
}

AppError browserError(const QString& text)
{
    return AppError(ErrorNumber::BrowserCall, text);
}
} // namespace

void CdpWindowList::evaluateLater(const QString& realm, const PageCall& call)
{
    const QString expression = call.expression();
    cdp().send(QStringLiteral("Runtime.evaluate"),
               {{"expression", expression}, {"contextId", contextOf(realm)}}, sessionOf(realm));
}

QJsonValue CdpWindowList::evaluate(const QString& realm, const PageCall& call)
{
    const QString expression = call.expression();
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

void CdpWindowList::evaluateAnswered(const QString& realm, const PageCall& call,
                                     std::function<void(const QJsonValue&)> answered)
{
    const QString expression = call.expression();
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

FramePtr CdpWindowList::frameOwner(const QString& realm, int index)
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

PageScriptHost::Failure CdpWindowList::failureOf(const AppError& error) const
{
    if (CdpDialogGuard::isRefusal(error))
        return Failure::Refused;
    const bool gone =
        error.number() == ErrorNumber::BrowserCall &&
        (error.description().contains(QLatin1String("Cannot find context with specified id")) ||
         error.description().contains(QLatin1String("Execution context was destroyed")));
    return gone ? Failure::Gone : Failure::Other;
}

DocPtr CdpWindowList::documentFor(const QString& sessionId, const QString& frameId)
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

DocPtr CdpWindowList::pageDocument(const QString& targetId)
{
    // A page's main frame has the page's own target id.
    return documentFor(m_targets.value(targetId).sessionId, targetId);
}

bool CdpWindowList::frameShowsBlank(const QString& sessionId, const QString& frameId)
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

bool CdpWindowList::isVisibleTab(const QString& targetId)
{
    const QString session = m_targets.value(targetId).sessionId;
    const auto context = m_contexts.constFind(key(session, targetId));
    if (context == m_contexts.constEnd())
        return false;
    try {
        return evaluate(realmOf(session, *context),
                        PageCall::of("doc", {QStringLiteral("visibility")})) ==
               QLatin1String("visible");
    } catch (const AppError&) {
        return false;
    }
}

// The calls into the page script's realms of each frame, and what their failures mean.
#include "BidiContexts.h"

#include "AppError.h"
#include "BidiRealmNames.h"
#include "ScriptDocument.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace BidiRealmNames;

namespace {
AppError browserError(const QString& text)
{
    return AppError(ErrorNumber::BrowserCall, text);
}

QString asJson(const QString& expression)
{
    return QStringLiteral("JSON.stringify([(\n%1\n)])").arg(expression);
}

QJsonValue fromJson(const QJsonObject& result)
{
    const QJsonObject value = result.value("result").toObject();
    if (value.value("type").toString() != QLatin1String("string"))
        return {};
    return QJsonDocument::fromJson(value.value("value").toString().toUtf8()).array().at(0);
}

// An exception the script raised, as the browser words it.
void throwIfException(const QJsonObject& result)
{
    if (result.value("type").toString() != QLatin1String("exception"))
        return;
    const QJsonObject details = result.value("exceptionDetails").toObject();
    const QString text = details.value("text").toString();
    throw browserError(text.isEmpty() ? QStringLiteral("The page's script failed.")
                                      : text.section(QLatin1Char('\n'), 0, 0));
}
} // namespace

QJsonObject BidiContexts::evaluateParams(const QString& realm, const PageCall& call,
                                         bool answered) const
{
    // An answer comes back as JSON text: the browser's own serialisation types every value.
    return {{"expression", answered ? asJson(call.expression()) : call.expression()},
            {"target", QJsonObject{{"realm", realmIdOf(realm)}}},
            {"awaitPromise", false},
            {"resultOwnership", "none"}};
}

QJsonValue BidiContexts::evaluate(const QString& realm, const PageCall& call)
{
    const QJsonObject result =
        bidi().call(QStringLiteral("script.evaluate"), evaluateParams(realm, call, true));
    throwIfException(result);
    return fromJson(result);
}

void BidiContexts::evaluateLater(const QString& realm, const PageCall& call)
{
    bidi().send(QStringLiteral("script.evaluate"), evaluateParams(realm, call, false));
}

void BidiContexts::evaluateAnswered(const QString& realm, const PageCall& call,
                                    std::function<void(const QJsonValue&)> answered)
{
    try {
        bidi().callLater(QStringLiteral("script.evaluate"), evaluateParams(realm, call, true), {},
                         [answered](const QJsonObject& result, const QString& error) {
                             const bool failed =
                                 !error.isEmpty() ||
                                 result.value("type").toString() != QLatin1String("success");
                             answered(failed ? QJsonValue() : fromJson(result));
                         });
    } catch (const AppError&) {
        answered({}); // the browser has gone: nothing to fetch
    }
}

FramePtr BidiContexts::frameOwner(const QString& realm, int index)
{
    const QJsonObject result =
        bidi().call(QStringLiteral("script.evaluate"),
                    evaluateParams(realm, PageCall::of("frameWindow", {index}), false));
    throwIfException(result);
    const QJsonObject window = result.value("result").toObject();
    if (window.value("type").toString() != QLatin1String("window"))
        throw AppError(ErrorNumber::InvalidCall,
                       QStringLiteral("Invalid procedure call or argument"));
    return std::make_shared<ScriptFrameOwner>(
        *this, QString(), window.value("value").toObject().value("context").toString());
}

PageScriptHost::Failure BidiContexts::failureOf(const AppError& error) const
{
    // A realm or context that went answers "no such frame"; a page's dialog stops nothing here.
    const bool gone = error.number() == ErrorNumber::BrowserCall &&
                      error.description().startsWith(QLatin1String("no such frame"));
    return gone ? Failure::Gone : Failure::Other;
}

DocPtr BidiContexts::documentFor(const QString& /*scope*/, const QString& context)
{
    const auto known = m_contexts.constFind(context);
    if (known == m_contexts.constEnd() || !known->open || !known->scripted)
        return nullptr;
    return m_documents.get(realmName(context, known->realm), context);
}

DocPtr BidiContexts::pageDocument(const QString& context)
{
    return documentFor({}, context);
}

#include "ExtensionBrowser.h"

#include "AppError.h"
#include "BidiRealmNames.h"
#include "LocalTransport.h"

#include <QJsonArray>
#include <unistd.h>
#include <utility>

namespace {
const QString ShowsDialog = QStringLiteral("The page is showing a dialog.");
const QString DialogOpened = QStringLiteral("browsingContext.userPromptOpened");
const QString DialogClosed = QStringLiteral("browsingContext.userPromptClosed");

// The scopes of calls into the realms a dialog event names.
QStringList realmScopes(const RemoteConnection::Event& event)
{
    QStringList scopes;
    for (const QJsonValue& realm : event.params.value(QLatin1String("realms")).toArray())
        scopes.append(QLatin1Char('\n') + realm.toString());
    return scopes;
}
} // namespace

ExtensionLink::ExtensionLink(int descriptor)
    : m_connection(std::make_unique<RemoteConnection>(
          [descriptor] { return new LocalTransport(descriptor); }))
{
}

ExtensionBrowser::ExtensionBrowser(std::shared_ptr<qint64> handles)
    : FollowedBrowser([this] {
          if (m_descriptor < 0)
              throw AppError(ErrorNumber::BrowserCall,
                             QStringLiteral("No browser with Tolvane's extension is connected."));
          return std::make_unique<ExtensionLink>(std::exchange(m_descriptor, -1));
      })
{
    shareHandles(std::move(handles));
}

ExtensionBrowser::~ExtensionBrowser()
{
    releaseBrowser();
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void ExtensionBrowser::takeUp(int descriptor)
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = descriptor;
    reconnect();
}

void ExtensionBrowser::openConnection()
{
    m_browser = m_connector();
    RemoteConnection& connection = m_browser->connection();
    // A call waiting on a document behind a dialog must fail at once, not when the user-interface
    // thread (the one waiting) gets round to it.
    connection.setIoHook([&connection](const RemoteConnection::Event& event) {
        if (event.method == DialogOpened)
            connection.blockSessions(realmScopes(event), ShowsDialog);
        else if (event.method == DialogClosed)
            connection.unblockSessions(realmScopes(event));
    });
    connection.setEventHandler([this](const RemoteConnection::Event& event) {
        // TOLVANE_EXTENSION_TRACE=1 lists the extension's events on standard error.
        if (!takeEvent("TOLVANE_EXTENSION_TRACE", "extension", event))
            return;
        if (event.method == DialogClosed)
            dialogClosedIn(event.params.value(QLatin1String("context")).toString());
        else
            onEvent(event);
    });
    follow();
    takeUpOpenContexts();
    connection.setTimeout(RemoteConnection::CallTimeoutMs);
}

void ExtensionBrowser::dropConnection()
{
    releaseBrowser();
    forgetAll();
}

RemoteConnection& ExtensionBrowser::browserConnection()
{
    if (!m_browser)
        throw AppError(ErrorNumber::BrowserCall,
                       QStringLiteral("No browser with Tolvane's extension is connected."));
    return m_browser->connection();
}

QJsonObject ExtensionBrowser::evaluateParams(const QString& realm, const PageCall& call,
                                             bool /*answered*/) const
{
    return {{"call", call.message()},
            {"target", QJsonObject{{"realm", BidiRealmNames::realmIdOf(realm)}}}};
}

PageScriptHost::Failure ExtensionBrowser::failureOf(const AppError& error) const
{
    if (error.number() == ErrorNumber::BrowserCall && error.description() == ShowsDialog)
        return Failure::Refused;
    return BidiContexts::failureOf(error);
}

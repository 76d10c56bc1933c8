#include "ExtensionWindowList.h"

#include "AppError.h"
#include "BidiRealmNames.h"
#include "LocalTransport.h"

#include <QJsonArray>
#include <unistd.h>

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

ExtensionWindowList::ExtensionWindowList(DesktopOpener openWithDesktop)
    : FollowedBrowser([this] {
          const int descriptor = m_waiting.front();
          m_waiting.pop_front();
          return std::make_unique<ExtensionLink>(descriptor);
      }),
      m_openWithDesktop(std::move(openWithDesktop))
{
    QObject::connect(&m_socket, &BarSocket::connected, &m_socket,
                     [this](int descriptor) { browserArrived(descriptor); });
}

ExtensionWindowList::~ExtensionWindowList()
{
    releaseBrowser();
    for (const int descriptor : m_waiting)
        ::close(descriptor);
}

void ExtensionWindowList::openConnection()
{
    // No browser yet is no failure: the window list is empty until one connects.
    m_socket.listen();
    if (m_waiting.empty())
        return;
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
        if (takeEvent("TOLVANE_EXTENSION_TRACE", "extension", event)) {
            if (event.method == DialogClosed)
                dialogClosedIn(event.params.value(QLatin1String("context")).toString());
            else
                onEvent(event);
        } else if (!m_waiting.empty()) {
            // The browser went: one that waited is followed now.
            QMetaObject::invokeMethod(
                &m_socket, [this] { browserArrived(-1); }, Qt::QueuedConnection);
        }
    });
    follow();
    takeUpOpenContexts();
}

void ExtensionWindowList::browserArrived(int descriptor)
{
    if (descriptor >= 0)
        m_waiting.push_back(descriptor);
    if (isConnected() || m_waiting.empty())
        return;
    try {
        reconnect();
    } catch (const AppError& error) {
        qWarning("Tolvane: cannot follow the browser that connected: %s",
                 qPrintable(error.description()));
    }
}

void ExtensionWindowList::dropConnection()
{
    releaseBrowser();
    forgetAll();
}

RemoteConnection& ExtensionWindowList::browserConnection()
{
    if (!m_browser)
        throw AppError(ErrorNumber::BrowserCall,
                       QStringLiteral("No browser with Tolvane's extension is connected."));
    return m_browser->connection();
}

void ExtensionWindowList::OpenAddress(const QString& address)
{
    if (isConnected())
        openInNewTab(address);
    else
        m_openWithDesktop(address);
}

QJsonObject ExtensionWindowList::evaluateParams(const QString& realm, const PageCall& call,
                                                bool /*answered*/) const
{
    return {{"call", call.message()},
            {"target", QJsonObject{{"realm", BidiRealmNames::realmIdOf(realm)}}}};
}

PageScriptHost::Failure ExtensionWindowList::failureOf(const AppError& error) const
{
    if (error.number() == ErrorNumber::BrowserCall && error.description() == ShowsDialog)
        return Failure::Refused;
    return BidiContexts::failureOf(error);
}

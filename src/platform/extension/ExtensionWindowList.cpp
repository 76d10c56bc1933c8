#include "ExtensionWindowList.h"

#include "AppError.h"
#include "BidiRealmNames.h"
#include "LocalTransport.h"

#include <unistd.h>

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
    m_browser->connection().setEventHandler([this](const RemoteConnection::Event& event) {
        // TOLVANE_EXTENSION_TRACE=1 lists the extension's events on standard error.
        if (takeEvent("TOLVANE_EXTENSION_TRACE", "extension", event)) {
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

#pragma once

#include "BarSocket.h"
#include "BidiContexts.h"
#include "FollowedBrowser.h"
#include "RemoteConnection.h"

#include <deque>
#include <functional>
#include <memory>

// A browser that reached the bar through Tolvane's extension and host: its connection.
class ExtensionLink
{
public:
    // Takes ownership of the connected socket's descriptor.
    explicit ExtensionLink(int descriptor);
    RemoteConnection& connection() { return *m_connection; }

private:
    std::unique_ptr<RemoteConnection> m_connection;
};

// The shell's window list over the user's own browser, through Tolvane's extension: the bar
// listens on its socket, and follows the browser whose host connects (a second one waits until
// the first goes). The extension's background speaks the part of WebDriver BiDi the window list
// uses; calls into a document go as data, since an extension runs no script text.
class ExtensionWindowList : public FollowedBrowser<ExtensionLink, BidiContexts>
{
public:
    // How an address opens when no browser is connected: the desktop's default browser.
    using DesktopOpener = std::function<void(const QString& address)>;
    explicit ExtensionWindowList(DesktopOpener openWithDesktop);
    ~ExtensionWindowList() override;

    // Opens the address in a new tab of the followed browser's front window, or with the
    // desktop's default browser when none is connected. Throws AppError.
    void OpenAddress(const QString& address);

private:
    void openConnection() override;
    void dropConnection() override;
    RemoteConnection& browserConnection() override;
    QJsonObject evaluateParams(const QString& realm, const PageCall& call,
                               bool answered) const override;
    Failure failureOf(const AppError& error) const override;
    void browserArrived(int descriptor);

    DesktopOpener m_openWithDesktop;
    BarSocket m_socket;
    std::deque<int> m_waiting; // connected hosts not yet followed
};

#pragma once

#include "BarSocket.h"
#include "ExtensionBrowser.h"
#include "ShellWindowList.h"
#include "Subscribers.h"

#include <functional>
#include <memory>
#include <vector>

// The shell's window list over the user's own browsers, through Tolvane's extension: the bar
// listens on its socket from first use, and follows every browser whose host connects (Chromium
// and Firefox at once, say) as one list, their windows in the order the browsers came.
class ExtensionWindowList : public ShellWindowList
{
public:
    // How an address opens: with the desktop's default browser.
    using DesktopOpener = std::function<void(const QString& address)>;
    explicit ExtensionWindowList(DesktopOpener openWithDesktop);
    ~ExtensionWindowList() override;

    QList<BrowserPtr> items() override;
    void subscribe(const std::shared_ptr<ShellWindowEvents>& sink) override;
    void unsubscribe(const ShellWindowEvents* sink) override;
    // The first window of that title in any followed browser; throws AppError when none has one.
    void AppActivate(const QString& title) override;

    bool isConnected() const;
    // Opens the address with the desktop's default browser, whichever browsers are connected.
    void OpenAddress(const QString& address);

private:
    void listen();
    void browserArrived(int descriptor);
    // The browsers followed now, in the order they came.
    std::vector<ExtensionBrowser*> connected() const;

    struct Followed
    {
        std::unique_ptr<ExtensionBrowser> browser;
        quint64 arrival; // when its browser connected, in the order of connections
    };

    DesktopOpener m_openWithDesktop;
    BarSocket m_socket;
    bool m_listening = false;
    Subscribers<ShellWindowEvents> m_sinks;
    std::shared_ptr<qint64> m_handles = std::make_shared<qint64>(1);
    std::vector<Followed> m_browsers; // kept when their browser goes, for the next to come
    quint64 m_arrivals = 0;
};

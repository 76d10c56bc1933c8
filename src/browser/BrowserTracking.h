#pragma once

#include "IEHolder.h"
#include "ShellWindowList.h"

#include <memory>
#include <vector>

class MessagePump;

// What window tracking needs of the main window besides the holders' services.
class TrackingHost
{
public:
    virtual ~TrackingHost() = default;
    virtual void ShowStatus(const QString& text) = 0;
    // Errors of a pass are shown only while the main window is visible.
    virtual bool isMainWindowVisible() const = 0;
};

// The main window's side of browser tracking: the shell's window list and one holder per
// window. Holders are never removed; a holder whose window closed is free for the next one.
class BrowserTracking : public ShellWindowEvents,
                        public std::enable_shared_from_this<BrowserTracking>
{
public:
    BrowserTracking(ShellWindowList& SW, const IEHolderServices& services, TrackingHost& host,
                    MessagePump& pump);
    ~BrowserTracking() override;
    BrowserTracking(const BrowserTracking&) = delete;
    BrowserTracking& operator=(const BrowserTracking&) = delete;

    // Subscribes to the shell's window list; needs the object to be owned by a shared_ptr.
    void start();
    void ResetIEs();
    // The window's handle, 0 when there is no window or it does not answer.
    static qint64 GetHWND(const BrowserPtr& browser);

    // Holders 1 to the upper bound; slot 0 is the template.
    int upperBound() const { return static_cast<int>(m_holders.size()) - 1; }
    std::shared_ptr<IEHolder> holder(int index) const { return m_holders.at(index); }
    ShellWindowList& SW() const { return m_sw; }

    void SW_WindowRegistered(int lCookie) override;
    void SW_WindowRevoked(int lCookie) override;

private:
    void assign(const BrowserPtr& window);

    ShellWindowList& m_sw;
    IEHolderServices m_services;
    TrackingHost& m_host;
    MessagePump& m_pump;
    std::vector<std::shared_ptr<IEHolder>> m_holders;
    bool m_subscribed = false;
};

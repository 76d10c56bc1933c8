#include "BrowserTracking.h"

#include "AppError.h"
#include "ErrorReport.h"
#include "MessagePump.h"

BrowserTracking::BrowserTracking(ShellWindowList& SW, const IEHolderServices& services,
                                 TrackingHost& host, MessagePump& pump)
    : m_sw(SW), m_services(services), m_host(host), m_pump(pump)
{
    m_holders.push_back(std::make_shared<IEHolder>(0, m_services));
}

BrowserTracking::~BrowserTracking()
{
    if (m_subscribed)
        m_sw.unsubscribe(this);
}

void BrowserTracking::start()
{
    m_sw.subscribe(shared_from_this());
    m_subscribed = true;
}

qint64 BrowserTracking::GetHWND(const BrowserPtr& browser)
{
    try {
        return browser ? browser->HWND() : 0;
    } catch (const AppError&) {
        return 0;
    }
}

void BrowserTracking::ResetIEs()
{
    const auto self = shared_from_this();
    m_host.ShowStatus(QStringLiteral("updating windows"));
    try {
        for (const BrowserPtr& window : m_sw.items()) {
            assign(window);
            m_pump.DoEvents();
        }
    } catch (const AppError& error) {
        if (m_host.isMainWindowVisible())
            m_services.errors.ReportError(error, QStringLiteral("ResetIEs"));
    }
}

void BrowserTracking::assign(const BrowserPtr& window)
{
    const qint64 hwnd = window->HWND();
    // Read the holder count afresh each time: a nested pass may have added holders.
    for (int i = 1; i <= upperBound(); ++i) {
        if (GetHWND(m_holders[i]->InternetExplorer()) == hwnd)
            return;
    }
    for (int i = 1; i <= upperBound(); ++i) {
        if (GetHWND(m_holders[i]->InternetExplorer()) == 0) {
            const auto holder = m_holders[i];
            holder->setInternetExplorer(window);
            return;
        }
    }
    const auto holder = std::make_shared<IEHolder>(upperBound() + 1, m_services);
    m_holders.push_back(holder);
    holder->setInternetExplorer(window);
}

void BrowserTracking::SW_WindowRegistered(int /*lCookie*/)
{
    ResetIEs();
}

void BrowserTracking::SW_WindowRevoked(int /*lCookie*/)
{
    ResetIEs();
}

#include "ExtensionWindowList.h"

#include "AppError.h"

#include <algorithm>
#include <iterator>
#include <optional>

ExtensionWindowList::ExtensionWindowList(DesktopOpener openWithDesktop)
    : m_openWithDesktop(std::move(openWithDesktop))
{
    QObject::connect(&m_socket, &BarSocket::connected, &m_socket,
                     [this](int descriptor) { browserArrived(descriptor); });
}

ExtensionWindowList::~ExtensionWindowList() = default;

void ExtensionWindowList::listen()
{
    // No browser yet is no failure: the list is empty until one connects.
    if (!std::exchange(m_listening, true))
        m_socket.listen();
}

void ExtensionWindowList::browserArrived(int descriptor)
{
    // The place of a browser that went is taken again: the shell may still hold its windows.
    auto free = std::find_if(m_browsers.begin(), m_browsers.end(),
                             [](const Followed& f) { return !f.browser->isConnected(); });
    if (free == m_browsers.end()) {
        m_browsers.push_back({std::make_unique<ExtensionBrowser>(m_handles), 0});
        free = std::prev(m_browsers.end());
        for (const auto& sink : m_sinks.snapshot())
            free->browser->subscribe(sink);
    }
    free->arrival = ++m_arrivals;
    try {
        free->browser->takeUp(descriptor); // its windows are taken up and announced now
    } catch (const AppError& error) {
        qWarning("Tolvane: cannot follow the browser that connected: %s",
                 qPrintable(error.description()));
    }
}

std::vector<ExtensionBrowser*> ExtensionWindowList::connected() const
{
    std::vector<const Followed*> followed;
    for (const Followed& f : m_browsers) {
        if (f.browser->isConnected())
            followed.push_back(&f);
    }
    std::sort(followed.begin(), followed.end(),
              [](const Followed* a, const Followed* b) { return a->arrival < b->arrival; });
    std::vector<ExtensionBrowser*> browsers;
    for (const Followed* f : followed)
        browsers.push_back(f->browser.get());
    return browsers;
}

QList<BrowserPtr> ExtensionWindowList::items()
{
    listen();
    QList<BrowserPtr> windows;
    for (ExtensionBrowser* browser : connected())
        windows += browser->items();
    return windows;
}

void ExtensionWindowList::subscribe(const std::shared_ptr<ShellWindowEvents>& sink)
{
    listen();
    m_sinks.add(sink);
    for (const Followed& f : m_browsers)
        f.browser->subscribe(sink);
}

void ExtensionWindowList::unsubscribe(const ShellWindowEvents* sink)
{
    m_sinks.remove(sink);
    for (const Followed& f : m_browsers)
        f.browser->unsubscribe(sink);
}

void ExtensionWindowList::AppActivate(const QString& title)
{
    std::optional<AppError> missing; // as the first browser says it
    for (ExtensionBrowser* browser : connected()) {
        try {
            browser->AppActivate(title);
            return;
        } catch (const AppError& error) {
            if (!missing)
                missing.emplace(error);
        }
    }
    if (missing)
        throw *missing;
    throw AppError(ErrorNumber::BrowserCall,
                   QStringLiteral("No browser with Tolvane's extension is connected."));
}

bool ExtensionWindowList::isConnected() const
{
    return !connected().empty();
}

void ExtensionWindowList::OpenAddress(const QString& address)
{
    // The browser the user chose opens it, as links from other programs open: in a new tab of
    // its front window when it runs, started when it does not.
    m_openWithDesktop(address);
}

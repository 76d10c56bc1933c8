#pragma once

#include "ScriptWindowList.h"

#include <QJsonDocument>
#include <functional>
#include <memory>
#include <type_traits>

// The browser process an adapter follows: made by its connector on first use (started, or
// attached to one already running), with the connection the adapter's calls go through. `Base`
// is the window list it completes: one that speaks the browser's protocol, say.
template <class Process, class Base = ScriptWindowList> class FollowedBrowser : public Base
{
public:
    using Connector = std::function<std::unique_ptr<Process>()>;
    explicit FollowedBrowser(Connector connector) : m_connector(std::move(connector)) {}

    bool isConnected() const override { return m_browser && !m_browser->connection().isClosed(); }
    Process* process() const { return m_browser.get(); }

protected:
    using Connection = std::remove_reference_t<decltype(std::declval<Process&>().connection())>;

    // The browser's connection; throws AppError when there is no browser to call.
    auto& connected()
    {
        this->requireConnection();
        return m_browser->connection();
    }

    // Ends the followed browser; nothing it still sends reaches the adapter.
    void releaseBrowser()
    {
        if (m_browser) {
            m_browser->connection().setEventHandler(nullptr);
            m_browser->connection().setIoHook(nullptr);
        }
        m_browser.reset();
    }

    // What every adapter does first with an event: lists it on standard error when the
    // environment variable `traceVariable` is set (for diagnosis), and takes the connection's
    // closing for the browser gone, every window it showed closed. True when the event is the
    // adapter's to handle.
    bool takeEvent(const char* traceVariable, const char* tag,
                   const typename Connection::Event& event)
    {
        static const bool trace = qEnvironmentVariableIsSet(traceVariable);
        if (trace)
            qInfo("%s %s %s %s", tag, qPrintable(event.sessionId.left(8)), qPrintable(event.method),
                  qPrintable(
                      QString::fromUtf8(QJsonDocument(event.params).toJson(QJsonDocument::Compact))
                          .left(200)));
        if (event.method != Connection::ClosedEvent)
            return true;
        this->markAllClosed();
        this->browserGone();
        return false;
    }

    Connector m_connector;
    std::unique_ptr<Process> m_browser;
};

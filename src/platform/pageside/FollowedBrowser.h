#pragma once

#include "ScriptWindowList.h"

#include <functional>
#include <memory>

// The browser process an adapter follows: made by its connector on first use (started, or
// attached to one already running), with the connection the adapter's calls go through.
template <class Process> class FollowedBrowser : public ScriptWindowList
{
public:
    using Connector = std::function<std::unique_ptr<Process>()>;
    explicit FollowedBrowser(Connector connector) : m_connector(std::move(connector)) {}

    bool isConnected() const override { return m_browser && !m_browser->connection().isClosed(); }
    Process* process() const { return m_browser.get(); }

protected:
    // The browser's connection; throws AppError when there is no browser to call.
    auto& connected()
    {
        this->requireConnection();
        return m_browser->connection();
    }

    Connector m_connector;
    std::unique_ptr<Process> m_browser;
};

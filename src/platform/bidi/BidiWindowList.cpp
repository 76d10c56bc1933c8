#include "BidiWindowList.h"

BidiWindowList::~BidiWindowList()
{
    releaseBrowser();
}

void BidiWindowList::openConnection()
{
    m_browser = m_connector();
    m_browser->connection().setEventHandler([this](const RemoteConnection::Event& event) {
        // TOLVANE_BIDI_TRACE=1 lists the browser's events on standard error.
        if (takeEvent("TOLVANE_BIDI_TRACE", "bidi", event))
            onEvent(event);
    });
    follow();
    // Opened with the page script in place, so that they are followed from their first document.
    m_browser->reopenTabsOfLastClose();
    takeUpOpenContexts();
    m_browser->connection().setTimeout(RemoteConnection::CallTimeoutMs);
}

void BidiWindowList::OpenAddress(const QString& address)
{
    // A browser that has gone is started again for it; its windows are taken up as they come.
    if (!isConnected())
        reconnect();
    openInNewTab(address);
}

void BidiWindowList::dropConnection()
{
    releaseBrowser();
    forgetAll();
}

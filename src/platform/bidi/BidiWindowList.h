#pragma once

#include "BidiContexts.h"
#include "FirefoxProcess.h"
#include "FollowedBrowser.h"

// The shell's window list over Firefox, through WebDriver BiDi.
class BidiWindowList : public FollowedBrowser<FirefoxProcess, BidiContexts>
{
public:
    // Connects on first use (the start-up subscribes once the data folder is known).
    using FollowedBrowser::FollowedBrowser;
    ~BidiWindowList() override;

    // Opens a page in a new tab, starting the browser again when it has gone. Throws AppError.
    void OpenAddress(const QString& address);

private:
    void openConnection() override;
    void dropConnection() override;
    RemoteConnection& browserConnection() override { return m_browser->connection(); }
};

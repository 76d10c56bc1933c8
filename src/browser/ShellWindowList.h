#pragma once

#include "Browser.h"

#include <QList>

class ShellWindowEvents
{
public:
    virtual ~ShellWindowEvents() = default;
    virtual void SW_WindowRegistered(int lCookie) = 0;
    virtual void SW_WindowRevoked(int lCookie) = 0;
};

// The shell's list of open browser windows, in its own order.
class ShellWindowList
{
public:
    virtual ~ShellWindowList() = default;
    // Throws AppError when the list cannot be walked.
    virtual QList<BrowserPtr> items() = 0;
    virtual void subscribe(const std::shared_ptr<ShellWindowEvents>& sink) = 0;
    virtual void unsubscribe(const ShellWindowEvents* sink) = 0;
    // Brings forward the top-level window with this title (equal, else beginning with it).
    // Throws AppError when there is none.
    virtual void AppActivate(const QString& title) = 0;
};

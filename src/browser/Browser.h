#pragma once

#include "HtmlDocument.h"

#include <QString>
#include <memory>

class Browser;
using BrowserPtr = std::shared_ptr<Browser>;

// The events of a browser window.
class BrowserEvents
{
public:
    virtual ~BrowserEvents() = default;
    // Once for the top document and once per frame; pDisp is the browser object of the frame
    // or window that completed, nullptr when it is no browser object.
    virtual void IE_DocumentComplete(const BrowserPtr& pDisp, const QString& URL) = 0;
    virtual void IE_ProgressChange(int Progress, int ProgressMax) = 0;
    virtual void IE_StatusTextChange(const QString& Text) = 0;
};

// One browser window (or a frame's browser object). Calls on a window that has gone throw
// AppError.
class Browser : public DocumentOwner
{
public:
    virtual qint64 HWND() const = 0;
    DocPtr Document() { return document(); }
    virtual QString LocationURL() const = 0;
    virtual void Refresh() = 0;

    virtual void subscribe(const std::shared_ptr<BrowserEvents>& sink) = 0;
    virtual void unsubscribe(const BrowserEvents* sink) = 0;
};

#pragma once

#include "Browser.h"
#include "Subscribers.h"

#include <optional>

// What the windows of a browser adapter ask of it: a window is a tab (a page target, a
// top-level browsing context) named by the adapter's own id.
class ScriptWindowHost
{
public:
    virtual ~ScriptWindowHost() = default;
    virtual bool isOpen(const QString& windowId) const = 0;
    virtual DocPtr pageDocument(const QString& windowId) = 0;
    virtual QString pageUrl(const QString& windowId) const = 0;
    // Throws AppError.
    virtual void reload(const QString& windowId) = 0;
    // The document now shown in that frame, or nullptr when there is none to reach. `scope` is
    // what the adapter needs besides the frame's id to find it (its session, say).
    virtual DocPtr documentFor(const QString& scope, const QString& frameId) = 0;
};

// One tab of the browser: a window of the shell's window list.
class ScriptWindow : public Browser, public std::enable_shared_from_this<ScriptWindow>
{
public:
    ScriptWindow(ScriptWindowHost& host, QString windowId, qint64 handle)
        : m_host(host), m_windowId(std::move(windowId)), m_handle(handle)
    {
    }

    qint64 HWND() const override;
    DocPtr document() override;
    QString LocationURL() const override;
    void Refresh() override;
    // A follower that comes while the page loads (its events may all have come in one burst
    // before) hears where the load stands.
    void subscribe(const std::shared_ptr<BrowserEvents>& sink) override;
    void unsubscribe(const BrowserEvents* sink) override { m_sinks.remove(sink); }

    const QString& windowId() const { return m_windowId; }
    // What the adapter learned of this window, passed to the holders. A load of its own page
    // (frameId is the window's id) or of one of its frames, with the document the frame shows.
    void loaded(const QString& frameId, const DocPtr& document);
    void documentComplete(const BrowserPtr& pDisp, const QString& url);
    void statusText(const QString& text);
    void progressChange(int progress, int progressMax);
    // The window belonged to a browser that has gone: a new one may reuse its id.
    void retire() { m_retired = true; }

private:
    bool isOpen() const { return !m_retired && m_host.isOpen(m_windowId); }

    ScriptWindowHost& m_host;
    QString m_windowId;
    qint64 m_handle;
    bool m_retired = false;
    Subscribers<BrowserEvents> m_sinks;
    std::optional<std::pair<int, int>> m_progress; // the last progress and its maximum
};

// The browser object of one frame of a page, as its DocumentComplete names it.
class ScriptFrameWindow : public Browser
{
public:
    ScriptFrameWindow(std::shared_ptr<ScriptWindow> page, DocPtr document)
        : m_page(std::move(page)), m_document(std::move(document))
    {
    }
    qint64 HWND() const override { return m_page->HWND(); }
    DocPtr document() override { return m_document; }
    QString LocationURL() const override { return m_document->url(); }
    void Refresh() override { m_page->Refresh(); }
    void subscribe(const std::shared_ptr<BrowserEvents>&) override {}
    void unsubscribe(const BrowserEvents*) override {}

private:
    std::shared_ptr<ScriptWindow> m_page;
    DocPtr m_document;
};

// A frame's window as its owner element gives it: its document is looked up when asked for, as
// the frame may load anew.
class ScriptFrameOwner : public DocumentOwner
{
public:
    ScriptFrameOwner(ScriptWindowHost& host, QString scope, QString frameId)
        : m_host(host), m_scope(std::move(scope)), m_frame(std::move(frameId))
    {
    }
    DocPtr document() override;

private:
    ScriptWindowHost& m_host;
    QString m_scope;
    QString m_frame;
};

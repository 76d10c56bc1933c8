#pragma once

#include "Browser.h"
#include "Subscribers.h"

class CdpShell;

// One page target of the browser: a window of the shell's window list.
class CdpBrowser : public Browser, public std::enable_shared_from_this<CdpBrowser>
{
public:
    CdpBrowser(CdpShell& shell, QString targetId, qint64 handle)
        : m_shell(shell), m_targetId(std::move(targetId)), m_handle(handle)
    {
    }

    qint64 HWND() const override;
    DocPtr document() override;
    QString LocationURL() const override;
    void Refresh() override;
    void subscribe(const std::shared_ptr<BrowserEvents>& sink) override { m_sinks.add(sink); }
    void unsubscribe(const BrowserEvents* sink) override { m_sinks.remove(sink); }

    const QString& targetId() const { return m_targetId; }
    // What the shell learned of this window, passed to the holders.
    void documentComplete(const BrowserPtr& pDisp, const QString& url);
    void statusText(const QString& text);
    void progressChange(int progress, int progressMax);

private:
    CdpShell& m_shell;
    QString m_targetId;
    qint64 m_handle;
    Subscribers<BrowserEvents> m_sinks;
};

// The browser object of one frame of a page, as its DocumentComplete names it.
class CdpFrameBrowser : public Browser
{
public:
    CdpFrameBrowser(std::shared_ptr<CdpBrowser> page, DocPtr document)
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
    std::shared_ptr<CdpBrowser> m_page;
    DocPtr m_document;
};

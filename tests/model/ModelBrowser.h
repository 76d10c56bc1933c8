#pragma once

#include "Browser.h"
#include "ModelDocument.h"
#include "ShellWindowList.h"
#include "Subscribers.h"

// A browser window of the in-memory model: it shows a document (or a folder), completes loads
// frame by frame and then the top, reports progress and status texts, and fails every call
// once closed.
class ModelBrowser : public Browser, public std::enable_shared_from_this<ModelBrowser>
{
public:
    explicit ModelBrowser(qint64 hwnd) : m_hwnd(hwnd) {}

    qint64 HWND() const override;
    DocPtr document() override;
    QString LocationURL() const override;
    void Refresh() override;
    void subscribe(const std::shared_ptr<BrowserEvents>& sink) override;
    void unsubscribe(const BrowserEvents* sink) override;

    // Shows the page at its address; its complete frames, then the page, report completion.
    void navigate(const std::shared_ptr<ModelDocument>& page);
    // Shows something that is no HTML document (a folder view).
    void showFolder(const QString& path);
    // One frame of the shown page completes on its own.
    void completeFrame(int index);
    // One frame of the shown page goes on to another document, which completes on its own.
    void loadFrame(int index, const std::shared_ptr<ModelDocument>& document);
    void progress(int Progress, int ProgressMax);
    void statusText(const QString& text);
    void close();

    int refreshCount() const { return m_refreshes; }
    bool isClosed() const { return m_closed; }

private:
    void checkOpen() const;
    void raiseComplete(const BrowserPtr& pDisp, const QString& url);

    qint64 m_hwnd;
    bool m_closed = false;
    std::shared_ptr<ModelDocument> m_page;
    // Every page shown stays a live object until the window closes, as a browser's documents
    // did for whoever still held them.
    QList<std::shared_ptr<ModelDocument>> m_shown;
    QString m_location;
    int m_refreshes = 0;
    Subscribers<BrowserEvents> m_sinks;
};

// The shell's window list in the model: windows open and close with the two notifications.
class ModelShell : public ShellWindowList
{
public:
    QList<BrowserPtr> items() override;
    void subscribe(const std::shared_ptr<ShellWindowEvents>& sink) override;
    void unsubscribe(const ShellWindowEvents* sink) override;
    void AppActivate(const QString& title) override;

    // A new window with the next handle, announced to the subscribers.
    std::shared_ptr<ModelBrowser> open();
    void close(const std::shared_ptr<ModelBrowser>& window);
    // The list cannot be walked, as when the shell is busy.
    void setWalkFails(bool fails) { m_walkFails = fails; }
    const QStringList& activated() const { return m_activated; }

private:
    QList<std::shared_ptr<ModelBrowser>> m_windows;
    Subscribers<ShellWindowEvents> m_sinks;
    qint64 m_nextHwnd = 0x10010;
    bool m_walkFails = false;
    QStringList m_activated;
};

#pragma once

#include "ScriptDocuments.h"
#include "ScriptWindow.h"
#include "ShellWindowList.h"
#include "Subscribers.h"

#include <QHash>
#include <QStringList>
#include <functional>
#include <memory>

// What the adapters share of the shell's window list: the connection made on first use (its
// failure kept for the calls that need it), the tabs in the order they came, each with a
// handle that is never reused, their followers told as they come and go, a tab's progress, and
// the loads reported once what their fill reads first has been fetched.
class ScriptWindowList : public ShellWindowList, public ScriptWindowHost
{
public:
    QList<BrowserPtr> items() override;
    void subscribe(const std::shared_ptr<ShellWindowEvents>& sink) override;
    void unsubscribe(const ShellWindowEvents* sink) override;
    bool isOpen(const QString& windowId) const override;
    virtual bool isConnected() const = 0;

protected:
    // Starts or attaches to the browser and sets up the following; throws AppError.
    virtual void openConnection() = 0;
    // Lets the browser that went go, and everything the adapter knew of it.
    virtual void dropConnection() = 0;
    // The browser went: what the adapter knew of its windows and frames is closed.
    virtual void markAllClosed() = 0;

    // Connects once; a failure is kept, and said by the calls that need the browser.
    void connect();
    // Throws AppError when there is no browser to call.
    void requireConnection();
    // Window handles drawn from a counter shared with other lists the shell sees as one.
    void shareHandles(std::shared_ptr<qint64> counter) { m_nextHandle = std::move(counter); }
    // Drops the browser that went and connects anew; throws AppError when that fails.
    void reconnect();

    // The tab of that id, made and announced on its first mention.
    void addWindow(const QString& windowId);
    std::shared_ptr<ScriptWindow> window(const QString& windowId) const;
    const QStringList& windowOrder() const { return m_order; }
    void windowClosed(const QString& windowId);
    // Every window of the browser closed at once.
    void browserGone();

    // The shell's AppActivate over tabs: a tabbed window's title is its visible tab's, so the first
    // tab titled `title` (equal, else beginning with it) that its window shows is brought forward.
    // A hidden tab of that title is no window of that title: bringing it forward would switch tabs
    // under the user. `bringForwardIfShown` says whether it did. Throws AppError when none is.
    void activateTitled(const QString& title,
                        const std::function<QString(const QString& windowId)>& titleOf,
                        const std::function<bool(const QString& windowId)>& bringForwardIfShown);

    // A tab started navigating: its requests are counted anew.
    void restartProgress(const QString& windowId);
    void requestSent(const std::shared_ptr<ScriptWindow>& page);
    void requestEnded(const std::shared_ptr<ScriptWindow>& page);

    // Tells the tab of a load once what its fill reads first has been fetched: a page busy loading
    // its frames answers late, and the bar does not wait meanwhile. The page's own load fills its
    // loaded frames again too, so theirs (`ofPage`) are fetched as well. `shownNow` is what the
    // frame shows by then: a frame gone on to another document reports that one's load instead.
    void reportLoad(const std::shared_ptr<ScriptWindow>& page, const QString& frameId,
                    const DocPtr& document, const ScriptDocuments& documents,
                    const std::function<bool(const QString& realm)>& ofPage,
                    std::function<DocPtr()> shownNow);

private:
    struct Window
    {
        std::shared_ptr<ScriptWindow> window;
        bool open = true;
    };
    struct Progress
    {
        int requested = 0;
        int ended = 0;
    };
    enum class Connection
    {
        None,
        Opening,
        Open,
        Failed
    };

    void revoked();

    Subscribers<ShellWindowEvents> m_sinks;
    QHash<QString, Window> m_windows;
    QStringList m_order;
    QHash<QString, Progress> m_progress; // by window
    std::shared_ptr<qint64> m_nextHandle = std::make_shared<qint64>(1);
    Connection m_connection = Connection::None;
    QString m_connectFailure;
};

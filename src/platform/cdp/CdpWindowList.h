#pragma once

#include "ChromiumProcess.h"
#include "FollowedBrowser.h"
#include "PageScriptHost.h"
#include "RemoteConnection.h"

#include <QHash>
#include <functional>
#include <memory>

class CdpDialogGuard;
class ScriptDocument;

// The shell's window list over a Chromium-family browser: one window per page target;
// documents for every frame, out-of-process ones included; the users' actions reported by the
// script Tolvane puts in every frame.
class CdpWindowList : public FollowedBrowser<ChromiumProcess>, public PageScriptHost
{
public:
    // Connects on first use (the start-up subscribes once the data folder is known).
    explicit CdpWindowList(Connector connector);
    ~CdpWindowList() override;

    void AppActivate(const QString& title) override;
    // Opens a page in a new tab of the followed browser's front window, starting (or attaching to)
    // it again when it has gone. Throws AppError when it cannot.
    void OpenAddress(const QString& address);

    // The page script's realms are the contexts of Tolvane's world: session + "\n" + context id.
    QJsonValue evaluate(const QString& realm, const PageCall& call) override;
    void evaluateLater(const QString& realm, const PageCall& call) override;
    void evaluateAnswered(const QString& realm, const PageCall& call,
                          std::function<void(const QJsonValue&)> answered) override;
    FramePtr frameOwner(const QString& realm, int index) override;
    Failure failureOf(const AppError& error) const override;
    QJsonObject call(const QString& sessionId, const QString& method,
                     const QJsonObject& params = {});
    QString pageUrl(const QString& targetId) const override;
    DocPtr pageDocument(const QString& targetId) override;
    void reload(const QString& targetId) override;
    // A frame is found through its page's session (or its own, out of process).
    DocPtr documentFor(const QString& sessionId, const QString& frameId) override;

private:
    struct Target
    {
        QString type;
        QString url;
        QString title;
        QString sessionId;
        QString parentSession;
        bool open = true;
    };

    void openConnection() override;
    void dropConnection() override;
    void markAllClosed() override;
    void onEvent(const RemoteConnection::Event& event);
    void onAttached(const RemoteConnection::Event& event);
    void onClosed(const QString& targetId);
    void onContextCreated(const RemoteConnection::Event& event);
    void onLoaded(const QString& sessionId, const QString& frameId);
    void onBinding(const RemoteConnection::Event& event);
    void onNetwork(const RemoteConnection::Event& event);
    // A page's dialog closed: its documents may owe a fill.
    void onDialogClosed(const QString& sessionId);
    // Asks the frame's document itself, for a frame whose navigation was not seen.
    bool frameShowsBlank(const QString& sessionId, const QString& frameId);
    // Whether the page's tab is the one its window shows.
    bool isVisibleTab(const QString& targetId);
    // The page a session belongs to, through the parents of out-of-process frames.
    std::shared_ptr<ScriptWindow> pageOfSession(const QString& sessionId) const;
    RemoteConnection& cdp() { return connected(); }

    // The connection's I/O thread uses it until the browser goes (the destructor ends the browser
    // first).
    std::unique_ptr<CdpDialogGuard> m_dialogs;
    QHash<QString, Target> m_targets;         // by target id
    QHash<QString, QString> m_sessionTargets; // session id -> target id
    QHash<QString, int> m_contexts;           // session + "\n" + frame id -> context of our world
    QHash<QString, QString> m_contextFrames;  // session + "\n" + context id -> its frame id
    QHash<QString, QString> m_frameUrls;      // frame id -> address of its last navigation
    ScriptDocuments m_documents{*this};       // by session + "\n" + context id
};

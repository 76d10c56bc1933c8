#pragma once

#include "FirefoxProcess.h"
#include "FollowedBrowser.h"
#include "PageScriptHost.h"
#include "RemoteConnection.h"

#include <QHash>
#include <functional>
#include <memory>

// The shell's window list over Firefox, through WebDriver BiDi: one window per top-level browsing
// context (a tab); documents for every frame (child contexts, other sites' included); the user's
// actions reported by the script Tolvane runs in a sandbox of every document, through a channel.
class BidiWindowList : public FollowedBrowser<FirefoxProcess>, public PageScriptHost
{
public:
    // Connects on first use (the start-up subscribes once the data folder is known).
    using FollowedBrowser::FollowedBrowser;
    ~BidiWindowList() override;

    void AppActivate(const QString& title) override;
    // Opens a page in a new window, starting the browser again when it has gone. Throws AppError.
    void OpenAddress(const QString& address);
    // A call to the browser; throws AppError.
    QJsonObject call(const QString& method, const QJsonObject& params = {});

    // Realms are named context + "\n" + the sandbox realm's id.
    QJsonValue evaluate(const QString& realm, const PageCall& call) override;
    void evaluateLater(const QString& realm, const PageCall& call) override;
    void evaluateAnswered(const QString& realm, const PageCall& call,
                          std::function<void(const QJsonValue&)> answered) override;
    FramePtr frameOwner(const QString& realm, int index) override;
    Failure failureOf(const AppError& error) const override;

    QString pageUrl(const QString& context) const override;
    DocPtr pageDocument(const QString& context) override;
    void reload(const QString& context) override;
    // A context is found by its id alone.
    DocPtr documentFor(const QString& scope, const QString& context) override;

protected:
    // The parameters of script.evaluate for the call in the realm; `answered` when its value is
    // wanted.
    virtual QJsonObject evaluateParams(const QString& realm, const PageCall& call,
                                       bool answered) const;

private:
    struct Context
    {
        QString parent; // empty for a tab
        QString url;
        QString realm;         // the sandbox realm of the document it shows
        bool scripted = false; // whether the page script has been heard from in that realm
        bool open = true;
    };

    void openConnection() override;
    void dropConnection() override;
    void markAllClosed() override;
    // Puts the page script into the documents already open when Tolvane came.
    void takeUpOpenContexts();
    // Runs the page script in the context's document now (it reports "attached" once complete).
    void putScriptIn(const QString& context);
    void addContext(const QJsonObject& info);
    void onEvent(const RemoteConnection::Event& event);
    void onContextGone(const QString& context);
    void onLoaded(const QString& context, const QString& url);
    void onMessage(const QJsonObject& params);
    void onNetwork(const RemoteConnection::Event& event);
    std::shared_ptr<ScriptWindow> pageOf(QString context) const;
    RemoteConnection& bidi() { return connected(); }

    QHash<QString, Context> m_contexts; // by context id
    ScriptDocuments m_documents{*this}; // by realm
};

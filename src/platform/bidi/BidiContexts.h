#pragma once

#include "PageScriptHost.h"
#include "RemoteConnection.h"
#include "ScriptDocuments.h"
#include "ScriptWindowList.h"

#include <QHash>
#include <functional>
#include <memory>

// The shell's window list over a browser that speaks WebDriver BiDi: one window per top-level
// browsing context (a tab); documents for every frame (child contexts, other sites' included);
// the user's actions reported by the script Tolvane runs in a sandbox of every document, through
// a channel. Firefox speaks it; so does Tolvane's extension, for the part used here.
class BidiContexts : public ScriptWindowList, public PageScriptHost
{
public:
    void AppActivate(const QString& title) override;
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
    // The followed browser's connection, while it is being opened too.
    virtual RemoteConnection& browserConnection() = 0;
    // The connection of a browser that is followed; throws AppError when there is none.
    RemoteConnection& bidi()
    {
        requireConnection();
        return browserConnection();
    }
    // Subscribes to what the window list follows and puts the page script in every document to
    // come; events go to onEvent.
    void follow();
    // Puts the page script into the documents already open when Tolvane came.
    void takeUpOpenContexts();
    void onEvent(const RemoteConnection::Event& event);
    // Opens the address in a new tab of the browser's front window.
    void openInNewTab(const QString& address);
    // Forgets every context and document.
    void forgetAll();
    // A dialog of the tab closed: its documents may owe a fill.
    void dialogClosedIn(const QString& tab);
    void markAllClosed() override;
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

    // Runs the page script in the context's document now (it reports "attached" once complete).
    void putScriptIn(const QString& context);
    void addContext(const QJsonObject& info);
    void onContextGone(const QString& context);
    void onLoaded(const QString& context, const QString& url);
    void onMessage(const QJsonObject& params);
    void onNetwork(const RemoteConnection::Event& event);
    std::shared_ptr<ScriptWindow> pageOf(QString context) const;

    QHash<QString, Context> m_contexts; // by context id
    ScriptDocuments m_documents{*this}; // by realm
};

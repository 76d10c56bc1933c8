#pragma once

#include "BidiContexts.h"
#include "FollowedBrowser.h"
#include "RemoteConnection.h"

#include <memory>

// A browser that reached the bar through Tolvane's extension and host: its connection.
class ExtensionLink
{
public:
    // Takes ownership of the connected socket's descriptor.
    explicit ExtensionLink(int descriptor);
    RemoteConnection& connection() { return *m_connection; }

private:
    std::unique_ptr<RemoteConnection> m_connection;
};

// The windows of one browser whose host connected to the bar. The extension's background speaks
// the part of WebDriver BiDi the window list uses; calls into a document go as data, since an
// extension runs no script text. When the browser goes, its windows close and the object waits
// for the next browser that connects: the shell may still hold the windows it made.
class ExtensionBrowser : public FollowedBrowser<ExtensionLink, BidiContexts>
{
public:
    explicit ExtensionBrowser(std::shared_ptr<qint64> handles);
    ~ExtensionBrowser() override;

    // Follows the browser whose host connected on that socket (its descriptor taken over), in
    // place of the one that went. Throws AppError when it cannot be followed.
    void takeUp(int descriptor);

private:
    void openConnection() override;
    void dropConnection() override;
    RemoteConnection& browserConnection() override;
    QJsonObject evaluateParams(const QString& realm, const PageCall& call,
                               bool answered) const override;
    Failure failureOf(const AppError& error) const override;

    int m_descriptor = -1; // of the connection not yet taken up
};

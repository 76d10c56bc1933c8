#pragma once

#include <QString>
#include <QStringList>
#include <memory>

class RemoteConnection;
class QProcess;

// Starts Firefox with a profile folder of its own and connects over WebDriver BiDi on the
// loopback port the browser chooses and names, or attaches to one already running
// (TOLVANE_BIDI: "ws://127.0.0.1:PORT"). The connection has its BiDi session.
class FirefoxProcess
{
public:
    ~FirefoxProcess();

    // Throws AppError when the browser cannot be started, ends at once or does not answer. A
    // Firefox left running with that profile (by a Tolvane that was killed) is ended first.
    static std::unique_ptr<FirefoxProcess> start(const QString& executable,
                                                 const QString& profileFolder,
                                                 const QStringList& extraArguments = {});
    // Throws AppError.
    static std::unique_ptr<FirefoxProcess> attach(const QString& endpoint);

    RemoteConnection& connection() { return *m_connection; }
    // Closes a browser this object started; an attached one is left running. Also done on
    // destruction. Firefox closed over BiDi forgets its tabs: their addresses are kept, by window,
    // in the profile for the next start.
    void close();
    // Opens again the tabs kept when this profile's browser was last closed, each window as it was.
    // Once: the addresses are dropped as they are taken up.
    void reopenTabsOfLastClose();
    // Ends a browser this object started at once, as a crash would.
    void kill();
    qint64 processId() const;

    // A new profile starts quietly (no default-browser question, no first-run pages) and
    // reopens the last session's tabs. A profile that has its own user.js is left as it is.
    static void prepareProfile(const QString& profileFolder);

private:
    FirefoxProcess() = default;
    void connect(const QString& endpoint);
    void keepTabsForNextStart();

    QString m_profileFolder; // of a browser this object started
    std::unique_ptr<QProcess> m_process;
    std::unique_ptr<RemoteConnection> m_connection;
};

#pragma once

#include <QString>
#include <QStringList>
#include <memory>

class RemoteConnection;
class QProcess;

// Starts a Chromium-family browser with a profile folder of its own and connects to it over
// --remote-debugging-pipe, or attaches to one already running on a loopback debugging port.
class ChromiumProcess
{
public:
    ~ChromiumProcess();

    // Throws AppError when the browser cannot be started or does not answer.
    static std::unique_ptr<ChromiumProcess> start(const QString& executable,
                                                  const QString& profileFolder,
                                                  const QStringList& extraArguments = {});
    // TOLVANE_DEVTOOLS: "http://127.0.0.1:PORT" of a running browser. Throws AppError.
    static std::unique_ptr<ChromiumProcess> attach(const QString& endpoint);

    RemoteConnection& connection() { return *m_connection; }
    // Closes a browser this object started as its own Quit does: every window closed and the
    // profile written, so that its next start shows no crash prompt and reopens the tabs. An
    // attached browser is left running. Also done on destruction.
    void close();
    // Ends a browser this object started at once, as a crash would.
    void kill();
    qint64 processId() const;

    // The flags every browser Tolvane starts gets: none that weakens the user's browser.
    static QStringList baseArguments(const QString& profileFolder);
    // Sets the profile to reopen the last session's tabs at start, unless its user chose
    // another start-up page there. A settings file the browser could not read is left alone.
    static void restoreSessionsIn(const QString& profileFolder);

private:
    ChromiumProcess() = default;

    std::unique_ptr<QProcess> m_process;
    std::unique_ptr<RemoteConnection> m_connection;
};

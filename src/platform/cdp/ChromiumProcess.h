#pragma once

#include <QString>
#include <QStringList>
#include <memory>

class CdpConnection;
class QProcess;

// Starts a Chromium-family browser with a profile folder of its own and connects to it over
// --remote-debugging-pipe, or attaches to one already running on a loopback debugging port.
class ChromiumProcess
{
public:
    ~ChromiumProcess();

    // Throws AppError when the browser cannot be started or does not answer.
    static std::unique_ptr<ChromiumProcess> start(const QString& executable, const QString& profileFolder,
                                                  const QStringList& extraArguments = {});
    // TOLVANE_DEVTOOLS: "http://127.0.0.1:PORT" of a running browser. Throws AppError.
    static std::unique_ptr<ChromiumProcess> attach(const QString& endpoint);

    CdpConnection& connection() { return *m_connection; }
    // Ends a browser this object started; an attached one is left running.
    void kill();
    qint64 processId() const;

    // The flags every browser Tolvane starts gets (quiet on a closed network).
    static QStringList baseArguments(const QString& profileFolder);

private:
    ChromiumProcess() = default;

    std::unique_ptr<QProcess> m_process;
    std::unique_ptr<CdpConnection> m_connection;
};

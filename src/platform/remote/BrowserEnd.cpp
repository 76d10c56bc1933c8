#include "BrowserEnd.h"

#include "AppError.h"
#include "RemoteConnection.h"

#include <QProcess>

namespace {
void askToQuit(RemoteConnection& connection, const QString& quitMethod)
{
    if (connection.isClosed())
        return;
    try {
        connection.call(quitMethod);
    } catch (const AppError&) {
        // It may close the connection before it answers.
    }
}
} // namespace

void BrowserEnd::quit(QProcess* process, std::unique_ptr<RemoteConnection>& connection,
                      const QString& quitMethod)
{
    if (process && process->state() != QProcess::NotRunning) {
        if (connection)
            askToQuit(*connection, quitMethod);
        connection.reset(); // a browser whose connection closes quits too
        if (!process->waitForFinished(15000)) {
            process->terminate();
            if (!process->waitForFinished(5000))
                kill(process);
        }
    }
    connection.reset();
}

void BrowserEnd::kill(QProcess* process)
{
    if (process && process->state() != QProcess::NotRunning) {
        process->kill();
        process->waitForFinished(5000);
    }
}

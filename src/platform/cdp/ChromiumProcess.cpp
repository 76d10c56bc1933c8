#include "ChromiumProcess.h"

#include "AppError.h"
#include "BrowserEnd.h"
#include "RemoteConnection.h"
#include "RemoteTransport.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSaveFile>
#include <QTcpSocket>
#include <QUrl>
#include <fcntl.h>
#include <unistd.h>

namespace {
AppError browserError(const QString& text)
{
    return AppError(ErrorNumber::BrowserCall, text);
}

// GET /json/version of a debugging port: its "webSocketDebuggerUrl".
QString browserWebSocketUrl(const QString& endpoint)
{
    const QUrl url(endpoint);
    QTcpSocket socket;
    socket.connectToHost(url.host(), static_cast<quint16>(url.port(9222)));
    if (!socket.waitForConnected(5000))
        throw browserError(QStringLiteral("Cannot reach the browser at %1: %2")
                               .arg(endpoint, socket.errorString()));
    // The browser's small HTTP server answers HTTP/1.1 only.
    socket.write(
        QStringLiteral("GET /json/version HTTP/1.1\r\nHost: %1\r\nConnection: close\r\n\r\n")
            .arg(url.authority())
            .toLatin1());
    QByteArray reply;
    const auto complete = [&reply] {
        const qsizetype headerEnd = reply.indexOf("\r\n\r\n");
        if (headerEnd < 0)
            return false;
        const qsizetype at = reply.toLower().indexOf("content-length:");
        return at >= 0 && at < headerEnd &&
               reply.size() - headerEnd - 4 >= reply.mid(at + 15, headerEnd - at - 15)
                                                   .split('\r')
                                                   .first()
                                                   .trimmed()
                                                   .toLongLong();
    };
    while (!complete() && socket.waitForReadyRead(5000))
        reply += socket.readAll();
    const QJsonObject version =
        QJsonDocument::fromJson(reply.mid(reply.indexOf("\r\n\r\n") + 4)).object();
    const QString ws = version.value(QStringLiteral("webSocketDebuggerUrl")).toString();
    if (ws.isEmpty())
        throw browserError(
            QStringLiteral("The browser at %1 gave no DevTools address.").arg(endpoint));
    return ws;
}
} // namespace

ChromiumProcess::~ChromiumProcess()
{
    close();
}

QStringList ChromiumProcess::baseArguments(const QString& profileFolder)
{
    QStringList arguments = {
        QStringLiteral("--user-data-dir=") + profileFolder, QStringLiteral("--no-first-run"),
        QStringLiteral("--no-default-browser-check"), QStringLiteral("--disable-breakpad"),
        QStringLiteral("--disable-back-forward-cache")};
    // Chromium refuses to run as root without it.
    if (::geteuid() == 0)
        arguments << QStringLiteral("--no-sandbox");
    return arguments;
}

std::unique_ptr<ChromiumProcess> ChromiumProcess::start(const QString& executable,
                                                        const QString& profileFolder,
                                                        const QStringList& extraArguments)
{
    int toBrowser[2];
    int fromBrowser[2];
    if (::pipe2(toBrowser, O_CLOEXEC) != 0)
        throw browserError(QStringLiteral("No pipe for the browser."));
    if (::pipe2(fromBrowser, O_CLOEXEC) != 0) {
        ::close(toBrowser[0]);
        ::close(toBrowser[1]);
        throw browserError(QStringLiteral("No pipe for the browser."));
    }
    std::unique_ptr<ChromiumProcess> browser(new ChromiumProcess);
    browser->m_process = std::make_unique<QProcess>();
    browser->m_process->setProgram(executable);
    browser->m_process->setArguments(baseArguments(profileFolder) + extraArguments +
                                     QStringList{QStringLiteral("--remote-debugging-pipe")});
    // The browser's own diagnostics are of no use to the user.
    browser->m_process->setStandardOutputFile(QProcess::nullDevice());
    browser->m_process->setStandardErrorFile(QProcess::nullDevice());
    const int childRead = toBrowser[0];
    const int childWrite = fromBrowser[1];
    // The browser reads its commands on descriptor 3 and writes on 4.
    browser->m_process->setChildProcessModifier([childRead, childWrite] {
        ::dup2(childRead, 3);
        ::dup2(childWrite, 4);
    });
    restoreSessionsIn(profileFolder);
    browser->m_process->start();
    ::close(childRead);
    ::close(childWrite);
    if (!browser->m_process->waitForStarted(10000)) {
        ::close(toBrowser[1]);
        ::close(fromBrowser[0]);
        throw browserError(QStringLiteral("The browser %1 could not be started: %2")
                               .arg(executable, browser->m_process->errorString()));
    }
    const int readFd = fromBrowser[0];
    const int writeFd = toBrowser[1];
    browser->m_connection = std::make_unique<RemoteConnection>(
        [readFd, writeFd] { return new PipeTransport(readFd, writeFd); });
    // A browser that ends at once (a broken installation, a wrapper that fails) is told as such.
    try {
        browser->m_connection->call(QStringLiteral("Browser.getVersion"));
    } catch (const AppError& error) {
        if (browser->m_process->waitForFinished(2000))
            throw browserError(
                QStringLiteral("The browser %1 ended as soon as it started (exit code %2).")
                    .arg(executable)
                    .arg(browser->m_process->exitCode()));
        throw;
    }
    return browser;
}

std::unique_ptr<ChromiumProcess> ChromiumProcess::attach(const QString& endpoint)
{
    const QString ws = browserWebSocketUrl(endpoint);
    std::unique_ptr<ChromiumProcess> browser(new ChromiumProcess);
    browser->m_connection =
        std::make_unique<RemoteConnection>([ws] { return new WebSocketTransport(ws); });
    return browser;
}

void ChromiumProcess::close()
{
    BrowserEnd::quit(m_process.get(), m_connection, QStringLiteral("Browser.close"));
}

void ChromiumProcess::kill()
{
    BrowserEnd::kill(m_process.get());
}

void ChromiumProcess::restoreSessionsIn(const QString& profileFolder)
{
    // Chromium's own setting "Continue where you left off": 1 in session.restore_on_startup.
    const QString folder = profileFolder + QStringLiteral("/Default");
    const QString path = folder + QStringLiteral("/Preferences");
    QJsonObject preferences;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        QJsonParseError error;
        const QJsonDocument read = QJsonDocument::fromJson(file.readAll(), &error);
        if (error.error != QJsonParseError::NoError || !read.isObject())
            return;
        preferences = read.object();
    } else if (file.exists()) {
        return;
    }
    file.close();
    QJsonObject session = preferences.value(QStringLiteral("session")).toObject();
    if (session.contains(QStringLiteral("restore_on_startup")))
        return;
    session.insert(QStringLiteral("restore_on_startup"), 1);
    preferences.insert(QStringLiteral("session"), session);
    QDir().mkpath(folder);
    QSaveFile out(path);
    if (out.open(QIODevice::WriteOnly)) {
        out.write(QJsonDocument(preferences).toJson(QJsonDocument::Compact));
        out.commit();
    }
}

qint64 ChromiumProcess::processId() const
{
    return m_process ? m_process->processId() : 0;
}

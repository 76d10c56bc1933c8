#include "FirefoxProcess.h"

#include "AppError.h"
#include "BrowserEnd.h"
#include "RemoteConnection.h"
#include "RemoteTransport.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSaveFile>

namespace {
AppError browserError(const QString& text)
{
    return AppError(ErrorNumber::BrowserCall, text);
}

const char* const QuietStart = R"(// Written by Tolvane for the browser profile it starts; remove this file to change these.
user_pref("browser.shell.checkDefaultBrowser", false);
user_pref("browser.aboutwelcome.enabled", false);
user_pref("browser.startup.homepage_override.mstone", "ignore");
user_pref("startup.homepage_welcome_url", "");
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("toolkit.telemetry.reportingpolicy.firstRun", false);
user_pref("browser.startup.page", 3);
user_pref("browser.newtab.preload", false);
)";
} // namespace

FirefoxProcess::~FirefoxProcess()
{
    close();
}

void FirefoxProcess::prepareProfile(const QString& profileFolder)
{
    QDir().mkpath(profileFolder);
    const QString path = profileFolder + QStringLiteral("/user.js");
    if (QFile::exists(path))
        return;
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QuietStart);
        file.commit();
    }
}

std::unique_ptr<FirefoxProcess> FirefoxProcess::start(const QString& executable, const QString& profileFolder,
                                                      const QStringList& extraArguments)
{
    prepareProfile(profileFolder);
    std::unique_ptr<FirefoxProcess> browser(new FirefoxProcess);
    browser->m_process = std::make_unique<QProcess>();
    // The browser's own diagnostics are of no use to the user.
    browser->m_process->setStandardOutputFile(QProcess::nullDevice());
    browser->m_process->setStandardErrorFile(QProcess::nullDevice());
    // Port 0: the browser takes a free one and names it in the profile, so no port in use stops
    // it. A name left by a browser that crashed is no answer.
    const QString portFile = profileFolder + QStringLiteral("/WebDriverBiDiServer.json");
    QFile::remove(portFile);
    browser->m_process->start(executable, extraArguments + QStringList{QStringLiteral("--remote-debugging-port=0"),
                                                                       QStringLiteral("--profile"), profileFolder,
                                                                       QStringLiteral("--no-remote")});
    if (!browser->m_process->waitForStarted(10000))
        throw browserError(QStringLiteral("The browser %1 could not be started: %2")
                               .arg(executable, browser->m_process->errorString()));
    QString endpoint;
    const QDeadlineTimer deadline(30000);
    while (endpoint.isEmpty() && !deadline.hasExpired()) {
        if (browser->m_process->waitForFinished(50))
            throw browserError(QStringLiteral("The browser %1 ended as soon as it started (exit code %2).")
                                   .arg(executable)
                                   .arg(browser->m_process->exitCode()));
        QFile named(portFile);
        if (!named.open(QIODevice::ReadOnly))
            continue;
        const QJsonObject server = QJsonDocument::fromJson(named.readAll()).object();
        const int port = server.value(QLatin1String("ws_port")).toInt();
        if (port > 0)
            endpoint = QStringLiteral("ws://%1:%2").arg(server.value(QLatin1String("ws_host")).toString(QStringLiteral("127.0.0.1"))).arg(port);
    }
    if (endpoint.isEmpty())
        throw browserError(QStringLiteral("The browser %1 did not open its WebDriver BiDi port.").arg(executable));
    browser->connect(endpoint);
    return browser;
}

std::unique_ptr<FirefoxProcess> FirefoxProcess::attach(const QString& endpoint)
{
    std::unique_ptr<FirefoxProcess> browser(new FirefoxProcess);
    browser->connect(endpoint);
    return browser;
}

void FirefoxProcess::connect(const QString& endpoint)
{
    const QString session = endpoint + QStringLiteral("/session");
    m_connection = std::make_unique<RemoteConnection>([session] { return new WebSocketTransport(session); });
    try {
        // The page's dialogs are the user's to answer: the session closes none of them.
        const QJsonObject ignorePrompts{{"unhandledPromptBehavior", QJsonObject{{"default", "ignore"}}}};
        m_connection->call(QStringLiteral("session.new"), {{"capabilities", QJsonObject{{"alwaysMatch", ignorePrompts}}}});
    } catch (const AppError& error) {
        throw browserError(QStringLiteral("The browser at %1 refused a session: %2").arg(endpoint, error.description()));
    }
}

void FirefoxProcess::close()
{
    BrowserEnd::quit(m_process.get(), m_connection, QStringLiteral("browser.close"));
}

void FirefoxProcess::kill()
{
    BrowserEnd::kill(m_process.get());
}

qint64 FirefoxProcess::processId() const
{
    return m_process ? m_process->processId() : 0;
}

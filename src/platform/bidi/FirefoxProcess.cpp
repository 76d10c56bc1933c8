#include "FirefoxProcess.h"

#include "AppError.h"
#include "BrowserEnd.h"
#include "RemoteConnection.h"
#include "RemoteTransport.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSaveFile>
#include <QThread>
#include <csignal>

namespace {
AppError browserError(const QString& text)
{
    return AppError(ErrorNumber::BrowserCall, text);
}

const char* const QuietStart =
    R"(// Written by Tolvane for the browser profile it starts; remove this file to change these.
user_pref("browser.shell.checkDefaultBrowser", false);
user_pref("browser.aboutwelcome.enabled", false);
user_pref("browser.startup.homepage_override.mstone", "ignore");
user_pref("startup.homepage_welcome_url", "");
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("toolkit.telemetry.reportingpolicy.firstRun", false);
user_pref("browser.startup.page", 3);
user_pref("browser.newtab.preload", false);
)";

// Where a closing keeps the addresses of the tabs, in the browser's profile.
QString keptTabsPath(const QString& profileFolder)
{
    return profileFolder + QStringLiteral("/Tabs At Close.json");
}

// The WebDriver BiDi address a Firefox names in its profile, or empty.
QString namedEndpoint(const QString& portFile)
{
    QFile named(portFile);
    if (!named.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject server = QJsonDocument::fromJson(named.readAll()).object();
    const int port = server.value(QLatin1String("ws_port")).toInt();
    if (port <= 0)
        return {};
    return QStringLiteral("ws://%1:%2")
        .arg(server.value(QLatin1String("ws_host")).toString(QStringLiteral("127.0.0.1")))
        .arg(port);
}

// The live Firefox that holds the profile, or 0: its lock names it ("127.0.0.1:+4242"), and its
// command line names the profile (a lock left by a crash may name a process that is another now).
pid_t profileHolder(const QString& profileFolder)
{
    const QString lock = QFileInfo(profileFolder + QStringLiteral("/lock")).symLinkTarget();
    const pid_t pid =
        static_cast<pid_t>(QFileInfo(lock).fileName().section(QLatin1Char('+'), -1).toLongLong());
    if (pid <= 0 || ::kill(pid, 0) != 0)
        return 0;
    QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(pid));
    if (!commandLine.open(QIODevice::ReadOnly) ||
        !commandLine.readAll().contains(QFile::encodeName(profileFolder)))
        return 0;
    return pid;
}

// Ends a process that is not our child: asked first, then killed.
void endProcess(pid_t pid)
{
    for (const int signal : {SIGTERM, SIGKILL}) {
        ::kill(pid, signal);
        const QDeadlineTimer deadline(5000);
        while (::kill(pid, 0) == 0 && !deadline.hasExpired())
            QThread::msleep(50);
        if (::kill(pid, 0) != 0)
            return;
    }
}

// Pages worth opening again: not the browser's own empty and start pages.
bool isWorthReopening(const QString& url)
{
    return !url.isEmpty() && !url.startsWith(QLatin1String("about:"));
}
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

std::unique_ptr<FirefoxProcess> FirefoxProcess::start(const QString& executable,
                                                      const QString& profileFolder,
                                                      const QStringList& extraArguments)
{
    prepareProfile(profileFolder);
    const QString portFile = profileFolder + QStringLiteral("/WebDriverBiDiServer.json");
    // The browser a Tolvane that was killed left running with this profile cannot be followed (its
    // BiDi session outlives the connection, and Firefox has one at a time) and keeps another from
    // starting: it is ended, and its own crash recovery brings its tabs back in the new one.
    if (const pid_t holder = profileHolder(profileFolder))
        endProcess(holder);
    std::unique_ptr<FirefoxProcess> browser(new FirefoxProcess);
    browser->m_profileFolder = profileFolder;
    browser->m_process = std::make_unique<QProcess>();
    // The browser's own diagnostics are of no use to the user.
    browser->m_process->setStandardOutputFile(QProcess::nullDevice());
    browser->m_process->setStandardErrorFile(QProcess::nullDevice());
    // Port 0: the browser takes a free one and names it in the profile, so no port in use stops
    // it. A name left by a browser that crashed is no answer.
    QFile::remove(portFile);
    browser->m_process->start(
        executable, extraArguments + QStringList{QStringLiteral("--remote-debugging-port=0"),
                                                 QStringLiteral("--profile"), profileFolder,
                                                 QStringLiteral("--no-remote")});
    if (!browser->m_process->waitForStarted(10000))
        throw browserError(QStringLiteral("The browser %1 could not be started: %2")
                               .arg(executable, browser->m_process->errorString()));
    QString endpoint;
    const QDeadlineTimer deadline(30000);
    while (endpoint.isEmpty() && !deadline.hasExpired()) {
        if (browser->m_process->waitForFinished(50))
            throw browserError(
                QStringLiteral("The browser %1 ended as soon as it started (exit code %2).")
                    .arg(executable)
                    .arg(browser->m_process->exitCode()));
        endpoint = namedEndpoint(portFile);
    }
    if (endpoint.isEmpty())
        throw browserError(
            QStringLiteral("The browser %1 did not open its WebDriver BiDi port.").arg(executable));
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
    m_connection =
        std::make_unique<RemoteConnection>([session] { return new WebSocketTransport(session); });
    try {
        // The page's dialogs are the user's to answer: the session closes none of them.
        const QJsonObject ignorePrompts{
            {"unhandledPromptBehavior", QJsonObject{{"default", "ignore"}}}};
        m_connection->call(QStringLiteral("session.new"),
                           {{"capabilities", QJsonObject{{"alwaysMatch", ignorePrompts}}}});
    } catch (const AppError& error) {
        throw browserError(QStringLiteral("The browser at %1 refused a session: %2")
                               .arg(endpoint, error.description()));
    }
}

void FirefoxProcess::keepTabsForNextStart()
{
    QStringList windowIds;   // in the order their first tab came
    QList<QStringList> tabs; // each window's tabs' addresses
    try {
        const QJsonArray contexts =
            m_connection->call(QStringLiteral("browsingContext.getTree"), {{"maxDepth", 0}})
                .value("contexts")
                .toArray();
        for (const QJsonValue& context : contexts) {
            const QString url = context.toObject().value("url").toString();
            const QString window = context.toObject().value("clientWindow").toString();
            if (!isWorthReopening(url))
                continue;
            if (!windowIds.contains(window)) {
                windowIds.append(window);
                tabs.append(QStringList());
            }
            tabs[windowIds.indexOf(window)].append(url);
        }
    } catch (const AppError&) {
        return; // a browser that does not answer has nothing to keep
    }
    QJsonArray windows;
    for (const QStringList& urls : std::as_const(tabs))
        windows.append(QJsonArray::fromStringList(urls));
    QSaveFile file(keptTabsPath(m_profileFolder));
    if (!windows.isEmpty() && file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(windows).toJson());
        file.commit();
    }
}

void FirefoxProcess::reopenTabsOfLastClose()
{
    if (m_profileFolder.isEmpty())
        return;
    QFile file(keptTabsPath(m_profileFolder));
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QJsonArray windows = QJsonDocument::fromJson(file.readAll()).array();
    file.remove();
    try {
        const QJsonArray startPages =
            m_connection->call(QStringLiteral("browsingContext.getTree"), {{"maxDepth", 0}})
                .value("contexts")
                .toArray();
        bool reopened = false;
        for (const QJsonValue& window : windows) {
            QString first;
            for (const QJsonValue& url : window.toArray()) {
                if (!isWorthReopening(url.toString()))
                    continue;
                QJsonObject where{{"type", first.isEmpty() ? "window" : "tab"}};
                if (!first.isEmpty())
                    where.insert(QStringLiteral("referenceContext"), first);
                const QString tab =
                    m_connection->call(QStringLiteral("browsingContext.create"), where)
                        .value("context")
                        .toString();
                m_connection->call(QStringLiteral("browsingContext.navigate"),
                                   {{"context", tab}, {"url", url.toString()}, {"wait", "none"}});
                first = first.isEmpty() ? tab : first;
                reopened = true;
            }
        }
        // The start page the browser opened gives way to the tabs that were there.
        for (const QJsonValue& tab : startPages) {
            if (reopened && !isWorthReopening(tab.toObject().value("url").toString()))
                m_connection->send(QStringLiteral("browsingContext.close"),
                                   {{"context", tab.toObject().value("context")}});
        }
    } catch (const AppError&) {
        // What could not be opened again is not kept: the browser is the user's from here.
    }
}

void FirefoxProcess::close()
{
    if (m_process && m_process->state() != QProcess::NotRunning && m_connection &&
        !m_connection->isClosed())
        keepTabsForNextStart();
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

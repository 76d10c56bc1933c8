// The real program as a user runs it, with the browser it starts: ended by SIGTERM it closes
// the browser cleanly; killed with SIGKILL it takes the browser down without losing its tabs;
// both times the next start has the tabs back.
#include "ChromiumProcess.h"
#include "HttpServer.h"
#include "PageDriver.h"
#include "PumpUntil.h"
#include "RemoteConnection.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
class RealBar
{
public:
    RealBar()
    {
        for (const char* sub : {"bin", "config", "share/applications", "data", "tmp", "runtime"})
            QDir(m_home.path()).mkpath(QString::fromLatin1(sub));
        QFile::setPermissions(path("runtime"), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                   QFileDevice::ExeOwner);
        // The browser Tolvane starts: Debian's Chromium, headless, with a debugging port besides
        // Tolvane's pipe so that the test can open tabs in it.
        write("bin/chromium", "#!/bin/sh\nexec " +
                                  QStandardPaths::findExecutable("chromium").toUtf8() +
                                  " --headless --disable-gpu --disable-dev-shm-usage "
                                  "--remote-debugging-port=0 \"$@\"\n");
        QFile::setPermissions(path("bin/chromium"), QFileDevice::ReadOwner |
                                                        QFileDevice::WriteOwner |
                                                        QFileDevice::ExeOwner);
        write("share/applications/chromium.desktop",
              "[Desktop Entry]\nExec=" + path("bin/chromium").toUtf8() + " %U\n");
        write("config/mimeapps.list", "[Default Applications]\ntext/html=chromium.desktop\n");
    }
    ~RealBar()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    void start()
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("TOLVANE_BROWSER", path("bin/chromium"));
        env.remove("TOLVANE_DEVTOOLS");
        env.insert("XDG_CONFIG_HOME", path("config"));
        env.insert("XDG_DATA_DIRS", path("share") + u":/usr/share"_s);
        env.insert("XDG_DATA_HOME", path("data"));
        env.insert("XDG_RUNTIME_DIR", path("runtime"));
        env.insert("TMPDIR", path("tmp"));
        env.insert("ASAN_OPTIONS", "detect_leaks=0");
        if (!profile().isEmpty())
            QFile::remove(profile() + u"/DevToolsActivePort"_s);
        m_process.setProcessEnvironment(env);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(TOLVANE_EXE), {});
        ASSERT_TRUE(m_process.waitForStarted());
    }
    // The browser Tolvane started, through its debugging port.
    std::unique_ptr<ChromiumProcess> attach()
    {
        QString port;
        pumpUntil(
            [&] {
                QFile file(profile() + u"/DevToolsActivePort"_s);
                if (profile().isEmpty() || !file.open(QIODevice::ReadOnly))
                    return false;
                port = QString::fromLatin1(file.readLine()).trimmed();
                return !port.isEmpty();
            },
            30000);
        return port.isEmpty() ? nullptr : ChromiumProcess::attach(u"http://127.0.0.1:"_s + port);
    }
    // The browser's process, from the profile's lock ("host-pid").
    qint64 browserPid() const
    {
        return QFile::symLinkTarget(profile() + u"/SingletonLock"_s)
            .section(QLatin1Char('-'), -1)
            .toLongLong();
    }
    bool end(int signal)
    {
        ::kill(static_cast<pid_t>(m_process.processId()), signal);
        return m_process.waitForFinished(30000);
    }
    QString profile() const
    {
        QDirIterator found(path("data"), {u"Browser Profile"_s}, QDir::Dirs,
                           QDirIterator::Subdirectories);
        return found.hasNext() ? found.next() : QString();
    }

private:
    QString path(const char* sub) const
    {
        return m_home.path() + QLatin1Char('/') + QLatin1String(sub);
    }
    void write(const char* sub, const QByteArray& content)
    {
        QFile file(path(sub));
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }

    QTemporaryDir m_home;
    QProcess m_process;
};

// What the tabs show: address and title.
QStringList pageUrls(RemoteConnection& cdp)
{
    QStringList urls;
    for (const QJsonValue& target :
         cdp.call(u"Target.getTargets"_s).value("targetInfos").toArray()) {
        if (target[u"type"_s] == QLatin1String("page"))
            urls << target[u"url"_s].toString() + QLatin1Char(' ') + target[u"title"_s].toString();
    }
    return urls;
}

bool processGone(qint64 pid)
{
    return pumpUntil([pid] { return pid > 0 && !QFile::exists(u"/proc/%1"_s.arg(pid)); }, 30000);
}

TEST(BarProcessBrowser, TermClosesTheBrowserCleanlyAKillLosesNoTabsAndTheTabsComeBack)
{
    if (QStandardPaths::findExecutable(u"chromium"_s).isEmpty())
        GTEST_SKIP() << "chromium is not installed";
    HttpServer server(
        {{"/a.html", "<title>Tab A</title><p>a</p>"}, {"/b.html", "<title>Tab B</title><p>b</p>"}});
    const QStringList tabs = {server.url("/a.html") + u" Tab A"_s,
                              server.url("/b.html") + u" Tab B"_s};
    RealBar bar;
    bar.start();
    {
        auto browser = bar.attach();
        ASSERT_TRUE(browser);
        for (const QString& tab : tabs)
            browser->connection().call(u"Target.createTarget"_s,
                                       {{"url", tab.section(QLatin1Char(' '), 0, 0)}});
        // The user has seen both pages.
        ASSERT_TRUE(pumpUntil(
            [&] {
                const QStringList shown = pageUrls(browser->connection());
                return shown.contains(tabs[0]) && shown.contains(tabs[1]);
            },
            10000));
    }
    const qint64 firstBrowser = bar.browserPid();
    ASSERT_TRUE(bar.end(SIGTERM));
    EXPECT_TRUE(processGone(firstBrowser));
    EXPECT_EQ(chromiumExitType(bar.profile()), u"Normal"_s);

    for (const char* after : {"SIGTERM", "SIGKILL"}) {
        bar.start();
        auto browser = bar.attach();
        ASSERT_TRUE(browser) << after;
        // Back at their addresses; a tab restored behind another may load (and take its title)
        // only when the browser gets round to it.
        EXPECT_TRUE(pumpUntil(
            [&] {
                const QStringList urls = pageUrls(browser->connection());
                const auto back = [&](const QString& tab) {
                    return !urls.filter(tab.section(QLatin1Char(' '), 0, 0) + QLatin1Char(' '))
                                .isEmpty();
                };
                return back(tabs[0]) && back(tabs[1]);
            },
            15000))
            << "after " << after << ": " << pageUrls(browser->connection()).join(' ').toStdString();
        browser.reset();
        const qint64 browserPid = bar.browserPid();
        // The program killed: its browser sees the pipe close and quits as its own Quit does.
        ASSERT_TRUE(bar.end(SIGKILL));
        EXPECT_TRUE(processGone(browserPid)) << after;
        EXPECT_EQ(chromiumExitType(bar.profile()), u"Normal"_s) << after;
    }
}
} // namespace

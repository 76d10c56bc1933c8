// The browsers' processes as Tolvane starts and speaks to them: Chromium's DevTools pipe (answers,
// errors, events in order on the user-interface thread, a browser that dies) and a Firefox left
// running in its profile by a Tolvane that was killed.
#include "AppError.h"
#include "ChromiumProcess.h"
#include "FirefoxProcess.h"
#include "PumpUntil.h"
#include "RemoteConnection.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <csignal>
#include <gtest/gtest.h>

namespace {
QString chromium()
{
    return QStandardPaths::findExecutable(QStringLiteral("chromium"));
}

const QStringList Headless = {QStringLiteral("--headless"), QStringLiteral("--disable-gpu"),
                              QStringLiteral("--disable-dev-shm-usage")};

void pumpFor(int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

class TestRemoteConnection : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (chromium().isEmpty())
            GTEST_SKIP() << "chromium is not installed";
    }
    QTemporaryDir profile;
};

TEST_F(TestRemoteConnection, PipeAnswersCallsAndDeliversEventsInOrderAfterwards)
{
    auto browser = ChromiumProcess::start(chromium(), profile.path(), Headless);
    RemoteConnection& cdp = browser->connection();
    const QJsonObject version = cdp.call(QStringLiteral("Browser.getVersion"));
    EXPECT_TRUE(version.value("product").toString().contains("Chrome/"))
        << version.value("product").toString().toStdString();

    std::vector<QString> methods;
    std::vector<bool> onMainThread;
    cdp.setEventHandler([&](const RemoteConnection::Event& event) {
        methods.push_back(event.method);
        onMainThread.push_back(QThread::currentThread() == QCoreApplication::instance()->thread());
    });
    bool otherEventRan = false;
    QTimer::singleShot(0, [&] { otherEventRan = true; });
    cdp.call(QStringLiteral("Target.setDiscoverTargets"), {{"discover", true}});
    cdp.call(QStringLiteral("Target.createTarget"), {{"url", "about:blank"}});
    // The waiting calls ran nothing else; the events come afterwards, in order.
    EXPECT_FALSE(otherEventRan);
    EXPECT_TRUE(methods.empty());
    pumpFor(500);
    EXPECT_TRUE(otherEventRan);
    ASSERT_FALSE(methods.empty());
    EXPECT_EQ(std::count(onMainThread.begin(), onMainThread.end(), false), 0);
    EXPECT_EQ(methods.front(), QStringLiteral("Target.targetCreated"));

    try {
        cdp.call(QStringLiteral("No.suchMethod"));
        FAIL() << "no error";
    } catch (const AppError& error) {
        EXPECT_EQ(error.number(), ErrorNumber::BrowserCall);
        EXPECT_TRUE(error.description().contains("No.suchMethod"))
            << error.description().toStdString();
    }

    // The browser dies: every later call fails at once instead of waiting.
    browser->kill();
    QElapsedTimer timer;
    timer.start();
    EXPECT_THROW(cdp.call(QStringLiteral("Browser.getVersion")), AppError);
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_TRUE(cdp.isClosed());
}

// Debian's Firefox ESR, or the test is skipped.
#define REQUIRE_FIREFOX(firefox)                                                                   \
    const QString firefox = QStandardPaths::findExecutable(QStringLiteral("firefox-esr"));         \
    if (firefox.isEmpty())                                                                         \
    GTEST_SKIP() << "firefox-esr is not installed"

// A Tolvane killed leaves its Firefox running, with a BiDi session nobody can follow again (Firefox
// keeps it past the connection and allows one): the next start ends that browser and starts its
// own. A lock left behind that names another program's process leaves that program alone.
TEST(FirefoxProcess, ABrowserLeftRunningInTheProfileIsEndedForTheNextStart)
{
    REQUIRE_FIREFOX(firefox);
    QTemporaryDir profile;
    FirefoxProcess::prepareProfile(profile.path());
    const auto detached = [](const QString& program, const QStringList& arguments) {
        QProcess process;
        process.setProgram(program);
        process.setArguments(arguments);
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        qint64 pid = 0;
        process.startDetached(&pid);
        return static_cast<pid_t>(pid);
    };
    const pid_t left = detached(
        firefox, {QStringLiteral("--headless"), QStringLiteral("--remote-debugging-port=0"),
                  QStringLiteral("--profile"), profile.path(), QStringLiteral("--no-remote")});
    const pid_t other = detached(QStringLiteral("sleep"), {QStringLiteral("60")});
    // Whatever happens below, neither outlives the test.
    const auto cleanUp = qScopeGuard([&] {
        ::kill(left, SIGKILL);
        ::kill(other, SIGKILL);
    });
    // The port it names in the profile.
    const auto endpoint = [&] {
        QFile named(profile.path() + QStringLiteral("/WebDriverBiDiServer.json"));
        const int port =
            named.open(QIODevice::ReadOnly)
                ? QJsonDocument::fromJson(named.readAll()).object().value("ws_port").toInt()
                : 0;
        return port > 0 ? QStringLiteral("ws://127.0.0.1:%1").arg(port) : QString();
    };
    ASSERT_TRUE(pumpUntil([&] { return !endpoint().isEmpty(); }, 30000));
    FirefoxProcess::attach(
        endpoint()); // its Tolvane's session, never ended: the connection just goes
    EXPECT_THROW(FirefoxProcess::attach(endpoint()), AppError) << "Firefox took a second session";

    auto browser = FirefoxProcess::start(firefox, profile.path(), {QStringLiteral("--headless")});
    EXPECT_FALSE(browser->connection()
                     .call(QStringLiteral("browsingContext.getTree"))
                     .value("contexts")
                     .toArray()
                     .isEmpty());
    EXPECT_NE(::kill(left, 0), 0) << "the browser left running was not ended";
    browser->close();

    // A lock that names a process of another program (a crash left it, the number was reused).
    QFile::remove(profile.path() + QStringLiteral("/lock"));
    ASSERT_TRUE(QFile::link(QStringLiteral("127.0.0.1:+%1").arg(other),
                            profile.path() + QStringLiteral("/lock")));
    try {
        FirefoxProcess::start(firefox, profile.path(), {QStringLiteral("--headless")});
    } catch (const AppError&) {
        // Firefox may take the lock for a live one: that is its own affair.
    }
    EXPECT_EQ(::kill(other, 0), 0) << "another program's process was ended";
}

} // namespace

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

using namespace Qt::StringLiterals;

namespace {
QString chromium()
{
    return QStandardPaths::findExecutable(u"chromium"_s);
}

const QStringList Headless = {u"--headless"_s, u"--disable-gpu"_s, u"--disable-dev-shm-usage"_s};

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
    const QJsonObject version = cdp.call(u"Browser.getVersion"_s);
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
    cdp.call(u"Target.setDiscoverTargets"_s, {{"discover", true}});
    cdp.call(u"Target.createTarget"_s, {{"url", "about:blank"}});
    // The waiting calls ran nothing else; the events come afterwards, in order.
    EXPECT_FALSE(otherEventRan);
    EXPECT_TRUE(methods.empty());
    pumpFor(500);
    EXPECT_TRUE(otherEventRan);
    ASSERT_FALSE(methods.empty());
    EXPECT_EQ(std::count(onMainThread.begin(), onMainThread.end(), false), 0);
    EXPECT_EQ(methods.front(), u"Target.targetCreated"_s);

    try {
        cdp.call(u"No.suchMethod"_s);
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
    EXPECT_THROW(cdp.call(u"Browser.getVersion"_s), AppError);
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_TRUE(cdp.isClosed());
}

// Debian's Firefox ESR, or the test is skipped.
#define REQUIRE_FIREFOX(firefox)                                                                   \
    const QString firefox = QStandardPaths::findExecutable(u"firefox-esr"_s);                      \
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
    const pid_t left = detached(firefox, {u"--headless"_s, u"--remote-debugging-port=0"_s,
                                          u"--profile"_s, profile.path(), u"--no-remote"_s});
    const pid_t other = detached(u"sleep"_s, {u"60"_s});
    // Whatever happens below, neither outlives the test.
    const auto cleanUp = qScopeGuard([&] {
        ::kill(left, SIGKILL);
        ::kill(other, SIGKILL);
    });
    // The port it names in the profile.
    const auto endpoint = [&] {
        QFile named(profile.path() + u"/WebDriverBiDiServer.json"_s);
        const int port =
            named.open(QIODevice::ReadOnly)
                ? QJsonDocument::fromJson(named.readAll()).object().value("ws_port").toInt()
                : 0;
        return port > 0 ? u"ws://127.0.0.1:%1"_s.arg(port) : QString();
    };
    ASSERT_TRUE(pumpUntil([&] { return !endpoint().isEmpty(); }, 30000));
    FirefoxProcess::attach(
        endpoint()); // its Tolvane's session, never ended: the connection just goes
    EXPECT_THROW(FirefoxProcess::attach(endpoint()), AppError) << "Firefox took a second session";

    auto browser = FirefoxProcess::start(firefox, profile.path(), {u"--headless"_s});
    EXPECT_FALSE(browser->connection()
                     .call(u"browsingContext.getTree"_s)
                     .value("contexts")
                     .toArray()
                     .isEmpty());
    EXPECT_NE(::kill(left, 0), 0) << "the browser left running was not ended";
    browser->close();

    // A lock that names a process of another program (a crash left it, the number was reused).
    QFile::remove(profile.path() + u"/lock"_s);
    ASSERT_TRUE(QFile::link(u"127.0.0.1:+%1"_s.arg(other), profile.path() + u"/lock"_s));
    try {
        FirefoxProcess::start(firefox, profile.path(), {u"--headless"_s});
    } catch (const AppError&) {
        // Firefox may take the lock for a live one: that is its own affair.
    }
    EXPECT_EQ(::kill(other, 0), 0) << "another program's process was ended";
}

} // namespace

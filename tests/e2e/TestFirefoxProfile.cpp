// A Firefox left running in its profile by a Tolvane that was killed, and the next start.
#include "AppError.h"
#include "FirefoxProcess.h"
#include "PumpUntil.h"
#include "RemoteConnection.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
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

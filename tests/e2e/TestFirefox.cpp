// Firefox ESR as Tolvane starts and speaks to it: the remote connection speaking WebDriver BiDi
// (numbered calls answered, the browser's errors with their message, events in order, a browser
// that ends), and the browser's process (a quiet profile of its own, BiDi on a port the browser
// chooses, closed as its own Quit closes it; one left running in the profile taken up; browsers
// that cannot run).
#include "AppError.h"
#include "FirefoxProcess.h"
#include "PumpUntil.h"
#include "RemoteConnection.h"
#include "RemoteTransport.h"
#include "ScriptExecutable.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

namespace {
// Debian's Firefox ESR, or the test is skipped.
#define REQUIRE_FIREFOX(firefox)                                                                   \
    const QString firefox = QStandardPaths::findExecutable(QStringLiteral("firefox-esr"));         \
    if (firefox.isEmpty())                                                                         \
    GTEST_SKIP() << "firefox-esr is not installed"

TEST(BidiConnection, FirefoxAnswersCallsAndSendsEventsOverTheSameConnection)
{
    REQUIRE_FIREFOX(firefox);
    QTemporaryDir profile;
    QProcess browser;
    browser.setProcessChannelMode(QProcess::MergedChannels);
    // The port is the browser's choice, and it says which.
    browser.start(firefox,
                  {QStringLiteral("--headless"), QStringLiteral("--remote-debugging-port=0"),
                   QStringLiteral("--profile"), profile.path(), QStringLiteral("--no-remote"),
                   QStringLiteral("about:blank")});
    ASSERT_TRUE(browser.waitForStarted());
    QString endpoint;
    const QRegularExpression listening(QStringLiteral("WebDriver BiDi listening on (ws://\\S+)"));
    QByteArray said;
    pumpUntil(
        [&] {
            browser.waitForReadyRead(50);
            said += browser.readAll();
            endpoint = listening.match(QString::fromUtf8(said)).captured(1);
            return !endpoint.isEmpty();
        },
        30000);
    ASSERT_FALSE(endpoint.isEmpty()) << said.toStdString();

    {
        RemoteConnection bidi(
            [endpoint] { return new WebSocketTransport(endpoint + QStringLiteral("/session")); });
        QStringList events;
        bidi.setEventHandler([&](const RemoteConnection::Event& event) { events << event.method; });
        EXPECT_TRUE(bidi.call(QStringLiteral("session.new"), {{"capabilities", QJsonObject{}}})
                        .contains("sessionId"));
        bidi.call(QStringLiteral("session.subscribe"),
                  {{"events", QJsonArray{"browsingContext.load"}}});
        const QJsonArray contexts =
            bidi.call(QStringLiteral("browsingContext.getTree")).value("contexts").toArray();
        ASSERT_FALSE(contexts.isEmpty());
        const QString context = contexts[0].toObject().value("context").toString();
        bidi.call(QStringLiteral("browsingContext.navigate"),
                  {{"context", context},
                   {"url", "data:text/html,<title>Entry</title>"},
                   {"wait", "complete"}});
        EXPECT_TRUE(pumpUntil(
            [&] { return events.contains(QStringLiteral("browsingContext.load")); }, 10000))
            << events.join(' ').toStdString();
        try {
            bidi.call(QStringLiteral("No.suchMethod"));
            FAIL() << "no error";
        } catch (const AppError& error) {
            EXPECT_EQ(error.number(), ErrorNumber::BrowserCall);
            EXPECT_TRUE(error.description().startsWith(QLatin1String("unknown command")))
                << error.description().toStdString();
        }
        bidi.call(QStringLiteral("browser.close"));
        EXPECT_TRUE(browser.waitForFinished(20000));
        EXPECT_TRUE(
            pumpUntil([&] { return events.contains(RemoteConnection::ClosedEvent); }, 10000));
        EXPECT_THROW(bidi.call(QStringLiteral("browsingContext.getTree")), AppError);
    }
    if (browser.state() != QProcess::NotRunning) {
        browser.kill();
        browser.waitForFinished();
    }
}

TEST(FirefoxProcess, StartsWithItsOwnProfileAnswersAndIsGoneForTheNextStart)
{
    REQUIRE_FIREFOX(firefox);
    QTemporaryDir profile;
    // A port name left behind by a crashed browser is not taken for the new one's.
    QFile stale(profile.path() + QStringLiteral("/WebDriverBiDiServer.json"));
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write(R"({"ws_host": "127.0.0.1", "ws_port": 1})");
    stale.close();
    // The second start finds the profile free: the first browser has ended.
    for (int start = 0; start < 2; ++start) {
        auto browser =
            FirefoxProcess::start(firefox, profile.path(), {QStringLiteral("--headless")});
        const QJsonArray contexts = browser->connection()
                                        .call(QStringLiteral("browsingContext.getTree"))
                                        .value("contexts")
                                        .toArray();
        EXPECT_FALSE(contexts.isEmpty()) << start;
        browser->close();
    }
    QFile prefs(profile.path() + QStringLiteral("/user.js"));
    ASSERT_TRUE(prefs.open(QIODevice::ReadOnly));
    EXPECT_TRUE(prefs.readAll().contains(R"(user_pref("browser.startup.page", 3);)"));
}

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

TEST(FirefoxProcess, ABrowserThatCannotRunSaysWhy)
{
    QTemporaryDir bin;
    const QString endsAtOnce = scriptThatExits(bin.path(), QStringLiteral("firefox"), 4);
    QTemporaryDir profile;
    const std::pair<QString, const char*> cases[] = {
        {bin.path() + QStringLiteral("/no-such-firefox"), "could not be started"},
        {endsAtOnce, "ended as soon as it started (exit code 4)"},
    };
    for (const auto& [executable, says] : cases) {
        try {
            FirefoxProcess::start(executable, profile.path());
            ADD_FAILURE() << "started " << executable.toStdString();
        } catch (const AppError& error) {
            EXPECT_TRUE(error.description().contains(QLatin1String(says)))
                << error.description().toStdString();
        }
    }
    EXPECT_THROW(FirefoxProcess::attach(QStringLiteral("ws://127.0.0.1:1")), AppError);
}
} // namespace

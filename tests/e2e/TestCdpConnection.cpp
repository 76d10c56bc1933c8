// The DevTools connection against a real headless Chromium: pipe and WebSocket, answers,
// errors, time-outs, events in order on the user-interface thread, a browser that dies.
#include "AppError.h"
#include "ChromiumProcess.h"
#include "PumpUntil.h"
#include "RemoteConnection.h"
#include "RemoteTransport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QMutex>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>
#include <thread>

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

TEST_F(TestRemoteConnection, WebSocketToABrowserOnALoopbackPort)
{
    QProcess browser;
    browser.setStandardErrorFile(QProcess::nullDevice());
    browser.start(chromium(), ChromiumProcess::baseArguments(profile.path()) + Headless +
                                  QStringList{QStringLiteral("--remote-debugging-port=0")});
    ASSERT_TRUE(browser.waitForStarted());
    const QString portFile = profile.path() + QStringLiteral("/DevToolsActivePort");
    QElapsedTimer timer;
    timer.start();
    while (!QFile::exists(portFile) && timer.elapsed() < 20000)
        QThread::msleep(50);
    QFile file(portFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString port = QString::fromLatin1(file.readLine()).trimmed();
    {
        auto attached = ChromiumProcess::attach(QStringLiteral("http://127.0.0.1:") + port);
        EXPECT_TRUE(
            attached->connection().call(QStringLiteral("Browser.getVersion")).contains("product"));
    }
    EXPECT_THROW(ChromiumProcess::attach(QStringLiteral("http://127.0.0.1:1")), AppError);
    browser.kill();
    browser.waitForFinished();
}

// A browser that never answers: the call ends with an error after its time-out.
class SilentTransport : public RemoteTransport
{
public:
    void send(const QByteArray&) override {}
};

TEST(RemoteConnectionTimeout, ACallWithoutAnswerFailsAfterItsTimeOut)
{
    RemoteConnection cdp([] { return new SilentTransport; }, 300);
    QElapsedTimer timer;
    timer.start();
    try {
        cdp.call(QStringLiteral("Page.reload"));
        FAIL() << "no error";
    } catch (const AppError& error) {
        EXPECT_TRUE(error.description().contains("did not answer Page.reload in time"));
    }
    EXPECT_GE(timer.elapsed(), 250);
    EXPECT_LT(timer.elapsed(), 3000);
}

// A browser whose answers the test gives, as late as it likes.
class HeldTransport : public RemoteTransport
{
public:
    void send(const QByteArray& bytes) override
    {
        QMutexLocker lock(&m_mutex);
        m_sent.append(QJsonDocument::fromJson(bytes).object().value("id").toInteger());
    }
    QList<qint64> sent() const
    {
        QMutexLocker lock(&m_mutex);
        return m_sent;
    }
    void answer(qint64 id)
    {
        QMetaObject::invokeMethod(this, [this, id] {
            Q_EMIT received(
                QJsonDocument(QJsonObject{{"id", id}, {"result", QJsonObject{}}}).toJson());
        });
    }

private:
    mutable QMutex m_mutex;
    QList<qint64> m_sent;
};

// A page too busy to answer in time holds the bar once, not on every call: calls into that page
// (a DevTools session, a BiDi realm) fail at once until its late answer comes; other pages and
// the browser's own calls go on.
TEST(RemoteConnectionTimeout, APageThatDidNotAnswerIsNotWaitedForAgainUntilItAnswers)
{
    struct Case
    {
        const char* protocol;
        QString method;
        QJsonObject busy;
        QJsonObject other;
        QString busySession;
        QString otherSession;
    } cases[] = {
        {"DevTools", "Runtime.evaluate", {}, {}, "page", "frame"},
        {"BiDi",
         "script.evaluate",
         {{"target", QJsonObject{{"realm", "r1"}}}},
         {{"target", QJsonObject{{"realm", "r2"}}}},
         {},
         {}},
    };
    for (const Case& c : cases) {
        HeldTransport* transport = nullptr;
        RemoteConnection connection([&] { return transport = new HeldTransport; }, 200);
        const auto outcome = [&](const QString& method, const QJsonObject& params,
                                 const QString& session) {
            try {
                connection.call(method, params, session);
                return QStringLiteral("answered");
            } catch (const AppError& error) {
                return error.description();
            }
        };
        const QString late = QStringLiteral("The browser did not answer %1 in time.").arg(c.method);
        EXPECT_EQ(outcome(c.method, c.busy, c.busySession), late) << c.protocol;
        const qint64 firstCall = transport->sent().last();
        EXPECT_EQ(outcome(c.method, c.busy, c.busySession), late) << c.protocol;
        EXPECT_EQ(transport->sent().size(), 1) << c.protocol << ": the busy page was asked again";
        EXPECT_EQ(outcome(c.method, c.other, c.otherSession), late) << c.protocol;
        EXPECT_EQ(transport->sent().size(), 2) << c.protocol << ": another page was not asked";
        EXPECT_EQ(outcome(QStringLiteral("Target.getTargets"), c.busy, c.busySession),
                  QStringLiteral("The browser did not answer Target.getTargets in time."))
            << c.protocol;
        EXPECT_EQ(transport->sent().size(), 3)
            << c.protocol << ": the browser's own call was not made";

        transport->answer(firstCall);
        ASSERT_TRUE(pumpUntil(
            [&] {
                outcome(c.method, c.busy, c.busySession);
                return transport->sent().size() > 3;
            },
            3000))
            << c.protocol << ": the page that answered is still not asked";
    }
}

// A page that shows a dialog runs no script: calls into it fail at once, those already waiting
// too, while what the browser answers itself still goes to it.
TEST(RemoteConnectionBlocking, CallsIntoABlockedPageFailAtOnceUntilItIsLetGo)
{
    RemoteConnection cdp([] { return new SilentTransport; }, 20000);
    const QString reason = QStringLiteral("The page is showing a dialog.");
    // A call that waits for nobody hears of it too, on this thread, when events run.
    QString laterError = QStringLiteral("not answered");
    cdp.callLater(QStringLiteral("Runtime.evaluate"), {}, QStringLiteral("page"),
                  [&](const QJsonObject&, const QString& error) { laterError = error; });
    std::thread dialog([&] {
        QThread::msleep(100);
        cdp.blockSessions({QStringLiteral("page"), QStringLiteral("frame")}, reason);
    });
    QElapsedTimer timer;
    timer.start();
    const auto failure = [&](const QString& method, const QString& session) {
        try {
            cdp.call(method, {}, session);
        } catch (const AppError& error) {
            return error.description();
        }
        return QStringLiteral("answered");
    };
    EXPECT_EQ(failure(QStringLiteral("Runtime.evaluate"), QStringLiteral("page")), reason);
    dialog.join();
    EXPECT_LT(timer.elapsed(), 10000) << "the waiting call was not cut short";
    EXPECT_EQ(failure(QStringLiteral("DOM.describeNode"), QStringLiteral("frame")), reason);
    EXPECT_EQ(laterError, QStringLiteral("not answered"));
    QCoreApplication::processEvents();
    EXPECT_EQ(laterError, reason);

    cdp.setTimeout(200);
    const QString unanswered = QStringLiteral("did not answer");
    EXPECT_TRUE(
        failure(QStringLiteral("Page.bringToFront"), QStringLiteral("page")).contains(unanswered));
    EXPECT_TRUE(
        failure(QStringLiteral("Runtime.evaluate"), QStringLiteral("other")).contains(unanswered));
    cdp.unblockSessions({QStringLiteral("page"), QStringLiteral("frame")});
    EXPECT_TRUE(
        failure(QStringLiteral("Runtime.evaluate"), QStringLiteral("page")).contains(unanswered));
}
} // namespace

// The connection on transports whose answers the test gives: calls that wait without running
// other events, events delivered afterwards in order, errors, a browser that goes, time-outs and
// pages blocked by dialogs.
#include "AppError.h"
#include "PumpUntil.h"
#include "RemoteConnection.h"
#include "RemoteTransport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QMutex>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace {
// A browser that never answers.
class SilentTransport : public RemoteTransport
{
public:
    void send(const QByteArray&) override {}
};

// A browser that sends two events before each answer, fails an unknown method, and goes when
// asked to close.
class ChattyTransport : public RemoteTransport
{
public:
    void send(const QByteArray& bytes) override
    {
        const QJsonObject call = QJsonDocument::fromJson(bytes).object();
        const QString method = call.value("method").toString();
        if (method == QLatin1String("Browser.close"))
            return Q_EMIT closed(u"gone"_s);
        for (int n = 1; n <= 2; ++n)
            Q_EMIT received(
                QJsonDocument(QJsonObject{{"method", method + u".event%1"_s.arg(n)}}).toJson());
        const QJsonObject outcome =
            method == QLatin1String("No.suchMethod")
                ? QJsonObject{{"error", QJsonObject{{"message", "'No.suchMethod' wasn't found"}}}}
                : QJsonObject{{"result", QJsonObject{{"ok", true}}}};
        QJsonObject answer = outcome;
        answer.insert("id", call.value("id"));
        Q_EMIT received(QJsonDocument(answer).toJson());
    }
};

TEST(RemoteConnection, CallsWaitRunningNothingElseAndEventsComeAfterwardsInOrder)
{
    RemoteConnection connection([] { return new ChattyTransport; }, 5000);
    QStringList events;
    bool onMainThread = true;
    connection.setEventHandler([&](const RemoteConnection::Event& event) {
        events << event.method;
        onMainThread &= QThread::currentThread() == QCoreApplication::instance()->thread();
    });
    bool otherEventRan = false;
    QTimer::singleShot(0, [&] { otherEventRan = true; });
    EXPECT_TRUE(connection.call(u"First.call"_s).value("ok").toBool());
    connection.call(u"Second.call"_s);
    EXPECT_FALSE(otherEventRan);
    EXPECT_TRUE(events.isEmpty());
    QCoreApplication::processEvents();
    EXPECT_TRUE(otherEventRan);
    EXPECT_EQ(events, (QStringList{"First.call.event1", "First.call.event2", "Second.call.event1",
                                   "Second.call.event2"}));
    EXPECT_TRUE(onMainThread);
    try {
        connection.call(u"No.suchMethod"_s);
        ADD_FAILURE() << "no error";
    } catch (const AppError& error) {
        EXPECT_EQ(error.number(), ErrorNumber::BrowserCall);
        EXPECT_TRUE(error.description().contains("No.suchMethod"));
    }
    // The browser goes: every later call fails at once, and the handler hears of it.
    connection.send(u"Browser.close"_s);
    EXPECT_TRUE(pumpUntil([&] { return connection.isClosed(); }, 3000));
    EXPECT_THROW(connection.call(u"First.call"_s), AppError);
    EXPECT_TRUE(pumpUntil([&] { return events.contains(RemoteConnection::ClosedEvent); }, 3000));
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
                return u"answered"_s;
            } catch (const AppError& error) {
                return error.description();
            }
        };
        const QString late = u"The browser did not answer %1 in time."_s.arg(c.method);
        EXPECT_EQ(outcome(c.method, c.busy, c.busySession), late) << c.protocol;
        const qint64 firstCall = transport->sent().last();
        EXPECT_EQ(outcome(c.method, c.busy, c.busySession), late) << c.protocol;
        EXPECT_EQ(transport->sent().size(), 1) << c.protocol << ": the busy page was asked again";
        EXPECT_EQ(outcome(c.method, c.other, c.otherSession), late) << c.protocol;
        EXPECT_EQ(transport->sent().size(), 2) << c.protocol << ": another page was not asked";
        EXPECT_EQ(outcome(u"Target.getTargets"_s, c.busy, c.busySession),
                  u"The browser did not answer Target.getTargets in time."_s)
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
    const QString reason = u"The page is showing a dialog."_s;
    // A call that waits for nobody hears of it too, on this thread, when events run.
    QString laterError = u"not answered"_s;
    cdp.callLater(u"Runtime.evaluate"_s, {}, u"page"_s,
                  [&](const QJsonObject&, const QString& error) { laterError = error; });
    std::thread dialog([&] {
        QThread::msleep(100);
        cdp.blockSessions({u"page"_s, u"frame"_s}, reason);
    });
    QElapsedTimer timer;
    timer.start();
    const auto failure = [&](const QString& method, const QString& session) {
        try {
            cdp.call(method, {}, session);
        } catch (const AppError& error) {
            return error.description();
        }
        return u"answered"_s;
    };
    EXPECT_EQ(failure(u"Runtime.evaluate"_s, u"page"_s), reason);
    dialog.join();
    EXPECT_LT(timer.elapsed(), 10000) << "the waiting call was not cut short";
    EXPECT_EQ(failure(u"DOM.describeNode"_s, u"frame"_s), reason);
    EXPECT_EQ(laterError, u"not answered"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(laterError, reason);

    cdp.setTimeout(200);
    const QString unanswered = u"did not answer"_s;
    EXPECT_TRUE(failure(u"Page.bringToFront"_s, u"page"_s).contains(unanswered));
    EXPECT_TRUE(failure(u"Runtime.evaluate"_s, u"other"_s).contains(unanswered));
    cdp.unblockSessions({u"page"_s, u"frame"_s});
    EXPECT_TRUE(failure(u"Runtime.evaluate"_s, u"page"_s).contains(unanswered));
}
} // namespace

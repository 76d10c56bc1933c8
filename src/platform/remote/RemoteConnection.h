#pragma once

#include <QHash>
#include <QJsonObject>
#include <QMutex>
#include <QObject>
#include <QStringList>
#include <QWaitCondition>
#include <deque>
#include <functional>
#include <map>
#include <memory>

class RemoteTransport;
class QThread;

// One connection to a browser's remote protocol (the DevTools Protocol in flat mode, or WebDriver
// BiDi: both send numbered calls and answer them by number, and send events by method). Calls
// from the user-interface thread wait for their answer without running other events; events are
// handed to the user-interface thread in the order they arrived, after the call that was waiting
// returns.
class RemoteConnection : public QObject
{
    Q_OBJECT
public:
    struct Event
    {
        QString method;
        QJsonObject params;
        QString sessionId;
        // Set for the answer to callLater: it runs in place of the event handler.
        std::function<void()> answer;
    };
    // The last event of a connection: the browser went away (params: "reason").
    static inline const QString ClosedEvent = QStringLiteral("Connection.closed");
    using Answer = std::function<void(const QJsonObject& result, const QString& error)>;
    // Makes the transport on the connection's own thread; may throw AppError.
    using TransportFactory = std::function<RemoteTransport*()>;

    // How long a call waits for its answer; a browser that has just started, busy opening its
    // first window, is given longer until it is followed.
    static constexpr int CallTimeoutMs = 10000;
    static constexpr int StartTimeoutMs = 45000;

    explicit RemoteConnection(const TransportFactory& makeTransport,
                              int timeoutMs = StartTimeoutMs);
    ~RemoteConnection() override;

    // Throws AppError (browser call) with the browser's message, on a time-out or once closed.
    QJsonObject call(const QString& method, const QJsonObject& params = {},
                     const QString& sessionId = {});
    // Sends without waiting for the answer.
    void send(const QString& method, const QJsonObject& params = {}, const QString& sessionId = {});
    // Sends without waiting; the answer (or the browser's error) is handed to `answered` on the
    // user-interface thread, in order with the events. A browser that goes away never answers.
    void callLater(const QString& method, const QJsonObject& params, const QString& sessionId,
                   Answer answered);

    void setEventHandler(std::function<void(const Event&)> handler)
    {
        m_handler = std::move(handler);
    }
    // Runs on the I/O thread for each event before it is queued: for what must not wait for the
    // user-interface thread (resuming a target that waits for its debugger).
    void setIoHook(std::function<void(const Event&)> hook);
    bool isClosed() const;
    // Calls into the page's script (Runtime, DOM, script) on these sessions, or into these
    // realms (named "\n" + realm id), fail at once with the reason, those waiting included, until
    // they are let go: a page showing a dialog runs none of them until it closes. Calls the
    // browser answers itself go on.
    void blockSessions(const QStringList& sessions, const QString& reason);
    void unblockSessions(const QStringList& sessions);
    void setTimeout(int ms) { m_timeoutMs = ms; }

private:
    struct Pending
    {
        QString sessionId;
        QString scope; // the page or document it runs in, for calls that run in one
        bool inPage = false;
        bool abandoned = false; // its caller gave up waiting; its answer still says the page lives
        Answer later;
        bool done = false;
        QJsonObject result;
        QString error;
    };
    qint64 post(const QString& method, const QJsonObject& params, const QString& sessionId,
                Answer later = {});
    // Hands a callLater answer to the user-interface thread; the mutex is held.
    void answerLater(std::map<qint64, Pending>::iterator pending, const QJsonObject& result,
                     const QString& error);
    static bool runsInPage(const QString& method);
    // The page or document a call runs in: its session, and its target realm or context if it names
    // one.
    static QString scopeOf(const QJsonObject& params, const QString& sessionId);
    void onReceived(const QByteArray& message);
    void onClosed(const QString& reason);
    void deliverOne();
    void shutDown();

    QThread* m_thread;
    QObject* m_ioContext;
    RemoteTransport* m_transport = nullptr;
    mutable QMutex m_mutex;
    QWaitCondition m_answered;
    std::map<qint64, Pending> m_pending;
    std::deque<Event> m_events;
    qint64 m_nextId = 1;
    QString m_closedReason;
    QHash<QString, QString> m_blocked; // session -> why its calls fail
    // Scopes whose last call went unanswered in time -> what to say: the next calls into them fail
    // at once, until that call's answer comes after all.
    QHash<QString, QString> m_unanswered;
    int m_timeoutMs;
    std::function<void(const Event&)> m_handler;
    std::function<void(const Event&)> m_ioHook;
};

#include "RemoteConnection.h"

#include "AppError.h"
#include "RemoteTransport.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QThread>

namespace {
// The browser's words for a failed call: the DevTools Protocol gives an object with a message,
// WebDriver BiDi an error name with the message beside it.
QString errorOf(const QJsonObject& reply)
{
    const QJsonValue error = reply.value(QStringLiteral("error"));
    if (error.isObject())
        return error.toObject().value(QStringLiteral("message")).toString();
    const QString message = reply.value(QStringLiteral("message")).toString();
    return message.isEmpty() ? error.toString() : error.toString() + QStringLiteral(": ") + message;
}
} // namespace

RemoteConnection::RemoteConnection(const TransportFactory& makeTransport, int timeoutMs)
    : m_thread(new QThread), m_ioContext(new QObject), m_timeoutMs(timeoutMs)
{
    m_thread->setObjectName(QStringLiteral("DevTools I/O"));
    m_ioContext->moveToThread(m_thread);
    m_thread->start();
    // The transport is made on, and lives on, the I/O thread.
    QString failure;
    QMetaObject::invokeMethod(
        m_ioContext,
        [&] {
            try {
                m_transport = makeTransport();
            } catch (const AppError& error) {
                failure = error.description();
            }
        },
        Qt::BlockingQueuedConnection);
    if (!m_transport) {
        shutDown();
        throw AppError(ErrorNumber::BrowserCall, failure);
    }
    connect(
        m_transport, &RemoteTransport::received, m_transport,
        [this](const QByteArray& message) { onReceived(message); }, Qt::DirectConnection);
    connect(
        m_transport, &RemoteTransport::closed, m_transport,
        [this](const QString& reason) { onClosed(reason); }, Qt::DirectConnection);
}

RemoteConnection::~RemoteConnection()
{
    shutDown();
}

void RemoteConnection::shutDown()
{
    QMetaObject::invokeMethod(
        m_ioContext,
        [this] {
            delete m_transport;
            m_transport = nullptr;
            delete m_ioContext;
        },
        Qt::BlockingQueuedConnection);
    m_thread->quit();
    m_thread->wait();
    delete m_thread;
}

void RemoteConnection::setIoHook(std::function<void(const Event&)> hook)
{
    QMutexLocker lock(&m_mutex);
    m_ioHook = std::move(hook);
}

bool RemoteConnection::isClosed() const
{
    QMutexLocker lock(&m_mutex);
    return !m_closedReason.isEmpty();
}

qint64 RemoteConnection::post(const QString& method, const QJsonObject& params,
                              const QString& sessionId, Answer later)
{
    QJsonObject message{{QStringLiteral("method"), method}, {QStringLiteral("params"), params}};
    if (!sessionId.isEmpty())
        message.insert(QStringLiteral("sessionId"), sessionId);
    qint64 id;
    {
        QMutexLocker lock(&m_mutex);
        if (!m_closedReason.isEmpty())
            throw AppError(ErrorNumber::BrowserCall, m_closedReason);
        id = m_nextId++;
        Pending pending;
        pending.sessionId = sessionId;
        pending.scope = scopeOf(params, sessionId);
        pending.inPage = runsInPage(method);
        pending.later = std::move(later);
        m_pending.emplace(id, std::move(pending));
    }
    message.insert(QStringLiteral("id"), id);
    const QByteArray bytes = QJsonDocument(message).toJson(QJsonDocument::Compact);
    QMetaObject::invokeMethod(m_transport, [this, bytes] { m_transport->send(bytes); });
    return id;
}

bool RemoteConnection::runsInPage(const QString& method)
{
    return method.startsWith(QLatin1String("Runtime.")) ||
           method.startsWith(QLatin1String("DOM.")) || method.startsWith(QLatin1String("script."));
}

QString RemoteConnection::scopeOf(const QJsonObject& params, const QString& sessionId)
{
    const QJsonObject target = params.value(QLatin1String("target")).toObject();
    const QString within = target.contains(QLatin1String("realm"))
                               ? target.value(QLatin1String("realm")).toString()
                               : target.value(QLatin1String("context")).toString();
    return sessionId + QLatin1Char('\n') + within;
}

void RemoteConnection::blockSessions(const QStringList& sessions, const QString& reason)
{
    QMutexLocker lock(&m_mutex);
    for (const QString& session : sessions)
        m_blocked.insert(session, reason);
    for (auto pending = m_pending.begin(); pending != m_pending.end();) {
        auto next = std::next(pending);
        if (!pending->second.done && pending->second.inPage &&
            (sessions.contains(pending->second.sessionId) ||
             sessions.contains(pending->second.scope))) {
            if (pending->second.later) {
                answerLater(pending, {}, reason);
            } else {
                pending->second.done = true;
                pending->second.error = reason;
            }
        }
        pending = next;
    }
    m_answered.wakeAll();
}

void RemoteConnection::unblockSessions(const QStringList& sessions)
{
    QMutexLocker lock(&m_mutex);
    for (const QString& session : sessions)
        m_blocked.remove(session);
}

QJsonObject RemoteConnection::call(const QString& method, const QJsonObject& params,
                                   const QString& sessionId)
{
    {
        QMutexLocker lock(&m_mutex);
        for (const QString& key : {sessionId, scopeOf(params, sessionId)}) {
            const auto blocked = m_blocked.constFind(key);
            if (blocked != m_blocked.constEnd() && runsInPage(method))
                throw AppError(ErrorNumber::BrowserCall, *blocked);
        }
        // A page busy beyond the time-out would hold the bar that long on every call.
        const auto unanswered = m_unanswered.constFind(scopeOf(params, sessionId));
        if (unanswered != m_unanswered.constEnd() && runsInPage(method))
            throw AppError(ErrorNumber::BrowserCall, *unanswered);
    }
    const qint64 id = post(method, params, sessionId);
    QMutexLocker lock(&m_mutex);
    QDeadlineTimer deadline(m_timeoutMs);
    auto pending = m_pending.find(id);
    while (!pending->second.done && m_closedReason.isEmpty()) {
        if (!m_answered.wait(&m_mutex, deadline))
            break;
        pending = m_pending.find(id);
    }
    Pending answer = pending->second;
    if (!answer.done && m_closedReason.isEmpty()) {
        const QString why = QStringLiteral("The browser did not answer %1 in time.").arg(method);
        if (answer.inPage) {
            pending->second.abandoned = true;
            m_unanswered.insert(answer.scope, why);
        } else {
            m_pending.erase(pending);
        }
        throw AppError(ErrorNumber::BrowserCall, why);
    }
    m_pending.erase(pending);
    if (answer.done && answer.error.isEmpty())
        return answer.result;
    throw AppError(ErrorNumber::BrowserCall, answer.done ? answer.error : m_closedReason);
}

void RemoteConnection::send(const QString& method, const QJsonObject& params,
                            const QString& sessionId)
{
    const qint64 id = post(method, params, sessionId);
    QMutexLocker lock(&m_mutex);
    // Nobody waits for this answer: forget it when it comes.
    m_pending.at(id).done = true;
    m_pending.erase(id);
}

void RemoteConnection::callLater(const QString& method, const QJsonObject& params,
                                 const QString& sessionId, Answer answered)
{
    post(method, params, sessionId, std::move(answered));
}

void RemoteConnection::answerLater(std::map<qint64, Pending>::iterator pending,
                                   const QJsonObject& result, const QString& error)
{
    Event event;
    event.answer = [later = std::move(pending->second.later), result, error] {
        later(result, error);
    };
    m_pending.erase(pending);
    m_events.push_back(std::move(event));
    QMetaObject::invokeMethod(this, &RemoteConnection::deliverOne, Qt::QueuedConnection);
}

void RemoteConnection::onReceived(const QByteArray& bytes)
{
    const QJsonObject message = QJsonDocument::fromJson(bytes).object();
    if (message.contains(QStringLiteral("id"))) {
        QMutexLocker lock(&m_mutex);
        const auto pending = m_pending.find(message.value(QStringLiteral("id")).toInteger());
        if (pending != m_pending.end() && pending->second.abandoned) {
            // The page answers again: calls into it are made again.
            m_unanswered.remove(pending->second.scope);
            m_pending.erase(pending);
            return;
        }
        // A call already failed (its page showed a dialog) keeps its failure.
        if (pending == m_pending.end() || pending->second.done)
            return;
        if (pending->second.later) {
            answerLater(pending, message.value(QStringLiteral("result")).toObject(),
                        errorOf(message));
            return;
        }
        pending->second.done = true;
        pending->second.result = message.value(QStringLiteral("result")).toObject();
        if (message.contains(QStringLiteral("error")))
            pending->second.error = errorOf(message);
        m_answered.wakeAll();
        return;
    }
    Event event{message.value(QStringLiteral("method")).toString(),
                message.value(QStringLiteral("params")).toObject(),
                message.value(QStringLiteral("sessionId")).toString(),
                {}};
    std::function<void(const Event&)> hook;
    {
        QMutexLocker lock(&m_mutex);
        hook = m_ioHook;
    }
    if (hook)
        hook(event);
    {
        QMutexLocker lock(&m_mutex);
        m_events.push_back(std::move(event));
    }
    QMetaObject::invokeMethod(this, &RemoteConnection::deliverOne, Qt::QueuedConnection);
}

void RemoteConnection::onClosed(const QString& reason)
{
    QMutexLocker lock(&m_mutex);
    if (!m_closedReason.isEmpty())
        return;
    m_closedReason = reason;
    m_answered.wakeAll();
    // Told after every event the browser sent before it went.
    m_events.push_back(Event{ClosedEvent, {{QStringLiteral("reason"), reason}}, {}, {}});
    QMetaObject::invokeMethod(this, &RemoteConnection::deliverOne, Qt::QueuedConnection);
}

void RemoteConnection::deliverOne()
{
    Event event;
    {
        QMutexLocker lock(&m_mutex);
        if (m_events.empty())
            return;
        event = std::move(m_events.front());
        m_events.pop_front();
    }
    if (event.answer)
        event.answer();
    else if (m_handler)
        m_handler(event);
}

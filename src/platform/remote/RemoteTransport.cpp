#include "RemoteTransport.h"

#include "AppError.h"

#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>
#include <QWebSocket>
#include <cerrno>
#include <csignal>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

PipeTransport::PipeTransport(int readFd, int writeFd)
    : m_readFd(readFd), m_writeFd(writeFd),
      m_notifier(new QSocketNotifier(readFd, QSocketNotifier::Read, this))
{
    // A browser that died must make a write fail, not end Tolvane.
    ::signal(SIGPIPE, SIG_IGN);
    connect(m_notifier, &QSocketNotifier::activated, this, &PipeTransport::readAvailable);
}

PipeTransport::~PipeTransport()
{
    ::close(m_readFd);
    ::close(m_writeFd);
}

void PipeTransport::send(const QByteArray& message)
{
    QByteArray framed = message;
    framed.append('\0');
    qsizetype done = 0;
    while (done < framed.size()) {
        const auto written = ::write(m_writeFd, framed.constData() + done,
                                     static_cast<size_t>(framed.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            Q_EMIT closed(QStringLiteral("The browser closed its DevTools pipe."));
            return;
        }
        done += written;
    }
}

void PipeTransport::readAvailable()
{
    char chunk[65536];
    const auto count = ::read(m_readFd, chunk, sizeof chunk);
    if (count <= 0) {
        if (count < 0 && errno == EINTR)
            return;
        m_notifier->setEnabled(false);
        Q_EMIT closed(QStringLiteral("The browser closed its DevTools pipe."));
        return;
    }
    m_buffer.append(chunk, count);
    qsizetype end;
    while ((end = m_buffer.indexOf('\0')) >= 0) {
        Q_EMIT received(m_buffer.left(end));
        m_buffer.remove(0, end + 1);
    }
}

WebSocketTransport::WebSocketTransport(const QString& url)
    : m_socket(new QWebSocket(QString(), QWebSocketProtocol::VersionLatest, this))
{
    m_socket->setMaxAllowedIncomingMessageSize(256 * 1024 * 1024);
    connect(m_socket, &QWebSocket::textMessageReceived, this,
            [this](const QString& text) { Q_EMIT received(text.toUtf8()); });
    connect(m_socket, &QWebSocket::binaryMessageReceived, this, &RemoteTransport::received);
    // This runs on the I/O thread, so waiting here holds up no user-interface event.
    QEventLoop wait;
    QTimer timeout;
    timeout.setSingleShot(true);
    connect(&timeout, &QTimer::timeout, &wait, &QEventLoop::quit);
    connect(m_socket, &QWebSocket::connected, &wait, &QEventLoop::quit);
    connect(m_socket, &QWebSocket::disconnected, &wait, &QEventLoop::quit);
    timeout.start(10000);
    m_socket->open(QUrl(url));
    wait.exec();
    if (m_socket->state() != QAbstractSocket::ConnectedState)
        throw AppError(
            ErrorNumber::BrowserCall,
            QStringLiteral("Cannot reach the browser at %1: %2").arg(url, m_socket->errorString()));
    connect(m_socket, &QWebSocket::disconnected, this,
            [this] { Q_EMIT closed(QStringLiteral("The browser closed its connection.")); });
#ifdef TCP_QUICKACK
    // Every answer is acknowledged at once: a browser that holds a small message back until its
    // last one is acknowledged (Nagle) would otherwise wait out the 40 ms delayed acknowledgement
    // whenever two answers or events follow each other.
    if (auto* tcp = m_socket->findChild<QAbstractSocket*>()) {
        const auto quickAck = [tcp] {
            int on = 1;
            ::setsockopt(static_cast<int>(tcp->socketDescriptor()), IPPROTO_TCP, TCP_QUICKACK, &on,
                         sizeof on);
        };
        quickAck();
        connect(tcp, &QIODevice::readyRead, this, quickAck);
    }
#endif
}

void WebSocketTransport::send(const QByteArray& message)
{
    m_socket->sendTextMessage(QString::fromUtf8(message));
}

#pragma once

#include <QByteArray>
#include <QObject>

// Moves protocol messages to and from the browser; lives on the connection's I/O thread and
// knows nothing of their meaning.
class RemoteTransport : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    virtual void send(const QByteArray& message) = 0;

Q_SIGNALS:
    void received(const QByteArray& message);
    void closed(const QString& reason);
};

// The browser's end of --remote-debugging-pipe: messages are JSON text ended by a NUL byte.
class PipeTransport : public RemoteTransport
{
    Q_OBJECT
public:
    // Takes ownership of both descriptors.
    PipeTransport(int readFd, int writeFd);
    ~PipeTransport() override;
    void send(const QByteArray& message) override;

private:
    void readAvailable();

    int m_readFd;
    int m_writeFd;
    QByteArray m_buffer;
    class QSocketNotifier* m_notifier;
};

// A browser's DevTools WebSocket on a loopback port.
class WebSocketTransport : public RemoteTransport
{
    Q_OBJECT
public:
    // Connects and waits for the connection; throws AppError when it cannot be opened.
    explicit WebSocketTransport(const QString& url);
    void send(const QByteArray& message) override;

private:
    class QWebSocket* m_socket;
};

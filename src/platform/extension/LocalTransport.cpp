#include "LocalTransport.h"

#include <QJsonDocument>
#include <QLocalSocket>

LocalTransport::LocalTransport(int descriptor) : m_socket(new QLocalSocket(this))
{
    m_socket->setSocketDescriptor(descriptor);
    connect(m_socket, &QLocalSocket::readyRead, this, &LocalTransport::readAvailable);
    connect(m_socket, &QLocalSocket::disconnected, this, [this] {
        if (!std::exchange(m_closed, true))
            Q_EMIT closed(QStringLiteral("The browser's extension closed its connection."));
    });
}

void LocalTransport::send(const QByteArray& message)
{
    m_socket->write(NativeFrames::frame(message));
    m_socket->flush();
}

void LocalTransport::readAvailable()
{
    for (const QByteArray& message : m_reader.take(m_socket->readAll())) {
        QJsonParseError error{};
        if (QJsonDocument::fromJson(message, &error).isObject())
            Q_EMIT received(message);
        else
            qWarning("Tolvane: dropped a message from the browser's extension that is not a JSON "
                     "object (%d bytes).",
                     int(message.size()));
    }
    if (!m_reader.error().isEmpty() && !std::exchange(m_closed, true)) {
        qWarning("Tolvane: the browser's extension sent what cannot be read: %s",
                 qPrintable(m_reader.error()));
        m_socket->abort();
        Q_EMIT closed(m_reader.error());
    }
}

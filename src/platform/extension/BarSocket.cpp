#include "BarSocket.h"

#include "AppError.h"

#include <QLocalSocket>
#include <QStandardPaths>
#include <sys/socket.h>
#include <unistd.h>

QString BarSocket::path()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/tolvane-bar");
}

void BarSocket::listen()
{
    if (m_server.isListening())
        return;
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QLocalServer::removeServer(path());
    if (!m_server.listen(path()))
        throw AppError(ErrorNumber::BrowserCall,
                       QStringLiteral("Tolvane cannot listen for its browser extension at %1: %2")
                           .arg(path(), m_server.errorString()));
    connect(&m_server, &QLocalServer::newConnection, this, &BarSocket::accept,
            Qt::UniqueConnection);
}

bool BarSocket::isOwnUser(int descriptor)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == ::geteuid();
}

void BarSocket::accept()
{
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        const int descriptor = static_cast<int>(socket->socketDescriptor());
        if (!isOwnUser(descriptor)) {
            qWarning("Tolvane: refused a connection to its socket from a process of another user.");
        } else if (const int own = ::dup(descriptor); own >= 0) {
            Q_EMIT connected(own);
        }
        delete socket;
    }
}

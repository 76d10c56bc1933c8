#pragma once

// Serves fixed pages on 127.0.0.1 from a thread of its own, so that the browser gets its pages
// even while the test's thread waits in a synchronous DevTools call: those it is given by path,
// and the files of a folder under their path in it.

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

class HttpServer
{
public:
    explicit HttpServer(QMap<QString, QByteArray> pages, QString folder = {})
        : m_pages(std::move(pages)), m_folder(std::move(folder))
    {
        m_thread.start();
        QMetaObject::invokeMethod(
            m_context, [this] { listen(); }, Qt::BlockingQueuedConnection);
    }
    ~HttpServer()
    {
        QMetaObject::invokeMethod(
            m_context,
            [this] {
                delete m_server;
                delete m_context;
            },
            Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }
    quint16 port() const { return m_port; }
    // The same server under another site's name, for frames from another site.
    QString url(const QString& path, bool otherSite = false) const
    {
        return QStringLiteral("http://%1:%2%3")
            .arg(otherSite ? "localhost" : "127.0.0.1")
            .arg(m_port)
            .arg(path);
    }

private:
    void listen()
    {
        m_server = new QTcpServer;
        m_server->listen(QHostAddress::LocalHost, 0);
        m_port = m_server->serverPort();
        QObject::connect(m_server, &QTcpServer::newConnection, m_server, [this] {
            while (QTcpSocket* socket = m_server->nextPendingConnection()) {
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                    const QByteArray request = socket->readAll();
                    const QString path = QString::fromLatin1(request.split(' ').value(1));
                    const QByteArray body = bodyOf(path.section('?', 0, 0));
                    const QByteArray status = body.isNull() ? "404 Not Found" : "200 OK";
                    socket->write("HTTP/1.1 " + status +
                                  "\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
                                  QByteArray::number(body.size()) +
                                  "\r\nConnection: close\r\n\r\n" + body);
                    socket->disconnectFromHost();
                });
                QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

    QByteArray bodyOf(const QString& path) const
    {
        if (m_pages.contains(path))
            return m_pages.value(path);
        QFile file(m_folder + QDir::cleanPath(path));
        if (m_folder.isEmpty() || path.contains(QLatin1String("..")) ||
            !file.open(QIODevice::ReadOnly))
            return {};
        return file.readAll();
    }

    QMap<QString, QByteArray> m_pages;
    QString m_folder;
    QThread m_thread;
    QObject* m_context = [this] {
        auto* context = new QObject;
        context->moveToThread(&m_thread);
        return context;
    }();
    QTcpServer* m_server = nullptr;
    quint16 m_port = 0;
};

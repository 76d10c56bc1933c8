#include "HostRelay.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace {
void say(const QString& line)
{
    std::fprintf(stderr, "tolvane-host: %s\n", qPrintable(line));
}

bool isJsonObject(const QByteArray& message)
{
    return QJsonDocument::fromJson(message).isObject();
}
} // namespace

HostRelay::HostRelay(int fromBrowser, int toBrowser, QString socketPath)
    : m_fromBrowser(fromBrowser), m_toBrowser(toBrowser), m_socketPath(std::move(socketPath)),
      m_browserNotifier(new QSocketNotifier(fromBrowser, QSocketNotifier::Read, this))
{
    // A browser that went must make a write fail, not end the host unheard.
    ::signal(SIGPIPE, SIG_IGN);
    connect(m_browserNotifier, &QSocketNotifier::activated, this, &HostRelay::readBrowser);
    connect(&m_bar, &QLocalSocket::readyRead, this, &HostRelay::readBar);
    connect(&m_bar, &QLocalSocket::connected, this, [this] {
        m_saidWaiting = false;
        m_fromBarFrames = NativeFrames::Reader();
        say(QStringLiteral("connected to the bar."));
    });
    connect(&m_bar, &QLocalSocket::disconnected, this, &HostRelay::barLost);
    connect(&m_bar, &QLocalSocket::errorOccurred, this, [this] {
        if (m_bar.state() != QLocalSocket::ConnectedState)
            barLost();
    });
    m_retry.setInterval(500);
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &HostRelay::tryBar);
    tryBar();
}

HostRelay::~HostRelay()
{
    // The socket closing as the host ends is no bar lost.
    m_bar.disconnect(this);
}

void HostRelay::tryBar()
{
    if (m_bar.state() == QLocalSocket::ConnectedState)
        return;
    m_bar.abort();
    m_bar.connectToServer(m_socketPath);
}

void HostRelay::barLost()
{
    if (!m_saidWaiting) {
        m_saidWaiting = true;
        say(QStringLiteral("the Tolvane bar is not running (no socket at %1); waiting for it.")
                .arg(m_socketPath));
        // The extension stops its reports until a bar asks again.
        toBrowser(R"({"tolvane":"bar-gone"})");
    }
    if (!m_retry.isActive())
        m_retry.start();
}

void HostRelay::readBrowser()
{
    char chunk[65536];
    const auto count = ::read(m_fromBrowser, chunk, sizeof chunk);
    if (count < 0 && errno == EINTR)
        return;
    if (count <= 0) {
        m_browserNotifier->setEnabled(false);
        Q_EMIT finished(0);
        return;
    }
    for (const QByteArray& message : m_fromBrowserFrames.take(QByteArray(chunk, count))) {
        if (!isJsonObject(message))
            say(QStringLiteral("dropped a message from the browser that is not a JSON object."));
        else if (m_bar.state() == QLocalSocket::ConnectedState)
            m_bar.write(NativeFrames::frame(message));
    }
    if (!m_fromBrowserFrames.error().isEmpty()) {
        say(QStringLiteral("the browser sent what cannot be read, ending: ") +
            m_fromBrowserFrames.error());
        m_browserNotifier->setEnabled(false);
        Q_EMIT finished(1);
    }
}

void HostRelay::readBar()
{
    for (const QByteArray& message : m_fromBarFrames.take(m_bar.readAll())) {
        if (message.size() > NativeFrames::BrowserLimit) {
            // The browser would end the host for it: the bar hears why its call failed instead.
            say(QStringLiteral("a message of %1 bytes from the bar is over the browser's limit; "
                               "not sent.")
                    .arg(message.size()));
            const QJsonObject call = QJsonDocument::fromJson(message).object();
            if (call.contains(QLatin1String("id")))
                m_bar.write(NativeFrames::frame(
                    QJsonDocument(QJsonObject{{"type", "error"},
                                              {"id", call.value("id")},
                                              {"error", "unknown error"},
                                              {"message", "The message is too long for the "
                                                          "browser (over 1 MB)."}})
                        .toJson(QJsonDocument::Compact)));
        } else if (!isJsonObject(message)) {
            say(QStringLiteral("dropped a message from the bar that is not a JSON object."));
        } else {
            toBrowser(message);
        }
    }
    if (!m_fromBarFrames.error().isEmpty()) {
        say(QStringLiteral("the bar sent what cannot be read: ") + m_fromBarFrames.error());
        m_bar.abort();
    }
}

void HostRelay::toBrowser(const QByteArray& message)
{
    const QByteArray framed = NativeFrames::frame(message);
    qsizetype done = 0;
    while (done < framed.size()) {
        const auto written = ::write(m_toBrowser, framed.constData() + done,
                                     static_cast<size_t>(framed.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            Q_EMIT finished(0); // the browser has gone
            return;
        }
        done += written;
    }
}

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Native messaging's framing: each message is JSON text after its length, a 32-bit number in the
// machine's own byte order. The browser, Tolvane's host and the bar all speak it.
namespace NativeFrames {

// The most a browser takes from its host in one message.
constexpr qsizetype BrowserLimit = 1024 * 1024;
// The most Tolvane reads in one message: a page's fields, a long value and more.
constexpr qsizetype ReadLimit = 64 * 1024 * 1024;

QByteArray frame(const QByteArray& message);

// Cuts a stream into messages. A length over the limit leaves the stream unreadable: what
// follows cannot be told apart from the rest of the refused message.
class Reader
{
public:
    explicit Reader(qsizetype limit = ReadLimit) : m_limit(limit) {}
    // The whole messages the bytes complete.
    QList<QByteArray> take(const QByteArray& bytes);
    // Why the stream was refused; empty while it is good.
    const QString& error() const { return m_error; }

private:
    qsizetype m_limit;
    QByteArray m_buffer;
    QString m_error;
};

} // namespace NativeFrames

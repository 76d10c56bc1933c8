#include "NativeFrames.h"

#include <cstring>

namespace NativeFrames {

QByteArray frame(const QByteArray& message)
{
    const auto length = static_cast<quint32>(message.size());
    QByteArray framed(reinterpret_cast<const char*>(&length), sizeof length);
    return framed + message;
}

QList<QByteArray> Reader::take(const QByteArray& bytes)
{
    QList<QByteArray> messages;
    if (!m_error.isEmpty())
        return messages;
    m_buffer.append(bytes);
    qsizetype at = 0;
    while (m_buffer.size() - at >= qsizetype(sizeof(quint32))) {
        quint32 length = 0;
        std::memcpy(&length, m_buffer.constData() + at, sizeof length);
        if (qsizetype(length) > m_limit) {
            m_error = QStringLiteral("A message claims %1 bytes, more than the %2 allowed.")
                          .arg(length)
                          .arg(m_limit);
            m_buffer.clear();
            return messages;
        }
        if (m_buffer.size() - at - qsizetype(sizeof length) < qsizetype(length))
            break;
        messages.append(m_buffer.mid(at + sizeof length, length));
        at += qsizetype(sizeof length) + length;
    }
    m_buffer.remove(0, at);
    return messages;
}

} // namespace NativeFrames

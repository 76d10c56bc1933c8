#pragma once

#include <QLocalServer>
#include <QObject>

// The local socket through which Tolvane's native-messaging host reaches the bar: in the user's
// runtime folder (open to this user only), the file itself open to this user only, and every
// caller's credentials checked as it connects.
class BarSocket : public QObject
{
    Q_OBJECT
public:
    // Where the bar listens (and the host connects).
    static QString path();
    // Listens, taking over the socket a bar that crashed left behind; throws AppError when it
    // cannot.
    void listen();
    // Whether the process at the other end of the connected socket runs as this user.
    static bool isOwnUser(int descriptor);

Q_SIGNALS:
    // A host of this user connected: the receiver owns the descriptor.
    void connected(int descriptor);

private:
    void accept();

    QLocalServer m_server;
};

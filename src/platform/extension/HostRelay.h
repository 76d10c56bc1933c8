#pragma once

#include "NativeFrames.h"

#include <QLocalSocket>
#include <QObject>
#include <QTimer>

class QSocketNotifier;

// Tolvane's native-messaging host at work: what the browser writes (on the host's standard input)
// goes to the bar's socket, what the bar writes goes to the browser (standard output), each as
// native messaging frames. While no bar runs, the browser's messages are dropped and the socket
// is tried again every second, so the extension stays connected and quiet until a bar starts.
// What cannot be relayed gets a line on standard error, which the browser keeps in its log.
class HostRelay : public QObject
{
    Q_OBJECT
public:
    HostRelay(int fromBrowser, int toBrowser, QString socketPath);
    ~HostRelay() override;

Q_SIGNALS:
    // The browser closed its end: the host has nothing more to do.
    void finished(int exitCode);

private:
    void readBrowser();
    void readBar();
    void tryBar();
    void barLost();
    void toBrowser(const QByteArray& message);

    int m_fromBrowser;
    int m_toBrowser;
    QString m_socketPath;
    QSocketNotifier* m_browserNotifier;
    QLocalSocket m_bar;
    QTimer m_retry;
    NativeFrames::Reader m_fromBrowserFrames;
    NativeFrames::Reader m_fromBarFrames;
    bool m_saidWaiting = false;
};

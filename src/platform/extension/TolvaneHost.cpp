// tolvane-host: started by the browser for Tolvane's extension (native messaging), it relays
// between the browser and the running bar.
#include "BarSocket.h"
#include "HostRelay.h"

#include <QCoreApplication>
#include <unistd.h>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    HostRelay relay(STDIN_FILENO, STDOUT_FILENO, BarSocket::path());
    QObject::connect(&relay, &HostRelay::finished, &app, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    return QCoreApplication::exec();
}

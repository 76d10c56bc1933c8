#pragma once

#include "NativeFrames.h"
#include "RemoteTransport.h"

class QLocalSocket;

// The bar's end of the socket Tolvane's host relays the extension's messages over, in native
// messaging's framing.
class LocalTransport : public RemoteTransport
{
    Q_OBJECT
public:
    // Takes ownership of the connected socket's descriptor.
    explicit LocalTransport(int descriptor);
    void send(const QByteArray& message) override;

private:
    void readAvailable();

    QLocalSocket* m_socket;
    NativeFrames::Reader m_reader;
    bool m_closed = false;
};

#pragma once

#include "MessagePump.h"

#include <QCoreApplication>

// One turn of Qt's event loop.
class QtMessagePump : public MessagePump
{
public:
    void DoEvents() override { QCoreApplication::processEvents(); }
};

#pragma once

#include "MessagePump.h"

#include <QCoreApplication>
#include <QElapsedTimer>

// A turn of Qt's event loop, at most one a millisecond: a fill asks for one after every field,
// and each turn polls every event source, which cost a 100-field fill more than all its reads.
// Pending events still wait no longer than that.
class QtMessagePump : public MessagePump
{
public:
    void DoEvents() override
    {
        if (m_sinceTurn.isValid() && m_sinceTurn.nsecsElapsed() < TurnIntervalNs)
            return;
        QCoreApplication::processEvents();
        m_sinceTurn.start();
    }

private:
    static constexpr qint64 TurnIntervalNs = 1000000;
    QElapsedTimer m_sinceTurn;
};

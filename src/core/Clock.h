#pragma once

#include <QDateTime>
#include <QElapsedTimer>

// Time as the logic sees it: local date and time for records, a monotonic count for intervals.
class Clock
{
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
    virtual qint64 monotonicMs() const = 0;
};

class SystemClock : public Clock
{
public:
    SystemClock() { m_started.start(); }
    QDateTime now() const override { return QDateTime::currentDateTime(); }
    qint64 monotonicMs() const override { return m_started.elapsed(); }

private:
    QElapsedTimer m_started;
};

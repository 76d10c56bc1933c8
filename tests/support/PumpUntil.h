#pragma once

// Runs the event loop until a condition holds, for tests and benchmarks that wait on a real
// browser: a browser that cannot answer yet counts as not done.
#include "AppError.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>

inline bool pumpUntil(const std::function<bool()>& done, int ms, int sliceMs = 5)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        try {
            if (done())
                return true;
        } catch (const AppError&) {
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, sliceMs);
    }
    return false;
}

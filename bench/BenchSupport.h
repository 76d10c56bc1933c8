#pragma once

// What the benchmarks share: the 100-field page and its script, medians, event-loop waits and
// the data files they start from.
#include "AppError.h"
#include "DateText.h"
#include "IniFileStore.h"
#include "PumpUntil.h"
#include "ValueStore.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <functional>
#include <vector>

namespace bench {

// A file of bench/pages.
inline QByteArray page(const char* name)
{
    QFile file(QStringLiteral(TOLVANE_BENCH_PAGES "/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    return file.readAll();
}

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

inline double medianMs(int runs, const std::function<void()>& run)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        run();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    return median(times);
}

// What a user has entered once into every field of form100.html.
inline void rememberHundredFields(ValueStore& values, const QString& url)
{
    for (int i = 0; i < 40; ++i)
        values.SetValue(url, QStringLiteral("t%1").arg(i), QStringLiteral("value %1").arg(i));
    for (int i = 0; i < 10; ++i) {
        values.SetValue(url, QStringLiteral("r%1_b").arg(i), QStringLiteral("True"));
        values.SetValue(url, QStringLiteral("s%1").arg(i), QStringLiteral("y"));
        values.SetValue(url, QStringLiteral("a%1").arg(i), QStringLiteral("two\r\nlines"));
    }
    for (int i = 0; i < 20; ++i)
        values.SetValue(url, QStringLiteral("c%1_yes").arg(i), QStringLiteral("True"));
}

// Shortcuts with a daily reminder started 30 years ago; markVisit is called for every other one.
inline void writeShortcuts(IniFileStore& ini, const QString& file, int count,
                           const std::function<void(const QString&)>& markVisit)
{
    const QString start = DateText::fromDate(QDate::currentDate().addYears(-30));
    for (int n = 1; n <= count; ++n) {
        const QString section = QStringLiteral("Shortcut%1").arg(n);
        const QString url = QStringLiteral("http://contest%1.example/enter").arg(n);
        ini.writeEntry(file, section, QStringLiteral("Title"),
                       QStringLiteral("Contest number %1 of the year").arg(n));
        ini.writeEntry(file, section, QStringLiteral("URL"), url);
        ini.writeEntry(file, section, QStringLiteral("Remind"), QStringLiteral("1"));
        ini.writeEntry(file, section, QStringLiteral("StartDate"), start);
        if (n % 2)
            markVisit(url);
    }
    ini.writeEntry(file, QStringLiteral("Shortcuts"), QStringLiteral("Max"),
                   QString::number(count));
}

} // namespace bench

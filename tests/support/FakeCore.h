#pragma once

// Test doubles for what the logic needs of the machine: a settable clock, pre-answered message
// boxes, an in-memory settings store, a message pump the test runs, fixed text widths.

#include "AppError.h"
#include "Clock.h"
#include "MessageBoxes.h"
#include "MessagePump.h"
#include "SettingsStore.h"
#include "TextMetrics.h"

#include <QMap>
#include <QStringList>
#include <functional>
#include <vector>

class FakeClock : public Clock
{
public:
    QDateTime current = QDateTime(QDate(2026, 11, 23), QTime(12, 0, 0));
    qint64 monotonic = 0;
    QDateTime now() const override { return current; }
    qint64 monotonicMs() const override { return monotonic; }
    void advanceMs(qint64 ms)
    {
        current = current.addMSecs(ms);
        monotonic += ms;
    }
};

class FakeMessageBoxes : public MessageBoxes
{
public:
    struct Shown
    {
        QString text;
        MsgButtons buttons;
        MsgIcon icon;
        QString title;
    };
    std::vector<Shown> shown;
    MsgAnswer nextAnswer = MsgAnswer::Ok;

    MsgAnswer show(const QString& text, MsgButtons buttons, MsgIcon icon,
                   const QString& title) override
    {
        shown.push_back({text, buttons, icon, title});
        return nextAnswer;
    }
};

class FakeSettings : public SettingsStore
{
public:
    QMap<QString, QString> values; // "Section/Key"
    QStringList failingKeys;

    QString GetSetting(const QString& section, const QString& key,
                       const QString& defaultValue) override
    {
        return values.value(section + QLatin1Char('/') + key, defaultValue);
    }
    void SaveSetting(const QString& section, const QString& key, const QString& value) override
    {
        if (failingKeys.contains(key))
            throw AppError(ErrorNumber::PathNotFound, QStringLiteral("Path not found"));
        values.insert(section + QLatin1Char('/') + key, value);
    }
};

// A message pump whose turn runs what tests have queued for it, as events arriving meanwhile.
class ImmediatePump : public MessagePump
{
public:
    std::vector<std::function<void()>> pending;
    int turns = 0;
    void DoEvents() override
    {
        ++turns;
        auto now = std::move(pending);
        pending.clear();
        for (auto& action : now)
            action();
    }
};

// Every character is 100 twips wide.
class FakeTextMetrics : public TextMetrics
{
public:
    int TextWidth(const QString& text, double) const override
    {
        return 100 * static_cast<int>(text.size());
    }
};

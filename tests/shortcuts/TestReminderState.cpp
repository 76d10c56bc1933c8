// Which icon a shortcut row shows: expired, due, or its reminder kind.
#include "AppError.h"
#include "ReminderState.h"

#include <gtest/gtest.h>

namespace {
QDate d(const char* iso)
{
    return iso ? QDate::fromString(QString::fromLatin1(iso), Qt::ISODate) : QDate();
}

TEST(ReminderState, WorkedExamples)
{
    struct Case
    {
        const char* start;
        int reminder;
        const char* visit;
        const char* end;
        const char* today;
        std::optional<int> icon;
    } cases[] = {
        {"2005-03-01", 1, "2005-03-09", nullptr, "2005-03-10", StateIcon::Due},
        {"2005-03-01", 1, "2005-03-10", nullptr, "2005-03-10", StateIcon::Daily},
        {"2005-03-01", 2, "2005-03-03", nullptr, "2005-03-08", StateIcon::Weekly},
        {"2005-03-01", 2, "2005-03-03", nullptr, "2005-03-09", StateIcon::Due},
        {"2005-03-01", 2, "2005-03-09", nullptr, "2005-03-14", StateIcon::Weekly},
        {"2005-03-01", 2, "2005-03-08", nullptr, "2005-03-09", StateIcon::Due},
        {"2005-01-31", 3, "2005-02-27", nullptr, "2005-03-01", StateIcon::Due},
        {"2005-01-31", 3, "2005-03-01", nullptr, "2005-03-15", StateIcon::Monthly},
        {"2005-03-09", 1, nullptr, nullptr, "2005-03-10", StateIcon::Daily},
        {"2005-03-08", 1, nullptr, nullptr, "2005-03-10", StateIcon::Due},
        {"2005-03-20", 2, nullptr, nullptr, "2005-03-10", StateIcon::Weekly},
        {"2005-03-01", 0, "2005-03-02", nullptr, "2005-06-10", std::nullopt},
        {"2005-03-01", 1, "2005-03-02", "2005-03-09", "2005-03-10", StateIcon::Expired},
        {"2005-03-01", 1, "2005-03-09", "2005-03-10", "2005-03-10", StateIcon::Due},
        {nullptr, 1, nullptr, nullptr, "2005-03-10", std::nullopt},
        {nullptr, 1, nullptr, "2005-03-01", "2005-03-10", StateIcon::Expired},
        {"2005-03-01", -2, nullptr, nullptr, "2005-03-10", std::nullopt},
        {"2004-01-31", 3, "2004-03-01", nullptr, "2004-03-30", StateIcon::Monthly},
        {"2004-01-31", 3, "2004-02-28", nullptr, "2004-03-01", StateIcon::Due},
        // Visited on a monthly reminder date: that date still counts, due the days after.
        {"2005-01-31", 3, "2005-02-28", nullptr, "2005-03-15", StateIcon::Due},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ShortcutState(d(c.start), c.reminder, d(c.visit), d(c.end), d(c.today)), c.icon)
            << (c.start ? c.start : "-") << " r" << c.reminder << " v" << (c.visit ? c.visit : "-")
            << " today " << c.today;
    }
}

TEST(ReminderState, OnlyTheFirstTenThousandReminderDatesCount)
{
    const QDate start(1996, 11, 23);
    const QDate today(2026, 11, 23);
    // The 10000th daily date is in 2024; a visit after it leaves the row undue.
    EXPECT_EQ(ShortcutState(start, 1, QDate(2025, 1, 1), QDate(), today), StateIcon::Daily);
    EXPECT_EQ(ShortcutState(start, 1, QDate(2024, 1, 1), QDate(), today), StateIcon::Due);
    EXPECT_EQ(ShortcutState(start, 3, QDate(2026, 11, 1), QDate(), today), StateIcon::Monthly);
}

TEST(ReminderState, AReminderAboveThreeHasNoInterval)
{
    EXPECT_THROW(ShortcutState(QDate(2005, 3, 1), 4, QDate(), QDate(), QDate(2005, 3, 10)),
                 AppError);
    EXPECT_EQ(ShortcutState(QDate(2005, 3, 1), 4, QDate(), QDate(2005, 3, 2), QDate(2005, 3, 10)),
              StateIcon::Expired);
}
} // namespace

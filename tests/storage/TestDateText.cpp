// Dates as the data files hold them, and as they are read back from files written elsewhere:
// by the Windows release in the user's locale, and by earlier versions in the US form.
#include "DateText.h"

#include <QLocale>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
struct LocaleScope
{
    explicit LocaleScope(const char* name)
    {
        QLocale::setDefault(QLocale(QString::fromLatin1(name)));
    }
    ~LocaleScope() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
};

QDateTime at(int y, int m, int d, int h = 0, int min = 0, int s = 0)
{
    return QDateTime(QDate(y, m, d), QTime(h, min, s));
}

TEST(DateText, WrittenFormsReadBackAsTheSameMomentInEveryLocale)
{
    const QDateTime moment = at(2026, 1, 5, 0, 7, 9);
    EXPECT_EQ(DateText::fromDateTime(moment), u"2026-01-05 00:07:09"_s);
    EXPECT_EQ(DateText::fromDate(QDate(2005, 12, 31)), u"2005-12-31"_s);
    for (const char* name :
         {"en_US", "en_GB", "fr_FR", "de_DE", "ja_JP", "en_AU", "ko_KR", "ar_EG"}) {
        const LocaleScope locale(name);
        for (int day = 1; day <= 12; ++day) {
            const QDateTime visit = at(2005, 3, day, 16, 7);
            EXPECT_EQ(DateText::toDateTime(DateText::fromDateTime(visit)), visit)
                << name << " " << day;
            EXPECT_EQ(DateText::toDateTime(DateText::fromDate(visit.date())),
                      visit.date().startOfDay())
                << name;
        }
    }
}

TEST(DateText, TextsOfTheWindowsReleaseAndOfEarlierVersionsReadAsTheyWereMeant)
{
    struct Case
    {
        const char* locale;
        const char* text;
        QDateTime expected; // invalid: no date
    } cases[] = {
        // The Windows release: short date, a blank, long time, as the locale writes them.
        {"en_US", "3/4/2005 4:07:00 PM", at(2005, 3, 4, 16, 7)},
        {"en_GB", "04/03/2005 16:07:00", at(2005, 3, 4, 16, 7)},
        {"en_GB", "14/03/2005", at(2005, 3, 14)},
        {"fr_FR", "04/03/2005 16:07:00", at(2005, 3, 4, 16, 7)},
        {"de_DE", "04.03.2005 16:07:00", at(2005, 3, 4, 16, 7)},
        {"de_DE", "14.03.05", at(2005, 3, 14)},
        {"ja_JP", "2005/03/04 16:07:00", at(2005, 3, 4, 16, 7)},
        {"ja_JP", "2005/03/04", at(2005, 3, 4)},
        {"en_AU", "4/03/2005 4:07:00 PM", at(2005, 3, 4, 16, 7)},
        {"ko_KR", "2005-03-04 \uc624\ud6c4 4:07:00", at(2005, 3, 4, 16, 7)},
        // Two-digit years as that platform read them.
        {"en_US", "3/4/29", at(2029, 3, 4)},
        {"en_US", "3/4/30", at(1930, 3, 4)},
        {"de_DE", "04.03.00", at(2000, 3, 4)},
        {"en_GB", "04/03/99 16:07", at(1999, 3, 4, 16, 7)},
        // Earlier versions wrote the US form in every locale; where it cannot be the locale's
        // text (no leading zeros, a 12-hour clock with seconds) it reads as they meant it.
        {"en_GB", "3/4/2005 4:07:00 PM", at(2005, 3, 4, 16, 7)},
        {"en_GB", "3/4/2005", at(2005, 3, 4)},
        {"de_DE", "3/4/2005 12:30:00 AM", at(2005, 3, 4, 0, 30)},
        {"fr_FR", "3/14/2005", at(2005, 3, 14)},
        {"ja_JP", "3/4/2005", at(2005, 3, 4)},
        // ISO 8601, with or without the T, with a zone.
        {"en_GB", "2005-03-04T16:07:00", at(2005, 3, 4, 16, 7)},
        {"en_US", "2005-03-04T16:07:00Z",
         QDateTime(QDate(2005, 3, 4), QTime(16, 7), Qt::UTC).toLocalTime()},
        // What the bar shows reads back.
        {"en_GB", "04/03/2005 4:07 pm", at(2005, 3, 4, 16, 7)},
        {"en_US", " 3/14/2005 ", at(2005, 3, 14)},
        // No dates.
        {"en_US", "2/30/2005", QDateTime()},
        {"en_GB", "30/02/2005", QDateTime()},
        {"en_US", "3/14/2005 13:00:00 PM", QDateTime()},
        {"en_US", "3/14/2005 4:07:00 PMX", QDateTime()},
        {"en_US", "3/14/2005 4:07:00 PM PM", QDateTime()},
        {"de_DE", "14.03.2005.2005.1.1.1", QDateTime()},
        {"en_US", "3/14/123456", QDateTime()},
        {"en_US", "soon 3/14/2005", QDateTime()},
        {"en_US", "never", QDateTime()},
        {"en_US", "", QDateTime()},
    };
    for (const Case& c : cases) {
        const LocaleScope locale(c.locale);
        const auto read = DateText::toDateTime(QString::fromUtf8(c.text));
        EXPECT_EQ(read.value_or(QDateTime()), c.expected) << c.locale << " " << c.text;
    }
}
} // namespace

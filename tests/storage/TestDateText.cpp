// Dates as the data files hold them, and as they are read back from files written elsewhere.
#include "DateText.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace {
TEST(DateText, StoredFormsRoundTripAndOtherFormsAreRead)
{
    const QDateTime moment(QDate(2026, 1, 5), QTime(0, 7, 9));
    EXPECT_EQ(DateText::fromDateTime(moment), QStringLiteral("1/5/2026 12:07:09 AM"));
    EXPECT_EQ(DateText::toDateTime(DateText::fromDateTime(moment)), moment);
    EXPECT_EQ(DateText::fromDate(QDate(2005, 12, 31)), QStringLiteral("12/31/2005"));

    struct Case
    {
        const char* text;
        QDateTime expected; // invalid: no date
    } cases[] = {
        {"3/14/2005 4:07:00 PM", QDateTime(QDate(2005, 3, 14), QTime(16, 7))},
        {"3/14/2005 12:00:00 PM", QDateTime(QDate(2005, 3, 14), QTime(12, 0))},
        {"3/14/2005 12:30:00 am", QDateTime(QDate(2005, 3, 14), QTime(0, 30))},
        {"03/04/2005 16:07", QDateTime(QDate(2005, 3, 4), QTime(16, 7))},
        {" 3/14/2005 ", QDate(2005, 3, 14).startOfDay()},
        {"2005-03-14T16:07:00", QDateTime(QDate(2005, 3, 14), QTime(16, 7))},
        {"2005-03-14", QDate(2005, 3, 14).startOfDay()},
        {"2/30/2005", QDateTime()},
        {"3/14/2005 13:00:00 PM", QDateTime()},
        {"3/14/2005 4:07:00 PMX", QDateTime()},
        {"never", QDateTime()},
        {"", QDateTime()},
    };
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    for (const Case& c : cases) {
        const auto read = DateText::toDateTime(QString::fromLatin1(c.text));
        EXPECT_EQ(read.value_or(QDateTime()), c.expected) << c.text;
    }
    QLocale::setDefault(QLocale::system());
}
} // namespace

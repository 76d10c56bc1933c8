#pragma once

#include <QDateTime>
#include <QLocale>
#include <QStringView>
#include <optional>

// Reading dates that other programs wrote as numbers: "14.03.2005 16:07:00", "2005/03/14",
// "3/14/05 4:07 PM". Parsed by hand because every row of the shortcut list reads three dates.
namespace DateReading {

enum class Order
{
    DayMonthYear,
    MonthDayYear,
    YearMonthDay
};

// The order of day, month and year in the locale's short date form.
Order orderOf(const QLocale& locale);

// Three numbers for the date, in the given order unless the first has four digits (then year
// first), then optionally hours, minutes and seconds with an AM/PM designator (English or the
// locale's). Two-digit years: 00-29 are 2000-2029, 30-99 are 1930-1999.
std::optional<QDateTime> numeric(QStringView text, Order order, const QLocale& locale);

// The form earlier versions of this program wrote in every locale: "M/D/YYYY" with an optional
// " h:mm:ss AM" (seconds and designator optional).
std::optional<QDateTime> earlierForm(QStringView text);

// True when the text cannot have come from the locale's own date-to-text conversion: a
// 12-hour time with seconds where the locale's clock has 24 hours, or a day or month without
// its leading zero where the locale writes one.
bool notWrittenBy(QStringView text, const QLocale& locale);

} // namespace DateReading

#pragma once

#include "HtmlElement.h"

#include <QString>

// How a field wants a date written: the order of day, month and year and what goes between
// them, told from its type, its placeholder or caption ("dd/mm/yyyy", "TT.MM.JJJJ") or the
// page's language; unknown where none of them says (an English page of no country).
struct DateFormat
{
    enum class Order
    {
        Unknown,
        DayMonthYear,
        MonthDayYear,
        YearMonthDay
    };
    Order order = Order::Unknown;
    QChar separator = QLatin1Char('/');
    bool known() const { return order != Order::Unknown; }
};

DateFormat DateFormatOf(const FieldDescription& field);

// "1990-05-17" from what was typed in a field of that format; empty when it is no date or its
// order cannot be told.
QString IsoDateFrom(const QString& typed, const DateFormat& format);
// The ISO date written as the field wants it; empty when its format is unknown.
QString DateIn(const QString& isoDate, const DateFormat& format);

// A month by its number or its name in the languages the field rules read: 1 to 12, or 0.
int MonthNumber(const QString& text);

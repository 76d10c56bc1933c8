#include "DateReading.h"

namespace {
// A date text cut into its numbers and its AM/PM designator.
struct Pieces
{
    static constexpr int Most = 6;
    int value[Most] = {};
    int digits[Most] = {};
    int count = 0;
    enum
    {
        None,
        Am,
        Pm
    } designator = None;
};

bool isSeparator(QChar c)
{
    static const QStringView separators =
        u"/-.:,T\u200e\u200f\u5e74\u6708\u65e5\u6642\u5206\u79d2\uc2dc\ubd84\ucd08";
    return c.isSpace() || separators.contains(c);
}

// Length of the designator at the start of rest, or 0.
qsizetype designatorAt(QStringView rest, const QString& designator)
{
    return !designator.isEmpty() && rest.startsWith(designator, Qt::CaseInsensitive)
               ? designator.size()
               : 0;
}

std::optional<Pieces> cut(QStringView text, const QLocale& locale)
{
    Pieces pieces;
    qsizetype at = 0;
    while (at < text.size()) {
        const QChar c = text[at];
        if (c.isDigit()) {
            if (pieces.count == Pieces::Most)
                return std::nullopt;
            int value = 0;
            int digits = 0;
            for (; at < text.size() && text[at].isDigit(); ++at, ++digits)
                value = value * 10 + text[at].digitValue();
            if (digits > 4)
                return std::nullopt;
            pieces.value[pieces.count] = value;
            pieces.digits[pieces.count++] = digits;
            continue;
        }
        if (isSeparator(c)) {
            ++at;
            continue;
        }
        const QStringView rest = text.mid(at);
        qsizetype length = 0;
        bool pm = false;
        for (const auto& [designator, isPm] : {std::pair{QStringLiteral("AM"), false},
                                               {QStringLiteral("PM"), true},
                                               {locale.amText(), false},
                                               {locale.pmText(), true}}) {
            if ((length = designatorAt(rest, designator)) > 0) {
                pm = isPm;
                break;
            }
        }
        if (length == 0 || pieces.designator != Pieces::None)
            return std::nullopt;
        pieces.designator = pm ? Pieces::Pm : Pieces::Am;
        at += length;
    }
    return pieces;
}

int fullYear(int value, int digits)
{
    if (digits == 4)
        return value;
    return value < 30 ? 2000 + value : 1900 + value;
}

bool twelveHourClock(const QLocale& locale)
{
    const QString format = locale.timeFormat(QLocale::LongFormat);
    return format.contains(QLatin1Char('A')) || format.contains(QLatin1Char('a'));
}
} // namespace

DateReading::Order DateReading::orderOf(const QLocale& locale)
{
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype day = format.indexOf(QLatin1Char('d'));
    const qsizetype month = format.indexOf(QLatin1Char('M'));
    const qsizetype year = format.indexOf(QLatin1Char('y'));
    if (year >= 0 && year < month && year < day)
        return Order::YearMonthDay;
    return month >= 0 && month < day ? Order::MonthDayYear : Order::DayMonthYear;
}

std::optional<QDateTime> DateReading::numeric(QStringView text, Order order, const QLocale& locale)
{
    const auto pieces = cut(text, locale);
    if (!pieces || (pieces->count != 3 && pieces->count != 5 && pieces->count != 6))
        return std::nullopt;
    if (pieces->digits[0] >= 3)
        order = Order::YearMonthDay;
    const int yearAt = order == Order::YearMonthDay ? 0 : 2;
    const int monthAt = order == Order::MonthDayYear ? 0 : 1;
    const int dayAt = order == Order::YearMonthDay ? 2 : (order == Order::MonthDayYear ? 1 : 0);
    const int yearDigits = pieces->digits[yearAt];
    if ((yearDigits != 2 && yearDigits != 4) || pieces->digits[monthAt] > 2 ||
        pieces->digits[dayAt] > 2)
        return std::nullopt;
    const QDate date(fullYear(pieces->value[yearAt], yearDigits), pieces->value[monthAt],
                     pieces->value[dayAt]);
    if (!date.isValid())
        return std::nullopt;
    if (pieces->count == 3)
        return pieces->designator == Pieces::None ? std::optional(date.startOfDay()) : std::nullopt;
    for (int i = 3; i < pieces->count; ++i) {
        if (pieces->digits[i] > 2)
            return std::nullopt;
    }
    int hour = pieces->value[3];
    if (pieces->designator != Pieces::None) {
        if (hour < 1 || hour > 12)
            return std::nullopt;
        hour = hour % 12 + (pieces->designator == Pieces::Pm ? 12 : 0);
    }
    const QTime time(hour, pieces->value[4], pieces->count == 6 ? pieces->value[5] : 0);
    if (!time.isValid())
        return std::nullopt;
    return QDateTime(date, time);
}

std::optional<QDateTime> DateReading::earlierForm(QStringView text)
{
    qsizetype at = 0;
    const auto number = [&](int minDigits, int maxDigits) -> std::optional<int> {
        int value = 0;
        int digits = 0;
        while (at < text.size() && text[at].isDigit() && digits < maxDigits) {
            value = value * 10 + text[at++].digitValue();
            ++digits;
        }
        return digits >= minDigits ? std::optional<int>(value) : std::nullopt;
    };
    const auto expect = [&](QChar c) {
        if (at < text.size() && text[at] == c) {
            ++at;
            return true;
        }
        return false;
    };
    const auto month = number(1, 2);
    if (!month || !expect(QLatin1Char('/')))
        return std::nullopt;
    const auto day = number(1, 2);
    if (!day || !expect(QLatin1Char('/')))
        return std::nullopt;
    const auto year = number(4, 4);
    const QDate date(year.value_or(0), *month, *day);
    if (!year || !date.isValid())
        return std::nullopt;
    if (at == text.size())
        return date.startOfDay();
    if (!expect(QLatin1Char(' ')))
        return std::nullopt;
    auto hour = number(1, 2);
    if (!hour || !expect(QLatin1Char(':')))
        return std::nullopt;
    const auto minute = number(2, 2);
    int second = 0;
    if (!minute)
        return std::nullopt;
    if (expect(QLatin1Char(':'))) {
        const auto seconds = number(2, 2);
        if (!seconds)
            return std::nullopt;
        second = *seconds;
    }
    if (expect(QLatin1Char(' '))) {
        const QStringView designator = text.mid(at);
        const bool pm = designator.compare(QLatin1String("PM"), Qt::CaseInsensitive) == 0;
        if (!pm && designator.compare(QLatin1String("AM"), Qt::CaseInsensitive) != 0)
            return std::nullopt;
        if (*hour < 1 || *hour > 12)
            return std::nullopt;
        hour = *hour % 12 + (pm ? 12 : 0);
        at = text.size();
    }
    const QTime time(*hour, *minute, second);
    if (at != text.size() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time);
}

bool DateReading::notWrittenBy(QStringView text, const QLocale& locale)
{
    const auto pieces = cut(text, locale);
    if (!pieces || pieces->count < 3)
        return false;
    if (pieces->count == 6 && pieces->designator != Pieces::None && !twelveHourClock(locale))
        return true;
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    const bool padded =
        format.contains(QLatin1String("dd")) && format.contains(QLatin1String("MM"));
    return padded && orderOf(locale) != Order::YearMonthDay &&
           (pieces->digits[0] == 1 || pieces->digits[1] == 1);
}

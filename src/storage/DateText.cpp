#include "DateText.h"

#include <QLocale>

#include <algorithm>

namespace {
const QString StoredDateTime = QStringLiteral("M/d/yyyy h:mm:ss AP");
const QString StoredDate = QStringLiteral("M/d/yyyy");

QString shortDateFormatOf(const QLocale& locale)
{
    QString format = locale.dateFormat(QLocale::ShortFormat);
    // A two-digit year is ambiguous across centuries; show all four digits.
    if (!format.contains(QLatin1String("yyyy")))
        format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    return format;
}

// The stored forms, read by hand: this runs for every row of the shortcut list, and Qt's
// format-driven parser is slow. "M/D/YYYY", optionally " h:mm", ":ss" and " AM"/" PM".
std::optional<QDateTime> parseStored(QStringView text)
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
} // namespace

QString DateText::fromDateTime(const QDateTime& value)
{
    return QLocale::c().toString(value, StoredDateTime);
}

QString DateText::fromDate(const QDate& value)
{
    return QLocale::c().toString(value, StoredDate);
}

std::optional<QDateTime> DateText::toDateTime(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    if (const auto stored = parseStored(trimmed))
        return stored;
    // Nothing without a digit is a date ("never").
    if (std::none_of(trimmed.begin(), trimmed.end(), [](QChar c) { return c.isDigit(); }))
        return std::nullopt;
    if (const QDateTime iso = QDateTime::fromString(trimmed, Qt::ISODate); iso.isValid())
        return iso.toLocalTime();
    if (const QDate iso = QDate::fromString(trimmed, Qt::ISODate); iso.isValid())
        return iso.startOfDay();
    const QLocale user;
    // What display() shows reads back too.
    for (const QString& format : {shortDateFormatOf(user) + QStringLiteral(" h:mm AP"), shortDateFormatOf(user)}) {
        if (const QDateTime value = user.toDateTime(trimmed, format); value.isValid())
            return value;
    }
    for (const auto form : {QLocale::ShortFormat, QLocale::LongFormat}) {
        if (const QDateTime value = user.toDateTime(trimmed, form); value.isValid())
            return value;
        if (const QDate date = user.toDate(trimmed, form); date.isValid())
            return date.startOfDay();
    }
    return std::nullopt;
}

QString DateText::shortDateFormat()
{
    return shortDateFormatOf(QLocale());
}

QString DateText::display(const QDateTime& value)
{
    const QLocale locale;
    const QTime time = value.time();
    const int hour12 = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    const QString designator = time.hour() < 12 ? locale.amText() : locale.pmText();
    return locale.toString(value.date(), shortDateFormatOf(locale)) + QLatin1Char(' ') +
           QStringLiteral("%1:%2 %3").arg(hour12).arg(time.minute(), 2, 10, QLatin1Char('0')).arg(designator);
}

#include "DateText.h"

#include <QLocale>

namespace {
const QString StoredDateTime = QStringLiteral("M/d/yyyy h:mm:ss AP");
const QString StoredDate = QStringLiteral("M/d/yyyy");

QString shortDateFormat(const QLocale& locale)
{
    QString format = locale.dateFormat(QLocale::ShortFormat);
    // A two-digit year is ambiguous across centuries; show all four digits.
    if (!format.contains(QLatin1String("yyyy")))
        format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    return format;
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
    const QLocale c = QLocale::c();
    for (const QString& format : {StoredDateTime, QStringLiteral("M/d/yyyy h:mm AP"),
                                  QStringLiteral("M/d/yyyy H:mm:ss"), QStringLiteral("M/d/yyyy H:mm")}) {
        const QDateTime value = c.toDateTime(trimmed, format);
        if (value.isValid())
            return value;
    }
    if (const QDate date = c.toDate(trimmed, StoredDate); date.isValid())
        return date.startOfDay();
    if (const QDateTime iso = QDateTime::fromString(trimmed, Qt::ISODate); iso.isValid())
        return iso.toLocalTime();
    if (const QDate iso = QDate::fromString(trimmed, Qt::ISODate); iso.isValid())
        return iso.startOfDay();
    const QLocale user;
    // What display() shows reads back too.
    for (const QString& format : {shortDateFormat(user) + QStringLiteral(" h:mm AP"), shortDateFormat(user)}) {
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

QString DateText::display(const QDateTime& value)
{
    const QLocale locale;
    const QTime time = value.time();
    const int hour12 = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    const QString designator = time.hour() < 12 ? locale.amText() : locale.pmText();
    return locale.toString(value.date(), shortDateFormat(locale)) + QLatin1Char(' ') +
           QStringLiteral("%1:%2 %3").arg(hour12).arg(time.minute(), 2, 10, QLatin1Char('0')).arg(designator);
}

#include "DateText.h"

#include "DateReading.h"

#include <QLocale>

#include <algorithm>

namespace {
const QString StoredDateTime = QStringLiteral("yyyy-MM-dd HH:mm:ss");
const QString StoredDate = QStringLiteral("yyyy-MM-dd");

QString shortDateFormatOf(const QLocale& locale)
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
    const QLocale user;
    // The locale's numeric form is what the Windows release wrote. The form earlier versions
    // of this program wrote in every locale wins where the locale cannot read the text, reads it
    // as the same date, or would never have written it so.
    const auto local = DateReading::numeric(trimmed, DateReading::orderOf(user), user);
    if (const auto earlier = DateReading::earlierForm(trimmed)) {
        if (!local || *local == *earlier || DateReading::notWrittenBy(trimmed, user))
            return earlier;
    }
    if (local)
        return local;
    // Nothing without a digit is a date ("never").
    if (std::none_of(trimmed.begin(), trimmed.end(), [](QChar c) { return c.isDigit(); }))
        return std::nullopt;
    if (const QDateTime iso = QDateTime::fromString(trimmed, Qt::ISODate); iso.isValid())
        return iso.toLocalTime();
    // What display() shows reads back too.
    for (const QString& format :
         {shortDateFormatOf(user) + QStringLiteral(" h:mm AP"), shortDateFormatOf(user)}) {
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
           QStringLiteral("%1:%2 %3")
               .arg(hour12)
               .arg(time.minute(), 2, 10, QLatin1Char('0'))
               .arg(designator);
}

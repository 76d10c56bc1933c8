#include "DateFormats.h"

#include "MeaningRules.h"

#include <QDate>
#include <QRegularExpression>

namespace {
using Order = DateFormat::Order;

// One letter group of a written format: 'd', 'm' or 'y' ("jj" is a French day, "jjjj" a German
// or Dutch year, "aaaa" a Spanish or Portuguese one, "tt" a German day, "gg" an Italian one).
char partOf(const QString& group)
{
    const QChar first = group[0];
    if (first == QLatin1Char('y') || first == QLatin1Char('a') ||
        (first == QLatin1Char('j') && group.size() >= 3))
        return 'y';
    if (first == QLatin1Char('m'))
        return 'm';
    return 'd';
}

DateFormat fromWritten(const QString& text)
{
    static const QRegularExpression written(QStringLiteral(
        "(?<![a-z])([dmyjtga]{1,4})([./ -])([dmyjtga]{1,4})\\2([dmyjtga]{1,4})(?![a-z])"));
    const auto match = written.match(text.toLower());
    if (!match.hasMatch())
        return {};
    const QString parts = QString(QLatin1Char(partOf(match.captured(1)))) +
                          QLatin1Char(partOf(match.captured(3))) +
                          QLatin1Char(partOf(match.captured(4)));
    const QChar separator = match.captured(2).at(0);
    if (parts == QLatin1String("dmy"))
        return {Order::DayMonthYear, separator};
    if (parts == QLatin1String("mdy"))
        return {Order::MonthDayYear, separator};
    if (parts == QLatin1String("ymd"))
        return {Order::YearMonthDay, separator};
    return {};
}

DateFormat fromLanguage(const QString& language)
{
    const QString lang = language.toLower().replace(QLatin1Char('_'), QLatin1Char('-'));
    const QString base = lang.section(QLatin1Char('-'), 0, 0);
    const QString country = lang.section(QLatin1Char('-'), 1, 1);
    if (base == QLatin1String("en")) {
        // An English page of no country could be American or British: unknown.
        if (country == QLatin1String("us"))
            return {Order::MonthDayYear, QLatin1Char('/')};
        return country.isEmpty() ? DateFormat{} : DateFormat{Order::DayMonthYear, QLatin1Char('/')};
    }
    if (base == QLatin1String("de"))
        return {Order::DayMonthYear, QLatin1Char('.')};
    if (base == QLatin1String("nl"))
        return {Order::DayMonthYear, QLatin1Char('-')};
    if (base == QLatin1String("fr") || base == QLatin1String("es") || base == QLatin1String("it") ||
        base == QLatin1String("pt"))
        return {Order::DayMonthYear, QLatin1Char('/')};
    return {};
}
} // namespace

DateFormat DateFormatOf(const FieldDescription& field)
{
    if (field.inputType.compare(QLatin1String("date"), Qt::CaseInsensitive) == 0)
        return {Order::YearMonthDay, QLatin1Char('-')};
    for (const QString& shown : {field.placeholder, field.label, field.ariaLabel}) {
        if (const DateFormat format = fromWritten(shown.left(200)); format.known())
            return format;
    }
    return fromLanguage(field.language.left(20));
}

QString IsoDateFrom(const QString& typed, const DateFormat& format)
{
    static const QRegularExpression numbers(
        QStringLiteral("^\\s*(\\d{1,4})\\s*[./ -]\\s*(\\d{1,2})\\s*[./ -]\\s*(\\d{1,4})\\s*$"));
    const auto match = numbers.match(typed);
    if (!match.hasMatch())
        return {};
    const int a = match.captured(1).toInt();
    const int b = match.captured(2).toInt();
    const int c = match.captured(3).toInt();
    QDate date;
    if (match.captured(1).size() == 4) {
        date = QDate(a, b, c);
    } else if (match.captured(3).size() == 4) {
        Order order = format.order;
        // Where the field says nothing, only a day over 12 tells the order.
        if (order != Order::DayMonthYear && order != Order::MonthDayYear)
            order = a > 12 && b <= 12   ? Order::DayMonthYear
                    : b > 12 && a <= 12 ? Order::MonthDayYear
                                        : Order::Unknown;
        if (order == Order::DayMonthYear)
            date = QDate(c, b, a);
        else if (order == Order::MonthDayYear)
            date = QDate(c, a, b);
    }
    if (!date.isValid() || date.year() < 1900 || date > QDate::currentDate())
        return {};
    return date.toString(Qt::ISODate);
}

QString DateIn(const QString& isoDate, const DateFormat& format)
{
    const QDate date = QDate::fromString(isoDate.trimmed(), Qt::ISODate);
    if (!date.isValid() || !format.known())
        return {};
    const QString day = QStringLiteral("%1").arg(date.day(), 2, 10, QLatin1Char('0'));
    const QString month = QStringLiteral("%1").arg(date.month(), 2, 10, QLatin1Char('0'));
    const QString year = QString::number(date.year());
    const QChar s = format.separator;
    switch (format.order) {
    case Order::DayMonthYear:
        return day + s + month + s + year;
    case Order::MonthDayYear:
        return month + s + day + s + year;
    default:
        return year + s + month + s + day;
    }
}

int MonthNumber(const QString& text)
{
    static const QStringList names[] = {
        {"january", "jan", "janvier", "januar", "enero", "gennaio", "januari", "janeiro"},
        {"february", "feb", "fevrier", "februar", "febrero", "febbraio", "februari", "fevereiro"},
        {"march", "mar", "mars", "marz", "marzo", "maart", "marco"},
        {"april", "apr", "avril", "abril", "aprile"},
        {"may", "mai", "mayo", "maggio", "mei", "maio"},
        {"june", "jun", "juin", "juni", "junio", "giugno", "junho"},
        {"july", "jul", "juillet", "juli", "julio", "luglio", "julho"},
        {"august", "aug", "aout", "agosto", "augustus"},
        {"september", "sep", "sept", "septembre", "septiembre", "settembre", "setembro"},
        {"october", "oct", "octobre", "oktober", "octubre", "ottobre", "outubro"},
        {"november", "nov", "novembre", "noviembre", "novembro"},
        {"december", "dec", "decembre", "dezember", "diciembre", "dicembre", "dezembro"},
    };
    const QString plain = MeaningRules::plainWords(text);
    bool isNumber = false;
    if (const int number = plain.toInt(&isNumber); isNumber)
        return number >= 1 && number <= 12 ? number : 0;
    for (int month = 0; month < 12; ++month) {
        if (names[month].contains(plain))
            return month + 1;
    }
    return 0;
}

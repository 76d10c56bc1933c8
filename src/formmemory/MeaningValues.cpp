#include "MeaningValues.h"

#include "DateFormats.h"
#include "MeaningRules.h"
#include "PlaceNames.h"
#include "ValueChecks.h"

#include <QRegularExpression>

namespace {
QStringList nameWords(const QString& fullName)
{
    return fullName.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString digitsOf(const QString& text)
{
    QString digits;
    for (const QChar c : text) {
        if (c.isDigit())
            digits += QChar(QLatin1Char('0' + c.digitValue()));
    }
    return digits;
}

bool isNumber(const QString& text)
{
    return !text.trimmed().isEmpty() && digitsOf(text).size() == text.trimmed().size();
}

bool sameChoice(Meaning meaning, const QString& remembered, const QString& offered)
{
    const QString a = MeaningRules::plainWords(remembered);
    const QString b = MeaningRules::plainWords(offered);
    if (a.isEmpty() || b.isEmpty())
        return false;
    if (a == b || (isNumber(a) && isNumber(b) && a.toLongLong() == b.toLongLong()))
        return true;
    switch (meaning) {
    case Meaning::Region:
        return !PlaceNames::regionCode(a).isEmpty() &&
               PlaceNames::regionCode(a) == PlaceNames::regionCode(b);
    case Meaning::Country:
        return !PlaceNames::countryCode(a).isEmpty() &&
               PlaceNames::countryCode(a) == PlaceNames::countryCode(b);
    case Meaning::BirthMonth:
        return MonthNumber(a) != 0 && MonthNumber(a) == MonthNumber(b);
    default:
        return false;
    }
}

// "1990-05-17": the parts of an ISO date, or an empty list.
QStringList isoDateParts(const QString& date)
{
    static const QRegularExpression iso(QStringLiteral("^\\s*(\\d{4})-(\\d{2})-(\\d{2})\\s*$"));
    const auto match = iso.match(date);
    return match.hasMatch() ? QStringList{match.captured(1), match.captured(2), match.captured(3)}
                            : QStringList{};
}
} // namespace

QString MeaningValues::valueFor(Meaning meaning, const FieldDescription& field,
                                bool multiLine) const
{
    if (meaning == Meaning::None)
        return {};
    if (meaning == Meaning::BirthDate) {
        QString date = stored(Meaning::BirthDate);
        if (date.trimmed().isEmpty())
            date = madeFor(Meaning::BirthDate);
        return DateIn(date, DateFormatOf(field));
    }
    const QString own = stored(meaning);
    const QString value = own.trimmed().isEmpty() ? madeFor(meaning) : own;
    if (multiLine || !value.contains(QLatin1Char('\n')))
        return value;
    QStringList lines = value.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (QString& line : lines)
        line = line.trimmed();
    return lines.join(QStringLiteral(", "));
}

QStringList MeaningValues::streetParts() const
{
    static const QRegularExpression numberFirst(
        QStringLiteral("^\\s*(\\d+[a-zA-Z]?)[,\\s]+(\\D.*?)\\s*$"));
    static const QRegularExpression numberLast(
        QStringLiteral("^\\s*(\\D.*?)[,\\s]+(\\d+[a-zA-Z]?)\\s*$"));
    QString line = stored(Meaning::AddressLine1);
    if (line.trimmed().isEmpty())
        line = stored(Meaning::StreetAddress).section(QLatin1Char('\n'), 0, 0);
    if (const auto first = numberFirst.match(line); first.hasMatch())
        return {first.captured(1), first.captured(2)};
    if (const auto last = numberLast.match(line); last.hasMatch())
        return {last.captured(2), last.captured(1)};
    return {};
}

QString MeaningValues::nationalDigits() const
{
    const QString phone = stored(Meaning::Phone);
    QString digits = digitsOf(phone);
    const QString countryCode = phone.trimmed().startsWith(QLatin1Char('+'))
                                    ? digitsOf(stored(Meaning::PhoneCountryCode))
                                    : QString();
    if (!countryCode.isEmpty() && digits.startsWith(countryCode))
        digits.remove(0, countryCode.size());
    if (digits.size() == 11 && digits.startsWith(QLatin1Char('1')))
        digits.remove(0, 1);
    return digits.size() == 10 ? digits : QString();
}

QString MeaningValues::madeFor(Meaning meaning) const
{
    const QStringList full = nameWords(stored(Meaning::FullName));
    const QStringList address =
        stored(Meaning::StreetAddress).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QStringList birth = isoDateParts(stored(Meaning::BirthDate));
    switch (meaning) {
    case Meaning::GivenName:
        return full.size() >= 2 ? QStringList(full.mid(0, full.size() - 1)).join(QLatin1Char(' '))
                                : QString();
    case Meaning::FamilyName:
        return full.size() >= 2 ? full.last() : QString();
    case Meaning::FullName: {
        const QString given = stored(Meaning::GivenName).trimmed();
        const QString family = stored(Meaning::FamilyName).trimmed();
        return given.isEmpty() || family.isEmpty() ? QString() : given + QLatin1Char(' ') + family;
    }
    case Meaning::Phone: {
        const QString area = digitsOf(stored(Meaning::PhoneAreaCode));
        QString local = digitsOf(stored(Meaning::PhoneLocal));
        if (local.isEmpty())
            local = digitsOf(stored(Meaning::PhoneLocalPrefix)) +
                    digitsOf(stored(Meaning::PhoneLocalSuffix));
        return area.isEmpty() || local.size() < 7 ? QString() : area + local;
    }
    case Meaning::PhoneCountryCode: {
        static const QRegularExpression leading(QStringLiteral("^\\s*\\+(\\d{1,3})[\\s.-]"));
        return leading.match(stored(Meaning::Phone)).captured(1);
    }
    case Meaning::PhoneAreaCode:
        return nationalDigits().left(3);
    case Meaning::PhoneLocalPrefix:
        return nationalDigits().mid(3, 3);
    case Meaning::PhoneLocalSuffix:
        return nationalDigits().mid(6);
    case Meaning::PhoneLocal:
        return nationalDigits().mid(3);
    case Meaning::StreetAddress: {
        QStringList lines;
        for (const Meaning line :
             {Meaning::AddressLine1, Meaning::AddressLine2, Meaning::AddressLine3}) {
            if (!stored(line).trimmed().isEmpty())
                lines << stored(line).trimmed();
        }
        return stored(Meaning::AddressLine1).trimmed().isEmpty() ? QString()
                                                                 : lines.join(QLatin1Char('\n'));
    }
    case Meaning::AddressLine1:
    case Meaning::AddressLine2:
    case Meaning::AddressLine3: {
        const int line = meaning == Meaning::AddressLine1   ? 0
                         : meaning == Meaning::AddressLine2 ? 1
                                                            : 2;
        return line < address.size() ? address[line].trimmed() : QString();
    }
    case Meaning::BirthDate: {
        const QString year = digitsOf(stored(Meaning::BirthYear));
        const int month = MonthNumber(stored(Meaning::BirthMonth));
        const int day = digitsOf(stored(Meaning::BirthDay)).toInt();
        if (year.size() != 4 || month == 0 || day == 0)
            return {};
        return QStringLiteral("%1-%2-%3")
            .arg(year)
            .arg(month, 2, 10, QLatin1Char('0'))
            .arg(day, 2, 10, QLatin1Char('0'));
    }
    case Meaning::HouseNumber:
        return streetParts().value(0);
    case Meaning::StreetName:
        return streetParts().value(1);
    case Meaning::BirthYear:
        return birth.value(0);
    case Meaning::BirthMonth:
        return birth.value(1);
    case Meaning::BirthDay:
        return birth.value(2);
    default:
        return {};
    }
}

int MatchingOption(Meaning meaning, const QString& value,
                   const QList<std::pair<QString, QString>>& options)
{
    if (value.trimmed().isEmpty())
        return -1;
    // Value first on every option, then text: "IL" is a value more often than a text.
    for (const bool byText : {false, true}) {
        for (qsizetype index = 0; index < options.size(); ++index) {
            const auto& [optionValue, optionText] = options[index];
            if (sameChoice(meaning, value, byText ? optionText : optionValue))
                return static_cast<int>(index);
        }
    }
    return -1;
}

QString ChosenOptionText(const QList<std::pair<QString, QString>>& options, int selectedIndex,
                         const QString& value)
{
    if (selectedIndex < 0 || selectedIndex >= options.size())
        return {};
    const QString text = options[selectedIndex].second.simplified();
    if (IsPlaceholderChoice(value, text))
        return {};
    return text.isEmpty() ? value : text;
}

#include "ValueChecks.h"

#include "DateFormats.h"
#include "MeaningRules.h"
#include "PlaceNames.h"

#include <QDate>
#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace {
// A value is longer than this only in a text area of a whole address.
constexpr qsizetype LongestValue = 400;

bool fits(const char* pattern, const QString& value)
{
    return QRegularExpression(QString::fromUtf8(pattern),
                              QRegularExpression::UseUnicodePropertiesOption)
        .match(value)
        .hasMatch();
}

int digits(const QString& value)
{
    return static_cast<int>(
        std::count_if(value.begin(), value.end(), [](QChar c) { return c.isDigit(); }));
}

bool hasLetters(const QString& value)
{
    return std::any_of(value.begin(), value.end(), [](QChar c) { return c.isLetter(); });
}

int wordCount(const QString& value)
{
    return static_cast<int>(value.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts).size());
}

// A person's name: letters, blanks, hyphens, apostrophes and dots only.
bool isPersonName(const QString& value, int leastWords, int mostWords)
{
    const int count = wordCount(value);
    return count >= leastWords && count <= mostWords &&
           fits("^[\\p{L}\\p{M} .'\u2019-]+$", value) && hasLetters(value);
}

bool isPlaceText(const QString& value)
{
    return hasLetters(value) && !value.contains(QLatin1Char('@')) &&
           digits(value) * 2 < value.size();
}

bool plausible(Meaning meaning, const QString& value)
{
    switch (meaning) {
    case Meaning::Email:
        return fits("^[^@\\s]+@[^@\\s]+\\.[^@\\s]+$", value);
    case Meaning::Phone:
        return fits("^\\+?[0-9 ().\\-/]+$", value) && digits(value) >= 7 && digits(value) <= 15;
    case Meaning::PhoneCountryCode:
        return fits("^\\+?[0-9]{1,3}$", value);
    case Meaning::PhoneAreaCode:
        return fits("^\\(?[0-9]{2,5}\\)?$", value);
    case Meaning::PhoneLocalPrefix:
        return fits("^[0-9]{3}$", value);
    case Meaning::PhoneLocalSuffix:
        return fits("^[0-9]{4}$", value);
    case Meaning::PhoneLocal:
        return fits("^[0-9 .\\-]+$", value) && digits(value) >= 5 && digits(value) <= 10;
    case Meaning::PhoneExtension:
        return fits("^[0-9]{1,6}$", value);
    case Meaning::GivenName:
    case Meaning::FamilyName:
        return isPersonName(value, 1, 4);
    case Meaning::AdditionalName:
        return isPersonName(value, 1, 2);
    case Meaning::FullName:
        return isPersonName(value, 2, 6);
    case Meaning::Honorific:
        return MeaningRules::isHonorific(value);
    case Meaning::Organization:
        return hasLetters(value) && !value.contains(QLatin1Char('@'));
    case Meaning::StreetAddress:
    case Meaning::AddressLine1:
        // The state or the country in a street box is not the street.
        return hasLetters(value) && !value.contains(QLatin1Char('@')) &&
               !PlaceNames::isRegion(value) && !PlaceNames::isCountry(value);
    case Meaning::AddressLine2:
    case Meaning::AddressLine3:
        return !value.contains(QLatin1Char('@')) && !PlaceNames::isRegion(value) &&
               !value.contains(QLatin1Char('\n'));
    case Meaning::StreetName:
        return isPlaceText(value) && !PlaceNames::isRegion(value);
    case Meaning::HouseNumber:
        return value.size() <= 10 && digits(value) > 0 && !value.contains(QLatin1Char('@'));
    case Meaning::City:
        return isPlaceText(value) && !value.contains(QLatin1Char('\n'));
    case Meaning::Region:
    case Meaning::Country:
        return hasLetters(value) && digits(value) == 0 && !value.contains(QLatin1Char('@'));
    case Meaning::PostalCode:
        return fits("^[A-Za-z0-9 \\-]{3,10}$", value) && digits(value) > 0;
    case Meaning::BirthDay:
        return IsNumberBetween(value, 1, 31);
    case Meaning::BirthMonth:
        return MonthNumber(value) != 0;
    case Meaning::BirthYear:
        return IsNumberBetween(value, 1900, QDate::currentDate().year());
    default:
        return false;
    }
}
} // namespace

QString ValueToRemember(Meaning meaning, const QString& value, const FieldDescription& field)
{
    const QString trimmed = value.trimmed();
    if (trimmed.isEmpty() || trimmed.size() > LongestValue)
        return {};
    if (meaning == Meaning::BirthDate)
        return IsoDateFrom(trimmed, DateFormatOf(field));
    // Only a street address spans lines.
    if (meaning != Meaning::StreetAddress && trimmed.contains(QLatin1Char('\n')))
        return {};
    return plausible(meaning, trimmed) ? trimmed : QString();
}

bool IsPlaceholderChoice(const QString& value, const QString& text)
{
    static const QRegularExpression asks(
        QStringLiteral("^(?:please )?(?:select|choose|pick)|^(?:bitte "
                       ")?(?:wahlen|auswahlen)|^(?:veuillez )?(?:choisir|selectionner)|"
                       "^(?:seleccion\\w*|elija|elige|escoja|selezion\\w*|scegli|kies|selecteer|"
                       "maak een keuze|selecion\\w*|escolh\\w*)|"
                       "^$"));
    return value.trimmed().isEmpty() || asks.match(MeaningRules::plainWords(text)).hasMatch();
}

bool IsNumberBetween(const QString& text, int from, int to)
{
    bool ok = false;
    const int number = text.trimmed().toInt(&ok);
    return ok && number >= from && number <= to;
}

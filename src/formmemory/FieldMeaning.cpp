#include "FieldMeaning.h"

#include "AppError.h"

#include "MeaningRules.h"
#include "PlaceNames.h"
#include "ValueChecks.h"

#include <QHash>

namespace {
// Page texts are the page's to choose; what a field's caption says fits in far less.
constexpr qsizetype LongestText = 200;

struct Token
{
    const char* key;
    Meaning meaning;
};

// The standard autofill tokens, the key of each meaning first; and keys of our own where no
// token exists.
constexpr Token Tokens[] = {
    {"honorific-prefix", Meaning::Honorific},
    {"given-name", Meaning::GivenName},
    {"additional-name", Meaning::AdditionalName},
    {"family-name", Meaning::FamilyName},
    {"name", Meaning::FullName},
    {"email", Meaning::Email},
    {"tel", Meaning::Phone},
    {"tel-national", Meaning::Phone},
    {"tel-country-code", Meaning::PhoneCountryCode},
    {"tel-area-code", Meaning::PhoneAreaCode},
    {"tel-local", Meaning::PhoneLocal},
    {"tel-local-prefix", Meaning::PhoneLocalPrefix},
    {"tel-local-suffix", Meaning::PhoneLocalSuffix},
    {"tel-extension", Meaning::PhoneExtension},
    {"street-address", Meaning::StreetAddress},
    {"address-line1", Meaning::AddressLine1},
    {"address-line2", Meaning::AddressLine2},
    {"address-line3", Meaning::AddressLine3},
    {"address-level2", Meaning::City},
    {"address-level1", Meaning::Region},
    {"postal-code", Meaning::PostalCode},
    {"country", Meaning::Country},
    {"country-name", Meaning::Country},
    {"organization", Meaning::Organization},
    {"bday", Meaning::BirthDate},
    {"bday-day", Meaning::BirthDay},
    {"bday-month", Meaning::BirthMonth},
    {"bday-year", Meaning::BirthYear},
};
// No page declares these: they are only ever our keys.
constexpr Token OwnKeys[] = {{"x-house-number", Meaning::HouseNumber},
                             {"x-street-name", Meaning::StreetName}};

const QHash<QString, Meaning>& autofillTokens()
{
    static const QHash<QString, Meaning> tokens = [] {
        QHash<QString, Meaning> byName;
        for (const Token& token : Tokens)
            byName.insert(QLatin1String(token.key), token.meaning);
        return byName;
    }();
    return tokens;
}

// Tokens that declare a field none of ours: the page has said what it is.
bool declaresOther(const QString& token)
{
    static const QStringList others = {
        "new-password",       "current-password", "one-time-code",      "username",
        "organization-title", "nickname",         "transaction-amount", "webauthn"};
    return token.startsWith(QLatin1String("cc-")) || others.contains(token);
}

// The autofill declaration: Meaning::None with `decided` when it names a field of another kind.
Meaning fromAutocomplete(const QString& declared, bool& decided)
{
    decided = false;
    const QStringList tokens = declared.toLower().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    // Section, shipping/billing and home/work/mobile come first; the field's token is last.
    for (auto token = tokens.crbegin(); token != tokens.crend(); ++token) {
        if (const auto found = autofillTokens().constFind(*token);
            found != autofillTokens().constEnd()) {
            decided = true;
            return *found;
        }
        if (declaresOther(*token)) {
            decided = true;
            return Meaning::None;
        }
    }
    return Meaning::None;
}

// Lists of places and titles by what their options say (the codes of states and countries
// overlap: "CA", "DE", "IN"); in a birth date, the day, month and year lists by their ranges.
Meaning fromOptions(const QList<std::pair<QString, QString>>& options, bool birth)
{
    int regions = 0;
    int countries = 0;
    int honorifics = 0;
    int days = 0;
    int years = 0;
    for (const auto& [value, text] : options) {
        const QString& shown = text.trimmed().isEmpty() ? value : text;
        regions += PlaceNames::isRegion(shown);
        countries += PlaceNames::isCountry(shown);
        honorifics += MeaningRules::isHonorific(shown);
        days += IsNumberBetween(shown, 1, 31);
        years += IsNumberBetween(shown, 1900, 2100);
    }
    if (birth && years >= 20)
        return Meaning::BirthYear;
    if (birth && days >= 28)
        return Meaning::BirthDay;
    if (birth && (days == 12 || options.size() >= 12))
        return Meaning::BirthMonth;
    if (countries >= 20)
        return Meaning::Country;
    if (regions >= 10)
        return Meaning::Region;
    if (honorifics >= 2 && options.size() <= 12)
        return Meaning::Honorific;
    return Meaning::None;
}
} // namespace

QString MeaningKey(Meaning meaning)
{
    for (const Token& token : Tokens) {
        if (token.meaning == meaning)
            return QLatin1String(token.key);
    }
    for (const Token& token : OwnKeys) {
        if (token.meaning == meaning)
            return QLatin1String(token.key);
    }
    return {};
}

Recognition RecogniseField(const QString& tagName, const QString& name,
                           const FieldDescription& field)
{
    const bool isList = tagName.compare(QLatin1String("select"), Qt::CaseInsensitive) == 0;
    const bool isArea = tagName.compare(QLatin1String("textarea"), Qt::CaseInsensitive) == 0;
    const MeaningRules::Texts texts =
        MeaningRules::textsOf(name.left(LongestText), field.id.left(LongestText),
                              {field.label.left(LongestText), field.ariaLabel.left(LongestText),
                               field.placeholder.left(LongestText)},
                              field.section.left(LongestText));
    // Whatever token the page puts on a friend's box, it is the friend's.
    if (MeaningRules::forSomeoneElse(texts)) {
        Recognition elses;
        elses.someoneElses = true;
        return elses;
    }
    bool decided = false;
    const Meaning declared = fromAutocomplete(field.autocomplete.left(LongestText), decided);
    if (decided)
        return {declared, declared != Meaning::None};
    const QString type = field.inputType.toLower();
    if (type == QLatin1String("search") || type == QLatin1String("password"))
        return {};

    const std::optional<Recognition> read = MeaningRules::fromTexts(texts, isList);
    if (!read)
        return {};
    Recognition found = *read;
    const bool birth = found.meaning == Meaning::BirthDate;
    if (isList && (found.meaning == Meaning::None || birth) && !field.options.isEmpty()) {
        if (const Meaning listed = fromOptions(field.options, birth); listed != Meaning::None)
            found = {listed, true};
    }
    if (found.meaning == Meaning::None && !found.bareName && type == QLatin1String("email"))
        found = {Meaning::Email, true};
    if (found.meaning == Meaning::None && !found.bareName && type == QLatin1String("tel"))
        found = {Meaning::Phone, true};
    // A text area asked for an address wants the whole of it.
    if (isArea && found.meaning == Meaning::AddressLine1)
        found.meaning = Meaning::StreetAddress;
    return found;
}

Recognition MeaningOf(const HtmlElement& element, FieldDescription& described)
{
    try {
        described = element.description();
        return RecogniseField(element.tagName(), element.name(), described);
    } catch (const AppError&) {
        described = {};
        return {};
    }
}

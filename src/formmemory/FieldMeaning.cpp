#include "FieldMeaning.h"

#include "AppError.h"

#include "MeaningRules.h"
#include "PlaceNames.h"

#include <QHash>

namespace {
// Page texts are the page's to choose; what a field's caption says fits in far less.
constexpr qsizetype LongestText = 200;

const QHash<QString, Meaning>& autofillTokens()
{
    static const QHash<QString, Meaning> tokens = {
        {"honorific-prefix", Meaning::Honorific}, {"given-name", Meaning::GivenName},
        {"additional-name", Meaning::AdditionalName}, {"family-name", Meaning::FamilyName},
        {"name", Meaning::FullName}, {"email", Meaning::Email}, {"tel", Meaning::Phone},
        {"tel-national", Meaning::Phone}, {"tel-country-code", Meaning::PhoneCountryCode},
        {"tel-area-code", Meaning::PhoneAreaCode}, {"tel-local", Meaning::PhoneLocal},
        {"tel-local-prefix", Meaning::PhoneLocalPrefix}, {"tel-local-suffix", Meaning::PhoneLocalSuffix},
        {"street-address", Meaning::StreetAddress}, {"address-line1", Meaning::AddressLine1},
        {"address-line2", Meaning::AddressLine2}, {"address-line3", Meaning::AddressLine3},
        {"address-level2", Meaning::City}, {"address-level1", Meaning::Region},
        {"postal-code", Meaning::PostalCode}, {"country", Meaning::Country},
        {"country-name", Meaning::Country}, {"organization", Meaning::Organization},
        {"bday", Meaning::BirthDate}, {"bday-day", Meaning::BirthDay}, {"bday-month", Meaning::BirthMonth},
        {"bday-year", Meaning::BirthYear},
    };
    return tokens;
}

// Tokens that declare a field none of ours: the page has said what it is.
bool declaresOther(const QString& token)
{
    static const QStringList others = {"new-password", "current-password", "one-time-code", "username",
                                       "organization-title", "nickname", "transaction-amount", "webauthn"};
    return token.startsWith(QLatin1String("cc-")) || others.contains(token);
}

// The autofill declaration: Meaning::None with `decided` when it names a field of another kind.
Meaning fromAutocomplete(const QString& declared, bool& decided)
{
    decided = false;
    const QStringList tokens = declared.toLower().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    // Section, shipping/billing and home/work/mobile come first; the field's token is last.
    for (auto token = tokens.crbegin(); token != tokens.crend(); ++token) {
        if (const auto found = autofillTokens().constFind(*token); found != autofillTokens().constEnd()) {
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

Meaning fromOptions(const QString& tagName, const QList<std::pair<QString, QString>>& options)
{
    if (tagName.compare(QLatin1String("select"), Qt::CaseInsensitive) != 0 || options.isEmpty())
        return Meaning::None;
    int regions = 0;
    int countries = 0;
    int honorifics = 0;
    // By what the options say: the codes of states and countries overlap ("CA", "DE", "IN").
    for (const auto& [value, text] : options) {
        const QString& shown = text.trimmed().isEmpty() ? value : text;
        regions += PlaceNames::isRegion(shown);
        countries += PlaceNames::isCountry(shown);
        honorifics += MeaningRules::isHonorific(shown);
    }
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
    for (auto token = autofillTokens().constBegin(); token != autofillTokens().constEnd(); ++token) {
        // Two tokens name a whole phone number and two a country; the first of each is the key.
        if (*token == meaning && token.key() != QLatin1String("tel-national") && token.key() != QLatin1String("country-name"))
            return token.key();
    }
    return {};
}

Meaning RecogniseField(const QString& tagName, const QString& name, const FieldDescription& field)
{
    bool decided = false;
    const Meaning declared = fromAutocomplete(field.autocomplete.left(LongestText), decided);
    const bool isArea = tagName.compare(QLatin1String("textarea"), Qt::CaseInsensitive) == 0;
    if (decided)
        return declared;
    const QString type = field.inputType.toLower();
    if (type == QLatin1String("search") || type == QLatin1String("password"))
        return Meaning::None;

    const MeaningRules::Texts texts = MeaningRules::textsOf(name.left(LongestText), field.id.left(LongestText),
                                                            {field.label.left(LongestText),
                                                             field.ariaLabel.left(LongestText),
                                                             field.placeholder.left(LongestText)});
    if (MeaningRules::saysOther(texts))
        return Meaning::None;
    Meaning meaning = MeaningRules::fromTexts(texts, tagName.compare(QLatin1String("select"), Qt::CaseInsensitive) == 0);
    if (meaning == Meaning::None)
        meaning = fromOptions(tagName, field.options);
    if (meaning == Meaning::None && type == QLatin1String("email"))
        meaning = Meaning::Email;
    if (meaning == Meaning::None && type == QLatin1String("tel"))
        meaning = Meaning::Phone;
    // A text area asked for an address wants the whole of it.
    if (isArea && meaning == Meaning::AddressLine1)
        meaning = Meaning::StreetAddress;
    return meaning;
}

Meaning MeaningOf(const HtmlElement& element, FieldDescription& described)
{
    try {
        described = element.description();
        return RecogniseField(element.tagName(), element.name(), described);
    } catch (const AppError&) {
        described = {};
        return Meaning::None;
    }
}

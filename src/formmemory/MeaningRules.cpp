#include "MeaningRules.h"

#include <QRegularExpression>

#include <algorithm>

#include <vector>

namespace {
QRegularExpression words(const char* alternatives)
{
    return QRegularExpression(QStringLiteral("(?:^| )(?:%1)(?= |$)").arg(QLatin1String(alternatives)),
                              QRegularExpression::UseUnicodePropertiesOption);
}

// Fields of other kinds, or for another person: a friend's e-mail, a search box, a promotion
// code, a card, a password, a captcha, a message, "how did you hear", a user name, ...
const QRegularExpression& otherWords()
{
    static const QRegularExpression other = words(
        "friends?|friend s|referr\\w*|refer|referee|invite\\w*|recipients?|receiver|amie?s?|freund\\w*|amig[oa]s?|"
        "amic[oa]|amici|vriend\\w*|colleagues?|search\\w*|query|keywords?|such\\w*|recherche\\w*|buscar|busqueda|"
        "cerca|zoek\\w*|pesquisa\\w*|promo\\w*|coupons?|vouchers?|discount\\w*|gift ?cards?|gift certificates?|"
        "redeem\\w*|rabatt\\w*|gutschein\\w*|cupon\\w*|codigo promocional|buono|sconto|korting\\w*|bon de reduction|"
        "reduction|card numbers?|card no|cardnumber|cc ?num\\w*|credit card|debit card|cvv\\w*|cvc\\w*|csc|"
        "security code|card code|kartennummer|numero de (?:carte|tarjeta)|numero della carta|kaartnummer|"
        "expir\\w*|exp date|iban|bic|swift|account numbers?|routing|sort code|name on (?:the )?card|on card|"
        "card ?holder|pass ?words?|passwd|pwd|passwort|kennwort|mot de passe|contrasena|wachtwoord|senha|"
        "captcha|recaptcha|security check|verification code|verify code|otp|one time|gift (?:message|note|wrap)|"
        "messages?|comments?|notes?|remarks?|how did you|hear about|heard about|where did you|referral|source|"
        "user ?name|user ?id|login|log in|nick ?name|screen ?name|display ?name|handle|benutzername|pseudo|"
        "nom d utilisateur|usuario|alias|fax|emergency|spouse|partner|mother|father|parents?|guardian|maiden|"
        "child|children|kids?|baby|pet|school|teacher|doctor|job title|position|occupation|profession|beruf|"
        "estado civil|marital|place of birth|birth ?place|city of birth|country of birth|lieu de naissance|"
        "geburtsort|lugar de nacimiento|luogo di nascita|geboorteplaats|nationality|citizenship|alternat\\w*|"
        "secondary|backup|subject|url|website|web site|homepage|twitter|instagram|facebook|age|quantity|qty|amount");
    return other;
}

// The same, for identifiers run together ("txtPromoCode", "ccnum").
const QRegularExpression& otherCompact()
{
    static const QRegularExpression other(QStringLiteral(
        "captcha|coupon|promo|voucher|giftcard|password|passwd|ccnum|cardnum|cardnumber|cvv|cvc|friend|referr|"
        "search|username|login"));
    return other;
}

struct Rule
{
    Meaning meaning;
    QRegularExpression pattern;
};

const QRegularExpression& birthWords()
{
    static const QRegularExpression birth =
        words("birth\\w*|birthday|bday|dob|born|date of birth|naissance|geburt\\w*|nacimiento|nascita|"
              "geboorte\\w*|nascimento|data de nasc\\w*");
    return birth;
}

const QRegularExpression& phoneWords()
{
    static const QRegularExpression phone =
        words("phone\\w*|telephone|tel|mobile|mobil|cell|cellphone|handy|telefon\\w*|telefono|telefone|telefoon|"
              "portable|movil|cellulare|gsm|contact number|rufnummer|fone|celular");
    return phone;
}

// Parts of a date or a phone number. A source naming several parts only shows a format
// ("dd/mm/yyyy"), so only sources naming one part count; a part named by a letter alone ("d")
// only where the same source says what it is a part of ("dob d").
Meaning onePart(const QStringList& sources, const std::vector<Rule>& parts, const QRegularExpression& whole,
                Meaning wholeMeaning)
{
    static const QRegularExpression letter(QStringLiteral("^[a-z]$"));
    Meaning found = Meaning::None;
    for (const QString& source : sources) {
        Meaning inSource = Meaning::None;
        int named = 0;
        const bool saysWhole = whole.match(source).hasMatch();
        for (const Rule& part : parts) {
            const auto match = part.pattern.match(source);
            if (match.hasMatch() && (saysWhole || !letter.match(match.captured().trimmed()).hasMatch())) {
                inSource = part.meaning;
                ++named;
            }
        }
        if (named != 1)
            continue;
        if (found != Meaning::None && found != inSource)
            return wholeMeaning;
        found = inSource;
    }
    return found == Meaning::None ? wholeMeaning : found;
}

const std::vector<Rule>& birthParts()
{
    static const std::vector<Rule> parts = {
        {Meaning::BirthDay, words("day|dd|d|jour|tag|dia|giorno|dag")},
        {Meaning::BirthMonth, words("month|mm|m|mo|mois|monat|mes|mese|maand")},
        {Meaning::BirthYear, words("year|yyyy|yy|y|yr|annee|jahr|ano|anno|jaar")},
    };
    return parts;
}

const std::vector<Rule>& phoneParts()
{
    static const std::vector<Rule> parts = {
        {Meaning::PhoneCountryCode, words("country ?code|dial(?:ing)? code|calling code|indicatif(?: pays)?|"
                                          "landesvorwahl|prefijo internacional|prefisso internazionale|cc")},
        {Meaning::PhoneAreaCode, words("area ?code|area|vorwahl|ddd|indicatif regional|prefijo|prefisso")},
        {Meaning::PhoneLocalPrefix, words("prefix|exchange")},
        {Meaning::PhoneLocalSuffix, words("suffix|line ?number|line|last (?:4|four)")},
        {Meaning::PhoneLocal, words("local|subscriber")},
    };
    return parts;
}

// In order: the first rule a source matches names the field.
const std::vector<Rule>& rules()
{
    static const std::vector<Rule> ordered = {
        {Meaning::Email, words("e ?mails?|e ?mail address|email ?address|e mail adres\\w*|courriel|correo(?: electronico)?|"
                               "posta elettronica|mail")},
        {Meaning::Organization, words("company(?: name)?|organi[sz]ations?|organisme|business(?: name)?|firm|employer|firma|"
                                      "unternehmen|societe|entreprise|empresa|azienda|societa|bedrijf\\w*|organisatie")},
        {Meaning::AddressLine3, words("(?:street )?address ?(?:line )?3|addr ?3|line 3")},
        {Meaning::AddressLine2, words("(?:street )?address ?(?:line )?2|addr ?2|line 2|apt|apartment|suite|unit|flat|floor|"
                                      "building|complement(?: d adresse)?|complemento|adresszusatz|piso|interno|toevoeging")},
        {Meaning::AddressLine1, words("(?:street )?address ?(?:line )?1?|addr ?1?|line 1|street(?: address)?|adresse|"
                                     "anschrift|strasse|direccion|calle|indirizzo|adres|straat\\w*|endereco|rua|morada|"
                                     "domicilio|postal address|mailing address")},
        {Meaning::PostalCode, words("zip(?: ?code)?|postal(?: code)?|post ?code|plz|postleitzahl|code postal|cp|"
                                    "codigo postal|cap|cep|postnummer")},
        {Meaning::City, words("city|town|suburb|locality|ville|commune|stadt|ort|wohnort|ciudad|localidad|poblacion|"
                              "citta|comune|localita|plaats|woonplaats|cidade|municipio")},
        {Meaning::Country, words("country(?: code)?|pays|land|pais|paese|nazione")},
        {Meaning::Region, words("state|province|county|region|bundesland|provincia|provincie|estado|regione|"
                                "departement|territory|prefecture|canton|kanton")},
        {Meaning::FullName, words("full ?name|your name|first and last name|name and surname|nom complet|"
                                  "nom et prenom|prenom et nom|nombre completo|nombre y apellidos|nome completo|"
                                  "vollstandiger name|vor und nachname|volledige naam")},
        {Meaning::Honorific, words("salutation|honorific|name prefix|anrede|civilite|civility|tratamiento|aanhef")},
        {Meaning::GivenName, words("first ?name|given ?name|fore ?name|prenom|vorname|nombre|nome|voornaam|"
                                   "primeiro nome|fname")},
        {Meaning::AdditionalName, words("middle ?name|middle initial|middle|second name|segundo nombre|"
                                        "zweiter vorname|mi")},
        {Meaning::FamilyName, words("last ?name|surname|family ?name|nom de famille|nom|nachname|familienname|"
                                    "apellidos?|cognome|achternaam|sobrenome|apelido|lname")},
        {Meaning::FullName, words("name|naam")},
    };
    return ordered;
}

// Identifiers run together: the words must sit inside them.
const std::vector<Rule>& compactRules()
{
    static const std::vector<Rule> ordered = {
        {Meaning::Email, QRegularExpression(QStringLiteral("email"))},
        {Meaning::FullName, QRegularExpression(QStringLiteral("fullname|yourname"))},
        {Meaning::GivenName, QRegularExpression(QStringLiteral("fname|firstname|givenname|forename|vorname|prenom"))},
        {Meaning::AdditionalName, QRegularExpression(QStringLiteral("middlename|middleinitial"))},
        {Meaning::FamilyName, QRegularExpression(QStringLiteral("lname|lastname|surname|familyname|nachname"))},
        {Meaning::AddressLine2, QRegularExpression(QStringLiteral("addr(?:ess)?(?:line)?2"))},
        {Meaning::AddressLine1, QRegularExpression(QStringLiteral("addr(?:ess)?(?:line)?1|streetaddress"))},
        {Meaning::PostalCode, QRegularExpression(QStringLiteral("zipcode|postcode|postalcode"))},
    };
    return ordered;
}

QString identifierWords(const QString& identifier)
{
    QString spaced;
    spaced.reserve(identifier.size() * 2);
    for (qsizetype i = 0; i < identifier.size(); ++i) {
        const QChar c = identifier[i];
        const QChar before = i > 0 ? identifier[i - 1] : QChar();
        const QChar after = i + 1 < identifier.size() ? identifier[i + 1] : QChar();
        // "firstName" and "SFirstName" are cut before the capital that starts a word, and digits
        // are cut from letters.
        const bool wordStart = c.isUpper() && (before.isLower() || (before.isUpper() && after.isLower()));
        const bool digitEdge = !before.isNull() && c.isDigit() != before.isDigit() && before.isLetterOrNumber() &&
                               c.isLetterOrNumber();
        if (wordStart || digitEdge)
            spaced += QLatin1Char(' ');
        spaced += c;
    }
    return MeaningRules::plainWords(spaced);
}
} // namespace

QString MeaningRules::plainWords(const QString& text)
{
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString plain;
    plain.reserve(decomposed.size() + 2);
    bool blank = true;
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        if (c == QChar(0x00DF)) { // ß
            plain += QStringLiteral("ss");
            blank = false;
        } else if (c.isLetterOrNumber()) {
            plain += c.toLower();
            blank = false;
        } else if (!blank) {
            plain += QLatin1Char(' ');
            blank = true;
        }
    }
    if (plain.endsWith(QLatin1Char(' ')))
        plain.chop(1);
    return plain;
}

MeaningRules::Texts MeaningRules::textsOf(const QString& name, const QString& id, const QStringList& humanTexts)
{
    Texts texts;
    for (const QString& text : humanTexts) {
        const QString plain = plainWords(text);
        if (!plain.isEmpty())
            texts.human << plain;
    }
    for (const QString& identifier : {name, id}) {
        const QString plain = identifierWords(identifier);
        if (!plain.isEmpty())
            texts.identifiers << plain;
        texts.compact += QString(plain).remove(QLatin1Char(' ')) + QLatin1Char(' ');
    }
    return texts;
}

bool MeaningRules::saysOther(const Texts& texts)
{
    for (const QString& source : texts.all()) {
        // A lone "q" or "s" is the search box of many sites.
        if (source == QLatin1String("q") || source == QLatin1String("s") || otherWords().match(source).hasMatch())
            return true;
    }
    return otherCompact().match(texts.compact).hasMatch();
}

Meaning MeaningRules::fromTexts(const Texts& texts, bool isList)
{
    const QStringList sources = texts.all();
    const auto mentions = [&](const QRegularExpression& pattern) {
        return std::any_of(sources.begin(), sources.end(),
                           [&](const QString& source) { return pattern.match(source).hasMatch(); });
    };
    if (mentions(birthWords()) || texts.compact.contains(QLatin1String("birth")) || texts.compact.contains(QLatin1String("dob")))
        return onePart(sources, birthParts(), birthWords(), Meaning::BirthDate);
    if (mentions(phoneWords()) || texts.compact.contains(QLatin1String("phone")))
        return onePart(sources, phoneParts(), phoneWords(), Meaning::Phone);
    static const QRegularExpression areaCode = words("area ?code|areacode|vorwahl");
    if (mentions(areaCode))
        return Meaning::PhoneAreaCode;
    const auto firstRule = [isList](const QString& source) {
        for (const Rule& rule : rules()) {
            if (rule.pattern.match(source).hasMatch() && (rule.meaning != Meaning::Honorific || isList))
                return rule.meaning;
        }
        return Meaning::None;
    };
    for (const QString& source : texts.human) {
        if (const Meaning meaning = firstRule(source); meaning != Meaning::None)
            return meaning;
    }
    // Identifiers run together before their words: "txtFName" reads "txt f name".
    for (const Rule& rule : compactRules()) {
        if (rule.pattern.match(texts.compact).hasMatch())
            return rule.meaning;
    }
    for (const QString& source : texts.identifiers) {
        if (const Meaning meaning = firstRule(source); meaning != Meaning::None)
            return meaning;
    }
    // A list of titles under a bare "Title".
    static const QRegularExpression title = words("title|titel|titre|titulo|titolo");
    if (isList && mentions(title))
        return Meaning::Honorific;
    return Meaning::None;
}

bool MeaningRules::isHonorific(const QString& text)
{
    static const QRegularExpression honorific =
        words("mr|mrs|ms|miss|mx|dr|prof|sir|herr|frau|m|mme|mlle|sr|sra|srta|sig|sigra|dhr|mevr|mevrouw|meneer");
    const QString plain = plainWords(text);
    return plain.size() <= 8 && honorific.match(plain).hasMatch();
}

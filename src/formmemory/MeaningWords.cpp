#include "MeaningWords.h"

using MeaningWords::Rule;

namespace {
const QString WordStart = QStringLiteral("(?:^| )(?:");
const QString WordEnd = QStringLiteral(")(?= |$)");
} // namespace

QRegularExpression MeaningWords::words(const char* alternatives)
{
    return wordsOf(QLatin1String(alternatives));
}

QRegularExpression MeaningWords::wordsOf(const QString& alternatives)
{
    return QRegularExpression(WordStart + alternatives + WordEnd,
                              QRegularExpression::UseUnicodePropertiesOption);
}

QString MeaningWords::alternativesOf(const QRegularExpression& pattern)
{
    const QString text = pattern.pattern();
    if (!text.startsWith(WordStart) || !text.endsWith(WordEnd))
        return text;
    return text.mid(WordStart.size(), text.size() - WordStart.size() - WordEnd.size());
}

const QRegularExpression& MeaningWords::someoneElseOrQuestion()
{
    static const QRegularExpression either =
        wordsOf(alternativesOf(someoneElse()) + QLatin1Char('|') + alternativesOf(question()));
    return either;
}

const QRegularExpression& MeaningWords::someoneElse()
{
    static const QRegularExpression other =
        words("friends?|friend "
              "s|referr\\w*|refer|referee|invite\\w*|recipients?|receiver|amie?s?|freund\\w*|"
              "amig[oa]s?|amic[oa]|amici|vriend\\w*|colleagues?|nominee|giftee|beneficiar\\w*|"
              "destinatair\\w*|"
              "destinatari[oa]s?|empfanger\\w*|ontvanger|spouse|partner "
              "s|husband|wife|mother|father|parents?|"
              "guardian|child|children|kids?|baby|emergency|maiden|gift "
              "(?:message|note|wrap)|parrain\\w*");
    return other;
}

const QRegularExpression& MeaningWords::someoneElsesSection()
{
    static const QRegularExpression section =
        words("refer\\w*|friends?|friend "
              "s|invite\\w*|recipient\\w*|parrain\\w*|amie?s?|freunde?|empfanger\\w*|"
              "amig[oa]s?|amici|vrienden?|destinatari[oa]s?|gift for|send to");
    return section;
}

const QRegularExpression& MeaningWords::question()
{
    static const QRegularExpression asked = words(
        "why|warum|pourquoi|por que|porque|perche|waarom|in \\d+ words|in \\w+ words|tell "
        "us|describe|explain|"
        "answers?|antwort|reponse|respuesta|risposta|antwoord|resposta|guess|skill|question|frage|"
        "pregunta|"
        "domanda|vraag|pergunta|name the|name your|name "
        "our|caption|slogan|tagline|favou?rite|dream|would you|"
        "wish|like "
        "to|visit|destination|travel|trip|vacation|holiday|choose|pick|prefer|solve|calculate|"
        "what is \\d+|how many|how much|\\d+ (?:plus|minus|times|x) "
        "\\d+|flavou?rs?|essay|story|reason|"
        "motivation|idea|suggest\\w*|vote|predict\\w*|tiebreak\\w*");
    return asked;
}

const QRegularExpression& MeaningWords::otherKind()
{
    static const QRegularExpression other =
        words("search\\w*|query|keywords?|such\\w*|recherche\\w*|buscar|busqueda|cerca|zoek\\w*|"
              "pesquisa\\w*|promo\\w*|"
              "coupons?|vouchers?|discount\\w*|gift ?cards?|gift "
              "certificates?|redeem\\w*|rabatt\\w*|gutschein\\w*|"
              "cupon\\w*|codigo promocional|buono|sconto|korting\\w*|bon de "
              "reduction|reduction|card numbers?|card no|"
              "cardnumber|cc ?num\\w*|credit card|debit card|cvv\\w*|cvc\\w*|csc|security "
              "code|card code|kartennummer|"
              "numero de (?:carte|tarjeta)|numero della carta|kaartnummer|expir\\w*|exp "
              "date|iban|bic|swift|"
              "account (?:numbers?|no|nr|id)|routing|sort code|name on (?:the )?card|on card|card "
              "?holder|pass ?words?|"
              "passwd|pwd|passwort|kennwort|mot de "
              "passe|contrasena|wachtwoord|senha|captcha|recaptcha|security check|"
              "verification code|verify code|otp|one time|how did you|hear about|heard about|where "
              "did you|referral|"
              "fax|job title|position|occupation|profession|beruf|estado civil|marital|place of "
              "birth|birth ?place|"
              "city of birth|country of birth|lieu de naissance|geburtsort|lugar de "
              "nacimiento|luogo di nascita|"
              "geboorteplaats|nationality|citizenship|alternat\\w*|secondary|backup|other|url|"
              "website|web site|"
              "homepage|twitter|instagram|facebook|tiktok|social|quantity|qty|amount|loyalty|"
              "rewards?|membership|"
              "member (?:numbers?|no|nr|id)|customer (?:numbers?|no|nr|id)|client "
              "(?:numbers?|no)|order (?:numbers?|no|id)|"
              "receipt|invoice|store|shop|retailer|dealer|branch|brand|product|model|serial|"
              "purchase\\w*|team|school|"
              "teacher|doctor|pet|vat|tax|ssn|social security|passport|licen[cs]e|id "
              "number|national id|height|weight|"
              "size|gender|sex|how old|company website|signature|initials");
    return other;
}

const QRegularExpression& MeaningWords::weakOther()
{
    static const QRegularExpression other =
        words("age|login|log in|sign in|user ?name|user ?id|account|handle|alias|nick ?name|screen "
              "?name|display ?name|"
              "pseudo|benutzername|usuario|nom d "
              "utilisateur|source|subject|notes?|remarks?|comments?|messages?|"
              "confirm\\w* (?:code|number)");
    return other;
}

const QRegularExpression& MeaningWords::birthWords()
{
    static const QRegularExpression birth = words(
        "birth\\w*|birthday|bday|dob|born|date of birth|naissance|geburt\\w*|nacimiento|nascita|"
        "geboorte\\w*|nascimento|data de nasc\\w*");
    return birth;
}

const QRegularExpression& MeaningWords::phoneWords()
{
    static const QRegularExpression phone =
        words("phone\\w*|telephone|tel|mobile|mobil|cell|cellphone|handy|telefon\\w*|telefono|"
              "telefone|telefoon|"
              "portable|movil|cellulare|gsm|contact number|rufnummer|fone|celular");
    return phone;
}

const QRegularExpression& MeaningWords::phoneFormNote()
{
    static const QRegularExpression note(QStringLiteral(
        "(?:with|including|incl|include|inc|plus|avec|mit|inkl|con|com|inclusief|incluido|compreso)"
        "(?: the| your| l| el| la| il| o| de| der| ihrer)? "
        "(?:area|country|dialing|dial|international|"
        "regional)?(?: )?(?:code|prefix|indicatif|vorwahl|landesvorwahl|prefijo|prefisso|ddd)"));
    return note;
}

const std::vector<Rule>& MeaningWords::birthParts()
{
    static const std::vector<Rule> parts = {
        {Meaning::BirthDay, words("day|dd|d|jour|jj|tag|tt|dia|giorno|gg|dag")},
        {Meaning::BirthMonth, words("month|mm|m|mo|mois|monat|mes|mese|maand")},
        {Meaning::BirthYear, words("year|yyyy|yy|y|yr|annee|aaaa|jahr|jjjj|ano|anno|jaar")},
    };
    return parts;
}

const std::vector<Rule>& MeaningWords::phoneParts()
{
    static const std::vector<Rule> parts = {
        {Meaning::PhoneExtension,
         words("ext|extension|extn|durchwahl|nebenstelle|poste|interno|toestel|ramal")},
        {Meaning::PhoneCountryCode,
         words("country ?code|dial(?:ing)? code|calling code|indicatif(?: pays)?|"
               "landesvorwahl|prefijo internacional|prefisso internazionale|cc")},
        {Meaning::PhoneAreaCode,
         words("area ?code|area|vorwahl|ddd|indicatif regional|prefijo|prefisso")},
        {Meaning::PhoneLocalPrefix, words("prefix|exchange")},
        {Meaning::PhoneLocalSuffix, words("suffix|line ?number|line|last (?:4|four)")},
        {Meaning::PhoneLocal, words("local|subscriber")},
    };
    return parts;
}

const std::vector<Rule>& MeaningWords::rules()
{
    static const std::vector<Rule> ordered = {
        {Meaning::Email, words("e ?mails?|e ?mail address|email ?address|e mail "
                               "adres\\w*|courriel|correo(?: electronico)?|"
                               "posta elettronica|mail")},
        {Meaning::PhoneExtension, words("ext|extension|extn|durchwahl|nebenstelle")},
        {Meaning::Organization,
         words("company(?: name)?|organi[sz]ations?|organisme|business(?: name)?|firm|employer|"
               "firma|unternehmen|societe|entreprise|empresa|azienda|societa|bedrijf\\w*|"
               "organisatie")},
        {Meaning::AddressLine3,
         words("(?:street )?address ?(?:line )?(?:3|three|third)|addr ?3|line 3|street ?3")},
        {Meaning::AddressLine2,
         words("(?:street )?address ?(?:line )?(?:2|two|second)|addr ?2|street ?2|"
               "(?:line|ligne|zeile|linea|regel|linha) ?(?:2|two|deux|zwei|dos|due|twee|dois)|"
               "apt|apartment|suite|unit|flat|floor|building|complement(?: d adresse)?|"
               "complemento|adresszusatz|piso|interno|toevoeging|c o|care of")},
        // "Street and house number" is the whole first line.
        {Meaning::AddressLine1,
         words("(?:street|strasse|rue|calle|via|straat|rua)(?: name)? (?:and|und|et|y|e|en) "
               "(?:house |haus|huis)?(?:number|nummer|numero|nr|no)|"
               "(?:house )?number and street(?: name)?")},
        {Meaning::HouseNumber,
         words("(?:house|street|building|civic) ?(?:number|no|nr|num)|hausnummer|hausnr|"
               "huisnummer|huisnr|numero civico|civico|numero de (?:rue|calle|la calle|porta)|"
               "no de rue")},
        // A number standing alone in an address block ("No.", "N°", "Nr.").
        {Meaning::HouseNumber,
         QRegularExpression(QStringLiteral("^(?:no|n|nr|numero|nummer|number|num)$"))},
        {Meaning::StreetName,
         words("street ?name|strassenname|nom de (?:la )?rue|nombre de (?:la )?calle|straatnaam|"
               "nome (?:della )?(?:via|strada)|nome da rua")},
        {Meaning::PostalCode,
         words("zip(?: ?code)?|postal(?: code)?|post ?code|postcode|eircode|plz|postleitzahl|"
               "code postal|cp|codigo postal|cap|cep|postnummer")},
        {Meaning::City,
         words(
             "city|town|suburb|locality|ville|commune|stadt|ort|wohnort|ciudad|localidad|poblacion|"
             "citta|comune|localita|plaats|woonplaats|cidade|municipio")},
        {Meaning::Country, words("country(?: code)?|pays|land|pais|paese|nazione")},
        {Meaning::Region,
         words("state|province|county|region|bundesland|provincia|provincie|estado|regione|"
               "departement|territory|prefecture|canton|kanton")},
        {Meaning::AddressLine1,
         words(
             "(?:street )?address ?(?:line )?(?:1|one|first)?|addr ?1?|line 1|street(?: address)?|"
             "street ?1|adresse|anschrift|strasse|direccion|calle|indirizzo|adres|straat\\w*|"
             "endereco|rua|morada|domicilio|postal address|mailing address")},
        {Meaning::FullName,
         words("full ?name|your name|first and last name|name and surname|nom complet|"
               "nom et prenom|prenom et nom|nombre completo|nombre y apellidos|nome completo|"
               "vollstandiger name|vor und nachname|volledige naam")},
        {Meaning::Honorific,
         words("salutation|honorific|name prefix|anrede|civilite|civility|tratamiento|aanhef")},
        {Meaning::GivenName,
         words("first ?name|given ?name|fore ?name|prenom|vorname|voornaam|primeiro nome|"
               "nombre de pila|fname")},
        {Meaning::AdditionalName,
         words("middle ?name|middle initial|middle|second name|segundo nombre|"
               "zweiter vorname|mi")},
        {Meaning::FamilyName,
         words("last ?name|surname|family ?name|nom de famille|nachname|familienname|"
               "apellidos?|cognome|achternaam|sobrenome|apelido|lname")},
    };
    return ordered;
}

const std::vector<Rule>& MeaningWords::compactRules()
{
    static const std::vector<Rule> ordered = {
        {Meaning::Email, QRegularExpression(QStringLiteral("email"))},
        {Meaning::PhoneExtension, QRegularExpression(QStringLiteral("phoneext|telext|extension"))},
        {Meaning::FullName, QRegularExpression(QStringLiteral("fullname|yourname"))},
        {Meaning::GivenName,
         QRegularExpression(QStringLiteral("fname|firstname|givenname|forename|vorname|prenom"))},
        {Meaning::AdditionalName, QRegularExpression(QStringLiteral("middlename|middleinitial"))},
        {Meaning::FamilyName,
         QRegularExpression(QStringLiteral("lname|lastname|surname|familyname|nachname"))},
        {Meaning::AddressLine2,
         QRegularExpression(QStringLiteral("addr(?:ess)?(?:line)?(?:2|two)|street2"))},
        {Meaning::HouseNumber, QRegularExpression(QStringLiteral(
                                   "housenumber|streetnumber|housenr|hausnummer|huisnummer"))},
        {Meaning::StreetName, QRegularExpression(QStringLiteral("streetname"))},
        {Meaning::AddressLine1,
         QRegularExpression(QStringLiteral("addr(?:ess)?(?:line)?(?:1|one)|streetaddress"))},
        {Meaning::PostalCode, QRegularExpression(QStringLiteral("zipcode|postcode|postalcode"))},
    };
    return ordered;
}

const QRegularExpression& MeaningWords::bareName()
{
    static const QRegularExpression bare = words("(?:your )?(?:name|naam|nom|nombre|nome|namen)");
    return bare;
}

const std::vector<Rule>& MeaningWords::nameParts()
{
    static const std::vector<Rule> parts = {
        {Meaning::GivenName,
         words("first|given|fore|prenom|vorname|voornaam|nombre de pila|primeiro|fname")},
        {Meaning::FamilyName,
         words("last|surname|family|nachname|apellidos?|cognome|achternaam|sobrenome|lname")},
        {Meaning::FullName, words("full|complet[eo]?|vollstandig\\w*|volledige|first and last")},
    };
    return parts;
}

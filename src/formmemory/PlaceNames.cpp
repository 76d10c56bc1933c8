#include "PlaceNames.h"

#include "MeaningRules.h"

#include <QHash>

namespace {
// Plain words of a name or code -> its code.
QHash<QString, QString> table(std::initializer_list<std::pair<const char*, const char*>> entries)
{
    QHash<QString, QString> codes;
    for (const auto& [code, names] : entries) {
        codes.insert(MeaningRules::plainWords(QLatin1String(code)), QLatin1String(code));
        for (const QString& name : QString::fromLatin1(names).split(QLatin1Char('|')))
            codes.insert(MeaningRules::plainWords(name), QLatin1String(code));
    }
    return codes;
}

const QHash<QString, QString>& regions()
{
    // United States (with the District and Puerto Rico) and Canada.
    static const QHash<QString, QString> codes = table(
        {{"AL", "Alabama"},        {"AK", "Alaska"},         {"AZ", "Arizona"},
         {"AR", "Arkansas"},       {"CA", "California"},     {"CO", "Colorado"},
         {"CT", "Connecticut"},    {"DE", "Delaware"},       {"DC", "District of Columbia"},
         {"FL", "Florida"},        {"GA", "Georgia"},        {"HI", "Hawaii"},
         {"ID", "Idaho"},          {"IL", "Illinois"},       {"IN", "Indiana"},
         {"IA", "Iowa"},           {"KS", "Kansas"},         {"KY", "Kentucky"},
         {"LA", "Louisiana"},      {"ME", "Maine"},          {"MD", "Maryland"},
         {"MA", "Massachusetts"},  {"MI", "Michigan"},       {"MN", "Minnesota"},
         {"MS", "Mississippi"},    {"MO", "Missouri"},       {"MT", "Montana"},
         {"NE", "Nebraska"},       {"NV", "Nevada"},         {"NH", "New Hampshire"},
         {"NJ", "New Jersey"},     {"NM", "New Mexico"},     {"NY", "New York"},
         {"NC", "North Carolina"}, {"ND", "North Dakota"},   {"OH", "Ohio"},
         {"OK", "Oklahoma"},       {"OR", "Oregon"},         {"PA", "Pennsylvania"},
         {"RI", "Rhode Island"},   {"SC", "South Carolina"}, {"SD", "South Dakota"},
         {"TN", "Tennessee"},      {"TX", "Texas"},          {"UT", "Utah"},
         {"VT", "Vermont"},        {"VA", "Virginia"},       {"WA", "Washington"},
         {"WV", "West Virginia"},  {"WI", "Wisconsin"},      {"WY", "Wyoming"},
         {"PR", "Puerto Rico"},    {"AB", "Alberta"},        {"BC", "British Columbia"},
         {"MB", "Manitoba"},       {"NB", "New Brunswick"},  {"NL", "Newfoundland and Labrador"},
         {"NS", "Nova Scotia"},    {"ON", "Ontario"},        {"PE", "Prince Edward Island"},
         {"QC", "Quebec"},         {"SK", "Saskatchewan"}});
    return codes;
}

const QHash<QString, QString>& countries()
{
    // Codes, English names and the names in the languages the field rules read.
    static const QHash<QString, QString> codes =
        table({{"US", "United States|United States of America|USA|U S A|U S|America|Estados "
                      "Unidos|Etats Unis|Vereinigte Staaten|Stati Uniti|Verenigde Staten"},
               {"CA", "Canada|Kanada"},
               {"GB", "United Kingdom|UK|U K|Great Britain|Britain|England|Royaume Uni|Vereinigtes "
                      "Konigreich|Reino Unido|Regno Unito|Verenigd Koninkrijk"},
               {"IE", "Ireland|Irlande|Irland|Irlanda|Ierland"},
               {"AU", "Australia|Australie|Australien"},
               {"NZ", "New Zealand|Nouvelle Zelande|Neuseeland|Nueva Zelanda"},
               {"FR", "France|Frankreich|Francia|Frankrijk|Franca"},
               {"DE", "Germany|Deutschland|Allemagne|Alemania|Germania|Duitsland|Alemanha"},
               {"AT", "Austria|Osterreich|Autriche|Oostenrijk"},
               {"CH", "Switzerland|Schweiz|Suisse|Svizzera|Suiza|Zwitserland|Suica"},
               {"BE", "Belgium|Belgique|Belgien|Belgica|Belgio|Belgie"},
               {"NL", "Netherlands|The Netherlands|Holland|Nederland|Pays Bas|Niederlande|Paises "
                      "Bajos|Paesi Bassi"},
               {"LU", "Luxembourg|Luxemburg|Luxemburgo|Lussemburgo"},
               {"ES", "Spain|Espana|Espagne|Spanien|Spagna|Spanje|Espanha"},
               {"PT", "Portugal|Portogallo"},
               {"IT", "Italy|Italia|Italie|Italien|Italie|Itali"},
               {"DK", "Denmark|Danmark|Danemark|Danemark|Dinamarca|Danimarca|Denemarken"},
               {"SE", "Sweden|Sverige|Suede|Schweden|Suecia|Svezia|Zweden"},
               {"NO", "Norway|Norge|Norvege|Norwegen|Noruega|Norvegia|Noorwegen"},
               {"FI", "Finland|Suomi|Finlande|Finnland|Finlandia"},
               {"IS", "Iceland|Island|Islande|Islandia"},
               {"PL", "Poland|Polska|Pologne|Polen|Polonia"},
               {"CZ", "Czech Republic|Czechia|Cesko|Republique Tcheque|Tschechien|Republica Checa"},
               {"SK", "Slovakia|Slovensko|Slowakei|Eslovaquia"},
               {"HU", "Hungary|Magyarorszag|Hongrie|Ungarn|Hungria|Ungheria"},
               {"RO", "Romania|Roumanie|Rumanien|Rumania"},
               {"BG", "Bulgaria|Bulgarie|Bulgarien"},
               {"GR", "Greece|Grece|Griechenland|Grecia|Griekenland|Hellas"},
               {"HR", "Croatia|Hrvatska|Croatie|Kroatien|Croacia"},
               {"SI", "Slovenia|Slovenija|Slovenie|Slowenien|Eslovenia"},
               {"RS", "Serbia|Srbija|Serbie|Serbien"},
               {"EE", "Estonia|Eesti|Estonie|Estland"},
               {"LV", "Latvia|Latvija|Lettonie|Lettland|Letonia"},
               {"LT", "Lithuania|Lietuva|Lituanie|Litauen|Lituania"},
               {"UA", "Ukraine|Ucrania|Ucraina|Oekraine"},
               {"RU", "Russia|Russian Federation|Russie|Russland|Rusia|Russia"},
               {"TR", "Turkey|Turkiye|Turquie|Turkei|Turquia|Turchia"},
               {"CY", "Cyprus|Chypre|Zypern|Chipre|Cipro"},
               {"MT", "Malta|Malte"},
               {"MX", "Mexico|Mexique|Mexiko|Messico"},
               {"BR", "Brazil|Brasil|Bresil|Brasilien|Brasile"},
               {"AR", "Argentina|Argentine|Argentinien"},
               {"CL", "Chile|Chili"},
               {"CO", "Colombia|Colombie|Kolumbien"},
               {"PE", "Peru|Perou"},
               {"VE", "Venezuela"},
               {"UY", "Uruguay"},
               {"CN", "China|Chine|Volksrepublik China"},
               {"JP", "Japan|Japon|Giappone|Japao"},
               {"KR", "South Korea|Korea|Republic of Korea|Coree du Sud|Sudkorea|Corea del Sur"},
               {"IN", "India|Inde|Indien"},
               {"PK", "Pakistan"},
               {"BD", "Bangladesh"},
               {"ID", "Indonesia|Indonesie|Indonesien"},
               {"MY", "Malaysia|Malaisie"},
               {"SG", "Singapore|Singapour|Singapur"},
               {"TH", "Thailand|Thailande"},
               {"VN", "Vietnam|Viet Nam"},
               {"PH", "Philippines|Philippinen|Filipinas"},
               {"HK", "Hong Kong"},
               {"TW", "Taiwan"},
               {"IL", "Israel"},
               {"AE", "United Arab Emirates|UAE|Emirats Arabes Unis"},
               {"SA", "Saudi Arabia|Arabie Saoudite"},
               {"EG", "Egypt|Egypte|Agypten|Egipto"},
               {"ZA", "South Africa|Afrique du Sud|Sudafrika|Sudafrica"},
               {"NG", "Nigeria"},
               {"KE", "Kenya|Kenia"},
               {"MA", "Morocco|Maroc|Marokko|Marruecos"},
               {"TN", "Tunisia|Tunisie|Tunesien"},
               {"DZ", "Algeria|Algerie|Algerien"},
               {"AF", "Afghanistan"},
               {"AL", "Albania|Albanie|Albanien"},
               {"AD", "Andorra|Andorre"},
               {"AO", "Angola"}});
    return codes;
}
} // namespace

QString PlaceNames::regionCode(const QString& text)
{
    return regions().value(MeaningRules::plainWords(text));
}

QString PlaceNames::countryCode(const QString& text)
{
    return countries().value(MeaningRules::plainWords(text));
}

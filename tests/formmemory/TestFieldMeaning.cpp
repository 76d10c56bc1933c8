// What fields mean, told from what pages say of them: a table of fields written the way real
// contest, sign-up and checkout forms write them (dotted, bracketed and prefixed names, labels in
// seven languages, captions without labels, autofill tokens) and of fields that must not be
// taken for any meaning. The figures are printed.
#include "FieldMeaning.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {
using M = Meaning;

enum class Options { None, States, Countries, Titles, Days };

struct Case
{
    const char* tag;
    const char* name;
    const char* label;
    M expected;
    const char* autocomplete = "";
    const char* type = "text";
    const char* placeholder = "";
    const char* id = "";
    Options options = Options::None;
};

QList<std::pair<QString, QString>> optionsOf(Options kind)
{
    QList<std::pair<QString, QString>> options{{"", "Please select"}};
    const auto add = [&](const QStringList& texts, bool codes) {
        for (const QString& text : texts)
            options.append({codes ? text.section('|', 0, 0) : text.section('|', -1), text.section('|', -1)});
    };
    switch (kind) {
    case Options::States:
        add({"AL|Alabama", "AK|Alaska", "AZ|Arizona", "AR|Arkansas", "CA|California", "CO|Colorado",
             "CT|Connecticut", "DE|Delaware", "FL|Florida", "GA|Georgia", "IL|Illinois", "IN|Indiana",
             "NY|New York", "TX|Texas", "WA|Washington"}, true);
        break;
    case Options::Countries:
        add({"US|United States", "CA|Canada", "GB|United Kingdom", "IE|Ireland", "AU|Australia", "NZ|New Zealand",
             "FR|France", "DE|Germany", "AT|Austria", "CH|Switzerland", "BE|Belgium", "NL|Netherlands",
             "ES|Spain", "PT|Portugal", "IT|Italy", "DK|Denmark", "SE|Sweden", "NO|Norway", "FI|Finland",
             "PL|Poland", "MX|Mexico", "BR|Brazil", "JP|Japan", "IN|India", "ZA|South Africa"}, true);
        break;
    case Options::Titles:
        add({"mr|Mr.", "mrs|Mrs.", "ms|Ms.", "dr|Dr."}, true);
        break;
    case Options::Days:
        for (int day = 1; day <= 31; ++day)
            options.append({QString::number(day), QString::number(day)});
        break;
    case Options::None:
        options.clear();
        break;
    }
    return options;
}

const Case Fields[] = {
    // Given, additional and family names; full names; titles.
    {"input", "firstName", "First name", M::GivenName},
    {"input", "contact.firstName", "", M::GivenName},
    {"input", "addrsForm[2].firstName", "", M::GivenName},
    {"input", "SFirstName", "", M::GivenName},
    {"input", "fname", "", M::GivenName},
    {"input", "billing_first_name", "", M::GivenName},
    {"input", "ctl00$MainContent$txtFName", "", M::GivenName},
    {"input", "inputField", "Vorname", M::GivenName},
    {"input", "field_3", "Prénom", M::GivenName},
    {"input", "nombre", "Nombre", M::GivenName},
    {"input", "nome", "Nome", M::GivenName},
    {"input", "q12", "Voornaam", M::GivenName},
    {"input", "givenName", "", M::GivenName},
    {"input", "entry.1234", "First Name *", M::GivenName},
    {"input", "", "", M::GivenName, "", "text", "First name"},
    {"input", "lastName", "Last name", M::FamilyName},
    {"input", "contact.lastName", "", M::FamilyName},
    {"input", "SLastName", "", M::FamilyName},
    {"input", "lname", "", M::FamilyName},
    {"input", "billing_last_name", "", M::FamilyName},
    {"input", "x2", "Nachname", M::FamilyName},
    {"input", "nom", "Nom", M::FamilyName},
    {"input", "apellidos", "Apellidos", M::FamilyName},
    {"input", "f4", "Cognome", M::FamilyName},
    {"input", "f5", "Achternaam", M::FamilyName},
    {"input", "f6", "Sobrenome", M::FamilyName},
    {"input", "surname", "", M::FamilyName},
    {"input", "ctl00$txtLName", "", M::FamilyName},
    {"input", "fullName", "", M::FullName},
    {"input", "name", "Full name", M::FullName},
    {"input", "name", "", M::FullName},
    {"input", "yourname", "Your name", M::FullName},
    {"input", "n", "Nom complet", M::FullName},
    {"input", "n", "Nombre completo", M::FullName},
    {"input", "n", "Vor- und Nachname", M::FullName},
    {"input", "contact_name", "", M::FullName, "", "text", "First and last name"},
    {"input", "entry.name", "Name", M::FullName},
    {"input", "middleName", "Middle name", M::AdditionalName},
    {"input", "middleInitial", "", M::AdditionalName},
    {"input", "middle_name", "", M::AdditionalName},
    {"select", "title", "Title", M::Honorific, "", "", "", "", Options::Titles},
    {"select", "anrede", "Anrede", M::Honorific, "", "", "", "", Options::Titles},
    {"select", "civ", "Civilité", M::Honorific},
    {"select", "prefix", "", M::Honorific, "", "", "", "", Options::Titles},
    // E-mail.
    {"input", "email", "", M::Email, "", "email"},
    {"input", "emailAddress", "", M::Email},
    {"input", "contact.email", "", M::Email},
    {"input", "SEmail", "", M::Email},
    {"input", "field7", "E-mail", M::Email},
    {"input", "c", "Courriel", M::Email},
    {"input", "c", "E-Mail-Adresse", M::Email},
    {"input", "c", "Correo electrónico", M::Email},
    {"input", "email_confirm", "Confirm email", M::Email},
    {"input", "emailConfirmation", "", M::Email},
    {"input", "f_12", "", M::Email, "", "email"},
    {"input", "c", "Indirizzo email", M::Email},
    {"input", "user_email", "Email address", M::Email},
    {"input", "c", "", M::Email, "", "text", "Your e-mail"},
    // Phone numbers and their parts.
    {"input", "phone", "", M::Phone, "", "tel"},
    {"input", "phoneNumber", "", M::Phone},
    {"input", "billing_phone", "", M::Phone},
    {"input", "t", "Telephone", M::Phone},
    {"input", "t", "Mobile number", M::Phone},
    {"input", "t", "Téléphone", M::Phone},
    {"input", "t", "Telefonnummer", M::Phone},
    {"input", "t", "Teléfono", M::Phone},
    {"input", "t", "Cellulare", M::Phone},
    {"input", "SPhone", "", M::Phone},
    {"input", "f9", "", M::Phone, "", "tel"},
    {"input", "contact.mobilePhone", "", M::Phone},
    {"input", "phone_area", "Area code", M::PhoneAreaCode},
    {"input", "ac", "Area code", M::PhoneAreaCode},
    {"input", "phone_prefix", "", M::PhoneLocalPrefix},
    {"input", "phone_suffix", "", M::PhoneLocalSuffix},
    {"input", "phone_line", "", M::PhoneLocalSuffix},
    {"input", "phoneCountryCode", "", M::PhoneCountryCode},
    {"input", "phone_cc", "", M::PhoneCountryCode},
    {"input", "v", "Vorwahl", M::PhoneAreaCode},
    // Addresses.
    {"input", "address1", "", M::AddressLine1},
    {"input", "address2", "", M::AddressLine2},
    {"input", "addressLine1", "", M::AddressLine1},
    {"input", "billing_address_1", "", M::AddressLine1},
    {"input", "billing_address_2", "", M::AddressLine2},
    {"input", "street", "", M::AddressLine1},
    {"input", "a", "Street address", M::AddressLine1},
    {"input", "a", "Adresse", M::AddressLine1},
    {"input", "a", "Straße und Hausnummer", M::AddressLine1},
    {"input", "a", "Dirección", M::AddressLine1},
    {"input", "a", "Indirizzo", M::AddressLine1},
    {"input", "a", "Adres", M::AddressLine1},
    {"input", "a", "Endereço", M::AddressLine1},
    {"input", "a2", "Apt, suite, etc. (optional)", M::AddressLine2},
    {"input", "a2", "Address line 2", M::AddressLine2},
    {"input", "address3", "", M::AddressLine3},
    {"textarea", "address", "", M::StreetAddress},
    {"textarea", "a", "Adresse", M::StreetAddress},
    {"input", "contact.address.street", "", M::AddressLine1},
    {"input", "SAddress", "", M::AddressLine1},
    {"input", "city", "", M::City},
    {"input", "billing_city", "", M::City},
    {"input", "c", "Town/City", M::City},
    {"input", "c", "Ville", M::City},
    {"input", "c", "Stadt", M::City},
    {"input", "c", "Ort", M::City},
    {"input", "c", "Ciudad", M::City},
    {"input", "c", "Città", M::City},
    {"input", "c", "Woonplaats", M::City},
    {"input", "c", "Cidade", M::City},
    {"input", "SCity", "", M::City},
    {"input", "state", "", M::Region},
    {"select", "billing_state", "", M::Region, "", "", "", "", Options::States},
    {"select", "st", "", M::Region, "", "", "", "", Options::States},
    {"input", "p", "Province", M::Region},
    {"input", "p", "County", M::Region},
    {"input", "p", "Bundesland", M::Region},
    {"input", "p", "Provincia", M::Region},
    {"input", "p", "Estado", M::Region},
    {"input", "p", "State/Province/Region", M::Region},
    {"input", "zip", "", M::PostalCode},
    {"input", "zipCode", "", M::PostalCode},
    {"input", "postcode", "", M::PostalCode},
    {"input", "billing_postcode", "", M::PostalCode},
    {"input", "z", "Postal code", M::PostalCode},
    {"input", "z", "Code postal", M::PostalCode},
    {"input", "z", "PLZ", M::PostalCode},
    {"input", "z", "Postleitzahl", M::PostalCode},
    {"input", "z", "Código postal", M::PostalCode},
    {"input", "z", "CAP", M::PostalCode},
    {"input", "z", "Postcode", M::PostalCode},
    {"input", "z", "CEP", M::PostalCode},
    {"input", "SZip", "", M::PostalCode},
    {"input", "country", "", M::Country},
    {"select", "billing_country", "", M::Country, "", "", "", "", Options::Countries},
    {"select", "ctry", "", M::Country, "", "", "", "", Options::Countries},
    {"input", "c", "Pays", M::Country},
    {"input", "c", "Land", M::Country},
    {"input", "c", "País", M::Country},
    {"select", "c", "Country/Region", M::Country, "", "", "", "", Options::Countries},
    // Organisations.
    {"input", "company", "", M::Organization},
    {"input", "o", "Company name", M::Organization},
    {"input", "o", "Firma", M::Organization},
    {"input", "o", "Entreprise", M::Organization},
    {"input", "o", "Organisation", M::Organization},
    // Birth dates and their parts.
    {"input", "dob", "", M::BirthDate, "", "date"},
    {"input", "d", "Date of birth", M::BirthDate},
    {"select", "dob_day", "Date of birth", M::BirthDay, "", "", "", "", Options::Days},
    {"select", "dob_month", "Date of birth", M::BirthMonth},
    {"select", "dob_year", "Date of birth", M::BirthYear},
    {"input", "birthdate", "", M::BirthDate},
    {"input", "d", "Date de naissance", M::BirthDate},
    {"input", "d", "Geburtsdatum", M::BirthDate},
    {"select", "bday_d", "", M::BirthDay, "", "", "", "", Options::Days},
    {"input", "d", "Date of birth (dd/mm/yyyy)", M::BirthDate},
    {"select", "birth_month", "Birthday", M::BirthMonth},
    {"input", "d", "Fecha de nacimiento", M::BirthDate},
    {"input", "birthYear", "", M::BirthYear},
    // The page's own autofill declarations.
    {"input", "f1", "", M::GivenName, "given-name"},
    {"input", "f2", "", M::FamilyName, "family-name"},
    {"input", "f3", "", M::Email, "email"},
    {"input", "f4", "", M::PostalCode, "shipping postal-code"},
    {"input", "f5", "", M::AddressLine1, "section-a billing address-line1"},
    {"input", "f6", "", M::Phone, "tel"},
    {"input", "f7", "", M::City, "address-level2"},
    {"input", "f8", "", M::Region, "address-level1"},
    {"select", "f9", "", M::Country, "country"},
    {"select", "f10", "", M::BirthYear, "bday-year"},
    {"input", "firstName", "", M::GivenName, "off"},
    {"input", "f11", "", M::Organization, "organization"},
    {"input", "f12", "", M::FullName, "name"},
    {"input", "f13", "", M::PhoneAreaCode, "tel-area-code"},
    {"input", "f14", "", M::PhoneLocal, "tel-local"},
    {"input", "f15", "Your friend", M::Email, "email"},
};

// Fields no meaning may be given to: another person's, searches, codes, cards, secrets, questions.
const Case Others[] = {
    {"input", "friend_email", "Friend's email", M::None},
    {"input", "referral_email", "", M::None},
    {"input", "f", "Your friend's name", M::None},
    {"input", "q", "", M::None},
    {"input", "keyword", "", M::None, "", "search"},
    {"input", "s", "Search", M::None},
    {"input", "promo_code", "Promo code", M::None},
    {"input", "couponCode", "", M::None},
    {"input", "g", "Gift card number", M::None},
    {"input", "g", "Discount code", M::None},
    {"input", "g", "Code promo", M::None},
    {"input", "g", "Gutscheincode", M::None},
    {"input", "g", "Código promocional", M::None},
    {"input", "cardNumber", "", M::None},
    {"input", "cc_number", "", M::None},
    {"input", "cvv", "Security code (CVV)", M::None},
    {"input", "ccname", "Name on card", M::None, "cc-name"},
    {"input", "holder", "Name on card", M::None},
    {"input", "pwd", "", M::None},
    {"input", "p", "Passwort", M::None},
    {"input", "captcha", "", M::None},
    {"input", "captcha_code", "Enter the characters shown", M::None},
    {"textarea", "gift", "Gift message", M::None},
    {"select", "source", "How did you hear about us?", M::None},
    {"input", "u", "Username", M::None},
    {"input", "login", "", M::None},
    {"input", "n", "Nickname", M::None},
    {"input", "e", "Emergency contact name", M::None},
    {"input", "e", "Emergency contact phone", M::None},
    {"input", "j", "Job title", M::None},
    {"textarea", "comments", "Comments", M::None},
    {"textarea", "message", "Message", M::None},
    {"input", "website", "", M::None},
    {"input", "r", "Recipient's email", M::None},
    {"input", "i", "Invite a friend: email", M::None},
    {"input", "newpw", "", M::None, "new-password"},
    {"input", "code", "", M::None, "one-time-code"},
    {"input", "v", "Verification code", M::None},
    {"input", "f", "Fax", M::None},
    {"input", "b", "Place of birth", M::None},
    {"input", "m", "Mother's maiden name", M::None},
    {"input", "k", "Child's name", M::None},
    {"input", "qty", "Quantity", M::None},
    {"input", "r", "Rechercher", M::None},
    {"input", "e", "E-mail de votre ami", M::None},
    {"input", "pet_name", "", M::None},
    {"input", "w", "Company website", M::None},
    {"input", "answer", "Your answer", M::None},
    {"textarea", "essay", "Tell us in 25 words why you should win", M::None},
    {"input", "field_12", "", M::None},
    {"input", "a", "Age", M::None},
    {"input", "color", "Favourite colour", M::None},
    {"input", "entry.555", "Which prize would you choose?", M::None},
    {"input", "tax", "VAT number", M::None},
};

Meaning recognise(const Case& c)
{
    FieldDescription field;
    field.label = QString::fromUtf8(c.label);
    field.autocomplete = QString::fromLatin1(c.autocomplete);
    field.inputType = QString::fromLatin1(c.type);
    field.placeholder = QString::fromUtf8(c.placeholder);
    field.id = QString::fromLatin1(c.id);
    field.options = optionsOf(c.options);
    return RecogniseField(QString::fromLatin1(c.tag), QString::fromLatin1(c.name), field);
}

TEST(FieldMeaning, RealWorldFieldsAreRecognisedAndOthersAreLeftAlone)
{
    int right = 0;
    for (const Case& c : Fields) {
        const Meaning found = recognise(c);
        right += found == c.expected;
        if (found != c.expected)
            std::printf("  missed: %s name=%s label=%s -> %s, expected %s\n", c.tag, c.name, c.label,
                        qPrintable(MeaningKey(found)), qPrintable(MeaningKey(c.expected)));
    }
    int wrong = 0;
    for (const Case& c : Others) {
        const Meaning found = recognise(c);
        wrong += found != Meaning::None;
        EXPECT_EQ(found, Meaning::None) << c.name << " / " << c.label << " -> " << MeaningKey(found).toStdString();
    }
    const int fields = static_cast<int>(std::size(Fields));
    const int others = static_cast<int>(std::size(Others));
    std::printf("field meanings: %d of %d fields right (%.1f%%), %d of %d other fields given a meaning\n", right,
                fields, 100.0 * right / fields, wrong, others);
    EXPECT_GE(right * 100, fields * 95);
}

TEST(FieldMeaning, HostileTextsAreReadInBoundedTime)
{
    FieldDescription field;
    field.label = QString(100 * 1024, QChar(u'名')) + QStringLiteral(" email");
    field.placeholder = QString(100 * 1024, QLatin1Char('a'));
    field.autocomplete = QString(50 * 1024, QLatin1Char(' ')) + QStringLiteral("email");
    // The long texts are cut: what follows the cut is not read.
    EXPECT_EQ(RecogniseField("input", QString(100 * 1024, QLatin1Char('x')), field), Meaning::None);
    for (const char* name : {"\xd0\xb8\xd0\xbc\xd1\x8f", "\xe5\x90\x8d\xe5\x89\x8d", "\xd8\xa7\xd9\x84\xd8\xa7\xd8\xb3\xd9\x85",
                             "\xf0\x9f\x8e\x81", "a\tb\r\nc", ""}) {
        FieldDescription described;
        described.label = QString::fromUtf8(name);
        EXPECT_EQ(RecogniseField("input", QString::fromUtf8(name), described), Meaning::None) << name;
    }
    EXPECT_EQ(MeaningKey(Meaning::GivenName), QStringLiteral("given-name"));
    EXPECT_EQ(MeaningKey(Meaning::Phone), QStringLiteral("tel"));
    EXPECT_EQ(MeaningKey(Meaning::Country), QStringLiteral("country"));
}
} // namespace

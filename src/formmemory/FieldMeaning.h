#pragma once

#include "HtmlElement.h"

#include <QString>

// What a form field asks for, as far as form memory can tell: the same name, address or phone
// number is asked under many field names across sites.
enum class Meaning {
    None,
    Honorific,
    GivenName,
    AdditionalName,
    FamilyName,
    FullName,
    Email,
    Phone,
    PhoneCountryCode,
    PhoneAreaCode,
    PhoneLocal,
    PhoneLocalPrefix,
    PhoneLocalSuffix,
    StreetAddress,
    AddressLine1,
    AddressLine2,
    AddressLine3,
    City,
    Region,
    PostalCode,
    Country,
    Organization,
    BirthDate,
    BirthDay,
    BirthMonth,
    BirthYear,
};

// The key a meaning is remembered under: the standard autofill token ("given-name", "tel", ...).
QString MeaningKey(Meaning meaning);

// Names what the field means, or None. The page's own autofill token decides where it names a
// meaning (or declares the field a password, card or one-time code); then rules on its label,
// ARIA label, placeholder, name and id, in several languages. Rules that say what a field is not
// (someone else's address, a search box, a promotion code, a card, a password, a captcha) come
// first and win.
Meaning RecogniseField(const QString& tagName, const QString& name, const FieldDescription& field);

// The same for an element of a page, with what the page said of it; None (and an empty
// description) when the page no longer answers.
Meaning MeaningOf(const HtmlElement& element, FieldDescription& described);

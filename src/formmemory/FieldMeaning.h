#pragma once

#include "HtmlElement.h"

#include <QString>

// What a form field asks for, as far as form memory can tell: the same name, address or phone
// number is asked under many field names across sites.
enum class Meaning
{
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
    PhoneExtension,
    StreetAddress,
    AddressLine1,
    AddressLine2,
    AddressLine3,
    HouseNumber,
    StreetName,
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

// What recognising a field found. A wrong value is worse than none, so only a sure meaning is
// learnt from or filled by; a bare "Name" depends on the page's other fields (a given-name box
// beside it makes it the family name), which the fill looks at; a field for someone else or for
// a contest's answer is never the user's own.
struct Recognition
{
    Meaning meaning = Meaning::None;
    bool sure = false;
    // A bare "Name" ("Nom", "Nombre"): full name alone, the other part beside a given or family
    // name. `meaning` is what it is alone (None where alone says nothing sure).
    bool bareName = false;
    // A friend's, a recipient's or a contest answer: kept for its site only, never given a meaning.
    bool someoneElses = false;
};

// The key a meaning is remembered under: the standard autofill token ("given-name", "tel", ...),
// or a key of our own where no token exists.
QString MeaningKey(Meaning meaning);

// Names what the field means. A field for someone else (by its texts or its part of the form)
// is that first, whatever the page's autofill token says; then the token decides where it names
// a meaning (or declares the field a password, card or one-time code); then the field's own
// texts, the nearest first (label, ARIA label, placeholder, caption, name, id), in several
// languages. A source that names something none of the meanings covers ends the search.
Recognition RecogniseField(const QString& tagName, const QString& name,
                           const FieldDescription& field);

// The same for an element of a page, with what the page said of it; nothing (and an empty
// description) when the page no longer answers.
Recognition MeaningOf(const HtmlElement& element, FieldDescription& described);

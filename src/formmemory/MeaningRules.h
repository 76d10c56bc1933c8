#pragma once

#include "FieldMeaning.h"

#include <QStringList>

// The word rules behind RecogniseField, in English, French, German, Spanish, Italian, Dutch and
// Portuguese.
namespace MeaningRules {

// A field's texts made comparable: lower case, accents dropped, one blank between words, each
// wrapped in blanks. Identifiers are cut at case changes, digits and punctuation
// ("billing_firstName2" reads " billing first name 2 "), and also kept run together
// ("billingfirstname2") for names such as "txtFName".
struct Texts
{
    QStringList human;       // label, ARIA label, placeholder: what the user reads
    QStringList identifiers; // name and id
    QString compact;         // name and id run together
    QStringList all() const { return human + identifiers; }
};

Texts textsOf(const QString& name, const QString& id, const QStringList& humanTexts);

// The field is for something none of the meanings covers (and that must not be filled with them).
bool saysOther(const Texts& texts);

// The first meaning a source names, sources in order. Honorifics only where a list offers them.
Meaning fromTexts(const Texts& texts, bool isList);

// "Mr", "Mrs", "Frau", "Mme", ...
bool isHonorific(const QString& text);

// Lower case, accents dropped, every run of other than letters and digits one blank.
QString plainWords(const QString& text);

} // namespace MeaningRules

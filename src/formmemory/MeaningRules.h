#pragma once

#include "FieldMeaning.h"

#include <QStringList>
#include <optional>

// The word rules behind RecogniseField, in English, French, German, Spanish, Italian, Dutch and
// Portuguese, with the forms of the UK, Canada and Australia.
namespace MeaningRules {

// A field's texts made comparable: lower case, accents dropped, one blank between words.
// Identifiers are cut at case changes, digits and punctuation ("billing_firstName2" reads
// "billing first name 2"), and also kept run together ("billingfirstname2") for names such as
// "txtFName".
struct Texts
{
    QStringList human;       // label, ARIA label, placeholder: what the user reads, nearest first
    QStringList identifiers; // name and id
    QString compact;         // name and id run together
    QString section;         // the legend or heading of the field's part of the form
    QStringList all() const { return human + identifiers; }
};

Texts textsOf(const QString& name, const QString& id, const QStringList& humanTexts,
              const QString& section = {});

// A friend's, a recipient's, another person's field, or a contest's question to answer.
bool forSomeoneElse(const Texts& texts);

// What the texts say, source by source, the nearest first; nothing at all where a text names a
// field of another kind (no input type may make it one of ours). Honorifics only where a list
// offers them.
std::optional<Recognition> fromTexts(const Texts& texts, bool isList);

// "Mr", "Mrs", "Frau", "Mme", ...
bool isHonorific(const QString& text);

// Lower case, accents dropped, every run of other than letters and digits one blank.
QString plainWords(const QString& text);

} // namespace MeaningRules

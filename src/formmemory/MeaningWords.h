#pragma once

#include "FieldMeaning.h"

#include <QRegularExpression>
#include <vector>

// The words behind the field rules, as patterns over plain words (see MeaningRules::plainWords).
namespace MeaningWords {

struct Rule
{
    Meaning meaning;
    QRegularExpression pattern;
};

// Alternatives that must stand as whole words.
QRegularExpression words(const char* alternatives);
// What a pattern made by words() accepts, without its word edges: to join several into one.
QString alternativesOf(const QRegularExpression& pattern);
// The word edges around joined alternatives.
QRegularExpression wordsOf(const QString& alternatives);

// Another person's field: a friend, a referral, a recipient, family, an emergency contact.
const QRegularExpression& someoneElse();
// The heading of a part of a form that is for someone else ("Refer a friend").
const QRegularExpression& someoneElsesSection();
// A contest's question or task: the answer is the user's, but no personal data.
const QRegularExpression& question();
// Either, as what a user reads may say (one search instead of two).
const QRegularExpression& someoneElseOrQuestion();
// Fields of another kind that a meaning must never fill: codes, cards, secrets, searches,
// accounts, stores, ... They win over any meaning named beside them.
const QRegularExpression& otherKind();
// Weaker: a meaning named in the same text wins ("Date of birth (you must be of legal age)").
const QRegularExpression& weakOther();

const QRegularExpression& birthWords();
const QRegularExpression& phoneWords();
// "(including area code)": what a whole number's caption says of its form.
const QRegularExpression& phoneFormNote();
const std::vector<Rule>& birthParts();
const std::vector<Rule>& phoneParts();
// In order: the first rule a text matches names the field.
const std::vector<Rule>& rules();
// Identifiers run together: the words must sit inside them.
const std::vector<Rule>& compactRules();
// "Name", "Nom", "Nombre", "Nome", "Naam" standing alone.
const QRegularExpression& bareName();
// What refines a bare name given elsewhere ("Name" over a box whose placeholder says "First").
const std::vector<Rule>& nameParts();

} // namespace MeaningWords

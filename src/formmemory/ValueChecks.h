#pragma once

#include "FieldMeaning.h"

#include <QString>

// What a value typed into a field of some meaning is remembered as by that meaning: the value
// itself, or its standard form (a birth date as an ISO date); empty when it is not such a value
// at all (a placeholder choice, a code, an e-mail in a name box, the state in a street box),
// which must never replace what memory holds.
QString ValueToRemember(Meaning meaning, const QString& value, const FieldDescription& field);

// A list's option that only asks for a choice ("Select an option…", "-- Choose --").
bool IsPlaceholderChoice(const QString& value, const QString& text);

// A whole number from `from` to `to` ("17", " 1990 ").
bool IsNumberBetween(const QString& text, int from, int to);

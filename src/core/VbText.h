#pragma once

#include <QString>

// Text helpers with the classic semantics the data files were written with.

// Removes leading and trailing spaces only (tabs and other blanks stay).
QString TrimSpaces(const QString& text);

// Reads the number at the start of a text: leading blanks skipped, optional sign, digits with
// one optional decimal point; anything else ends the number. No number at all gives 0.
double Val(const QString& text);

// Equal when upper-cased and stripped of surrounding spaces.
bool SameText(const QString& a, const QString& b);

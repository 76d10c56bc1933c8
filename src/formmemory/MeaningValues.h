#pragma once

#include "FieldMeaning.h"

#include <QString>
#include <functional>

// What a field of some meaning is filled with: the value remembered for that meaning, or one
// made from related ones where a site asks in another form (a given name from a full name, a
// full name from its parts, an area code from a whole phone number, a whole one from its parts,
// the parts of a birth date from the date).
class MeaningValues
{
public:
    // `remembered` gives the value kept under a meaning's key, empty when none.
    explicit MeaningValues(std::function<QString(const QString&)> remembered)
        : m_remembered(std::move(remembered))
    {
    }

    // Empty when nothing is known; in the form the field asks for (a birth date as it writes
    // dates, a street address on one line where the field has one).
    QString valueFor(Meaning meaning, const FieldDescription& field = {},
                     bool multiLine = true) const;

private:
    QString stored(Meaning meaning) const { return m_remembered(MeaningKey(meaning)); }
    QString madeFor(Meaning meaning) const;
    // The first line's house number and street apart: "12 Main St", "Hauptstrasse 5".
    QStringList streetParts() const;
    // The ten digits of a national number (North American form), or empty.
    QString nationalDigits() const;

    std::function<QString(const QString&)> m_remembered;
};

// The option of a list that a remembered value picks: by value or text, letter case, accents
// and blanks ignored; the same number ("05" and "5"); a month by name or number; a state or
// country by code or name. -1 when none does.
int MatchingOption(Meaning meaning, const QString& value,
                   const QList<std::pair<QString, QString>>& options);

// What a list's chosen option is remembered as: its text ("Illinois", not "14"), its value where
// it shows none; empty for a placeholder ("Select an option…").
QString ChosenOptionText(const QList<std::pair<QString, QString>>& options, int selectedIndex,
                         const QString& value);

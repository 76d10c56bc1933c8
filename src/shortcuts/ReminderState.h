#pragma once

#include <QDate>
#include <optional>

// The state pictures of the shortcut list.
namespace StateIcon {
constexpr int NoReminder = 1;
constexpr int Daily = 2;
constexpr int Weekly = 3;
constexpr int Monthly = 4;
constexpr int Due = 5;
constexpr int Expired = 6;
} // namespace StateIcon

// What the row's icon becomes, or nullopt to leave it as it is. A null date means none.
// A shortcut is due when some reminder date (start plus whole intervals, at most 10000 of
// them) lies on or after the last visit's day and before today. Throws for a reminder above 3
// with a start date, which has no interval.
std::optional<int> ShortcutState(const QDate& start, int reminder, const QDate& lastVisit,
                                 const QDate& end, const QDate& today);

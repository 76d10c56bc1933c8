#include "ReminderState.h"

#include "AppError.h"

namespace {
constexpr int MaxReminderDates = 10000;

QDate reminderDate(const QDate& start, int reminder, int k)
{
    switch (reminder) {
    case 1:
        return start.addDays(k);
    case 2:
        return start.addDays(7LL * k);
    default:
        // Counted from the start each time, so 31 January gives 28 February, then 31 March.
        return start.addMonths(k);
    }
}
} // namespace

std::optional<int> ShortcutState(const QDate& start, int reminder, const QDate& lastVisit,
                                 const QDate& end, const QDate& today)
{
    if (end.isValid() && end < today)
        return StateIcon::Expired;
    if (!start.isValid() || reminder < 1)
        return std::nullopt;
    if (reminder > 3)
        throw AppError(ErrorNumber::InvalidCall,
                       QStringLiteral("Invalid procedure call or argument"));

    const int icon = StateIcon::Daily + reminder - 1;
    if (reminder < 3) {
        // Fixed intervals: go straight to the first reminder date on or after the last visit.
        const qint64 step = reminder == 1 ? 1 : 7;
        qint64 k = 1;
        if (lastVisit.isValid() && start.daysTo(lastVisit) > step)
            k = (start.daysTo(lastVisit) + step - 1) / step;
        if (k > MaxReminderDates)
            return icon;
        const QDate date = start.addDays(step * k);
        return (!lastVisit.isValid() || date >= lastVisit) && date < today ? StateIcon::Due : icon;
    }
    for (int k = 1; k <= MaxReminderDates; ++k) {
        const QDate date = reminderDate(start, reminder, k);
        if ((!lastVisit.isValid() || date >= lastVisit) && date < today)
            return StateIcon::Due;
        if (date > today)
            break;
    }
    return icon;
}

#pragma once

#include <QDateTime>
#include <optional>

// Dates as the data files hold them: one fixed form that reads back the same on every machine
// ("M/D/YYYY h:mm:ss AM", or "M/D/YYYY" for a date alone). Reading also accepts ISO 8601 and
// the user's locale, for files written elsewhere.
namespace DateText {

QString fromDateTime(const QDateTime& value);
QString fromDate(const QDate& value);
// nullopt when the text is no date; a date alone reads as its midnight.
std::optional<QDateTime> toDateTime(const QString& text);

// For the user: the locale's short date (with a four-digit year), a blank and "h:mm AM".
QString display(const QDateTime& value);
// The user's locale's short date form, with a four-digit year.
QString shortDateFormat();

} // namespace DateText

#pragma once

#include <QDateTime>
#include <optional>

// Dates as the data files hold them: ISO 8601 ("YYYY-MM-DD hh:mm:ss", or "YYYY-MM-DD" for a
// date alone), which reads back the same in every locale, on every machine, and in the Windows
// release. Reading also accepts what the Windows release wrote in the user's locale and the
// "M/D/YYYY h:mm:ss AM" form of earlier versions.
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

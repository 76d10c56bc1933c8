#pragma once

#include <QDateTime>
#include <QString>
#include <optional>

class Clock;
class DataLocation;
class ErrorReport;
class Ini;

// Every page address has a site file of its own; it holds the values remembered for the
// address and its visit record (last visit, number of days visited).
class SiteFiles
{
public:
    SiteFiles(const Ini& ini, const DataLocation& location, ErrorReport& errors,
              const Clock& clock);

    // The site file name (no folder): profile prefix and allowed address characters, cut to
    // 40, then ".ini".
    QString URL2INIFile(QString address) const;
    // DataFolder + separator + URL2INIFile(address).
    QString SiteFilePath(const QString& address) const;

    // Records a visit now: the last visit always, one more day when the last one was on
    // another day.
    void SetLastVisit(const QString& address);
    // The last visit for the user, or "never".
    QString GetLastVisit(const QString& address);
    // The last visit as stored, for computing with: the display text of GetLastVisit is the
    // user's locale's and reads back wrongly in day-first locales. nullopt for none ("never").
    std::optional<QDateTime> LastVisitDate(const QString& address);
    int GetTotalVisits(const QString& address);

    // The value as a date and time when it reads as one; today at midnight otherwise.
    QDateTime SafeDate(const QString& value) const;

    // The current profile's site files (names without folder, as URL2INIFile gives them), in
    // name order.
    QStringList SiteFileNames() const;
    bool IsSiteFileName(const QString& name) const;
    // The same for any profile's prefix and folder.
    static QStringList SiteFileNames(const QString& folder, const QString& prefix);
    static bool IsSiteFileName(const QString& name, const QString& prefix);
    // The visit record of a site file, by its name: the last visit as GetLastVisit shows it, and
    // the days visited.
    struct VisitRecord
    {
        QString lastVisit;
        int days = 0;
    };
    VisitRecord VisitsOfFile(const QString& name) const;

private:
    const Ini& m_ini;
    const DataLocation& m_location;
    ErrorReport& m_errors;
    const Clock& m_clock;
    struct LastPath
    {
        QString address;
        QString prefix;
        QString folder;
        QString path;
    };
    mutable LastPath m_lastPath;
};

// The section of a site file that holds its visit record; every other section holds values.
inline const QString VisitSection = QStringLiteral("URL");
inline bool IsVisitSection(const QString& section)
{
    return section.compare(VisitSection, Qt::CaseInsensitive) == 0;
}

// The leading number of a text rounded to a whole number, as the data files count; throws
// AppError (overflow) beyond the 32-bit range.
int WholeNumber(const QString& text);

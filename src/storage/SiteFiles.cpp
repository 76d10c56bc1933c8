#include "SiteFiles.h"

#include "AppError.h"
#include "Clock.h"
#include "DataLocation.h"
#include "DateText.h"
#include "ErrorReport.h"
#include "Ini.h"
#include "VbText.h"

#include <QDir>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
const QString AllowedCharacters =
    QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789^&'@{}[],$=!-#()%.+~_");
constexpr qsizetype MaxNameLength = 40;
constexpr int Overflow = 6;
const QString LastVisitKey = QStringLiteral("LastVisit");
const QString VisitsKey = QStringLiteral("Visits");
} // namespace

int WholeNumber(const QString& text)
{
    // Halves go to the even neighbour, as the classic conversion did.
    const double rounded = std::nearbyint(Val(text));
    if (rounded < std::numeric_limits<int>::min() || rounded > std::numeric_limits<int>::max())
        throw AppError(Overflow, QStringLiteral("Overflow"));
    return static_cast<int>(rounded);
}

SiteFiles::SiteFiles(const Ini& ini, const DataLocation& location, ErrorReport& errors,
                     const Clock& clock)
    : m_ini(ini), m_location(location), m_errors(errors), m_clock(clock)
{
}

QString SiteFiles::URL2INIFile(QString address) const
{
    const QString original = address;
    try {
        QString name = m_location.GetProfilePrefix(-1);
        address.replace(QLatin1String("http://"), QString());
        address.replace(QLatin1String("//"), QString());
        address.replace(QLatin1String("\\\\"), QString());
        address.replace(QLatin1Char('/'), QLatin1Char('!'));
        address.replace(QLatin1Char('\\'), QLatin1Char('!'));
        for (const QChar c : std::as_const(address)) {
            const QChar upper = c.toUpper();
            if (upper.unicode() < 128 && AllowedCharacters.contains(upper))
                name += upper;
            // Nothing further can make it into the name.
            if (name.size() >= MaxNameLength)
                break;
        }
        return name.left(MaxNameLength) + QStringLiteral(".ini");
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("URL2INIFile ") + original);
        return {};
    }
}

QString SiteFiles::SiteFilePath(const QString& address) const
{
    // A fill asks for the same site's file once per field: the last answer is kept, for as
    // long as the profile and the data folder are the same.
    const QString prefix = m_location.GetProfilePrefix(-1);
    const QString folder = m_location.DataFolder();
    if (address != m_lastPath.address || prefix != m_lastPath.prefix || folder != m_lastPath.folder)
        m_lastPath = {address, prefix, folder, DataFilePath(m_location, URL2INIFile(address))};
    return m_lastPath.path;
}

void SiteFiles::SetLastVisit(const QString& address)
{
    try {
        const QString file = SiteFilePath(address);
        const QDateTime now = m_clock.now();
        const QString yesterday = DateText::fromDate(now.date().addDays(-1));
        const QDateTime previous =
            SafeDate(m_ini.ReadINI(VisitSection, LastVisitKey, yesterday, file));
        m_ini.WriteINI(VisitSection, LastVisitKey, DateText::fromDateTime(now), file);
        if (previous.date() != now.date()) {
            const int visits =
                WholeNumber(m_ini.ReadINI(VisitSection, VisitsKey, QStringLiteral("0"), file));
            if (visits == std::numeric_limits<int>::max())
                throw AppError(Overflow, QStringLiteral("Overflow"));
            m_ini.WriteINI(VisitSection, VisitsKey, QString::number(visits + 1), file);
        }
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("SetLastVisit"));
    }
}

QString SiteFiles::GetLastVisit(const QString& address)
{
    QString text;
    try {
        text = m_ini.ReadINI(VisitSection, LastVisitKey, QStringLiteral("never"),
                             SiteFilePath(address));
        if (const auto visit = DateText::toDateTime(text))
            return DateText::display(*visit);
        return text;
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("GetLastVisit"));
        return text;
    }
}

std::optional<QDateTime> SiteFiles::LastVisitDate(const QString& address)
{
    try {
        return DateText::toDateTime(
            m_ini.ReadINI(VisitSection, LastVisitKey, QString(), SiteFilePath(address)));
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("GetLastVisit"));
        return std::nullopt;
    }
}

int SiteFiles::GetTotalVisits(const QString& address)
{
    try {
        return WholeNumber(
            m_ini.ReadINI(VisitSection, VisitsKey, QStringLiteral("0"), SiteFilePath(address)));
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("GetTotalVisits"));
        return 0;
    }
}

QDateTime SiteFiles::SafeDate(const QString& value) const
{
    return DateText::toDateTime(value).value_or(m_clock.now().date().startOfDay());
}

bool SiteFiles::IsSiteFileName(const QString& name) const
{
    return IsSiteFileName(name, m_location.GetProfilePrefix(-1));
}

QStringList SiteFiles::SiteFileNames() const
{
    return SiteFileNames(m_location.DataFolder(), m_location.GetProfilePrefix(-1));
}

bool SiteFiles::IsSiteFileName(const QString& name, const QString& prefix)
{
    if (!name.startsWith(prefix) || !name.endsWith(QLatin1String(".ini")) ||
        name.size() > MaxNameLength + 4)
        return false;
    const QStringView proper = QStringView(name).sliced(prefix.size()).chopped(4);
    return std::all_of(proper.begin(), proper.end(),
                       [](QChar c) { return AllowedCharacters.contains(c); });
}

QStringList SiteFiles::SiteFileNames(const QString& folder, const QString& prefix)
{
    QStringList names;
    const QStringList files =
        QDir(folder).entryList({prefix + QStringLiteral("*.ini")}, QDir::Files, QDir::Name);
    for (const QString& name : files) {
        if (IsSiteFileName(name, prefix))
            names.append(name);
    }
    return names;
}

SiteFiles::VisitRecord SiteFiles::VisitsOfFile(const QString& name) const
{
    const QString file = DataFilePath(m_location, name);
    VisitRecord record;
    record.lastVisit = m_ini.ReadINI(VisitSection, LastVisitKey, QStringLiteral("never"), file);
    if (const auto visit = DateText::toDateTime(record.lastVisit))
        record.lastVisit = DateText::display(*visit);
    try {
        record.days =
            WholeNumber(m_ini.ReadINI(VisitSection, VisitsKey, QStringLiteral("0"), file));
    } catch (const AppError&) {
        record.days = 0; // beyond any count: no number the user can use
    }
    return record;
}

#include "RememberedValues.h"

#include "DataLocation.h"
#include "Ini.h"
#include "SiteFiles.h"
#include "ValueStore.h"
#include "VbText.h"

#include <QFile>

namespace {
bool isBlank(const QString& value)
{
    return TrimSpaces(EscapeLineBreaks(value)).isEmpty();
}
} // namespace

RememberedValues::RememberedValues(const Ini& ini, const DataLocation& location,
                                   const ValueStore& values, const SiteFiles& sites)
    : m_ini(ini), m_location(location), m_values(values), m_sites(sites)
{
}

QList<RememberedValues::Entry> RememberedValues::general() const
{
    const QString any = m_values.anyFile();
    QList<Entry> entries;
    const auto meanings = m_ini.Entries(FieldMeaningSection, any);
    const auto meaningOf = [&meanings](const QString& name) {
        for (const auto& [key, meaning] : meanings) {
            if (key.compare(name, Qt::CaseInsensitive) == 0)
                return meaning == QLatin1String(NoMeaningKey) ? QString() : meaning;
        }
        return QString();
    };
    for (const auto& [name, value] : m_ini.Entries(AnySection, any))
        entries.append({Kind::Name, name, meaningOf(name), UnescapeLineBreaks(value)});
    for (const auto& [meaning, value] : m_ini.Entries(MeaningSection, any))
        entries.append({Kind::Meaning, meaning, meaning, UnescapeLineBreaks(value)});
    return entries;
}

QList<RememberedValues::Site> RememberedValues::sites() const
{
    QList<Site> sites;
    for (const QString& file : m_sites.SiteFileNames()) {
        const QString path = sitePath(file);
        Site site{file, QString(), QString(), 0, 0};
        for (const QString& section : m_ini.SectionNames(path)) {
            if (IsVisitSection(section))
                continue;
            if (site.address.isEmpty())
                site.address = section;
            site.values += static_cast<int>(m_ini.Entries(section, path).size());
        }
        // A file that holds visits only keeps no address: its name stands for it.
        if (site.address.isEmpty())
            site.address = file.mid(m_location.GetProfilePrefix(-1).size()).chopped(4);
        const SiteFiles::VisitRecord visits = m_sites.VisitsOfFile(file);
        site.lastVisit = visits.lastVisit;
        site.days = visits.days;
        sites.append(site);
    }
    return sites;
}

QList<RememberedValues::SiteValue> RememberedValues::siteValues(const QString& file) const
{
    QList<SiteValue> values;
    const QString path = sitePath(file);
    if (path.isEmpty())
        return values;
    for (const QString& section : m_ini.SectionNames(path)) {
        if (IsVisitSection(section))
            continue;
        for (const auto& [key, value] : m_ini.Entries(section, path))
            values.append({section, key, UnescapeLineBreaks(value)});
    }
    return values;
}

bool RememberedValues::change(const Entry& entry, const QString& value) const
{
    if (isBlank(value))
        return false;
    const QString section = entry.kind == Kind::Name ? AnySection : MeaningSection;
    return m_ini.WriteINI(section, entry.name, EscapeLineBreaks(value), m_values.anyFile()) != 0;
}

bool RememberedValues::remove(const Entry& entry) const
{
    const QString any = m_values.anyFile();
    if (entry.kind == Kind::Meaning)
        return m_ini.RemoveINI(MeaningSection, entry.name, any);
    if (!m_ini.RemoveINI(AnySection, entry.name, any))
        return false;
    // The meaning it was typed under goes with it.
    m_ini.RemoveINI(FieldMeaningSection, entry.name, any);
    return true;
}

bool RememberedValues::change(const QString& file, const SiteValue& entry,
                              const QString& value) const
{
    const QString path = sitePath(file);
    return !path.isEmpty() && !isBlank(value) && !IsVisitSection(entry.address) &&
           m_ini.WriteINI(entry.address, entry.key, EscapeLineBreaks(value), path) != 0;
}

bool RememberedValues::remove(const QString& file, const SiteValue& entry) const
{
    const QString path = sitePath(file);
    return !path.isEmpty() && !IsVisitSection(entry.address) &&
           m_ini.RemoveINI(entry.address, entry.key, path);
}

bool RememberedValues::forgetSite(const QString& file) const
{
    const QString path = sitePath(file);
    return !path.isEmpty() && QFile::remove(path);
}

bool RememberedValues::matches(const Entry& entry, const QString& filter)
{
    const QString wanted = filter.trimmed();
    return wanted.isEmpty() || entry.name.contains(wanted, Qt::CaseInsensitive) ||
           entry.meaning.contains(wanted, Qt::CaseInsensitive) ||
           entry.value.contains(wanted, Qt::CaseInsensitive);
}

QString RememberedValues::sitePath(const QString& file) const
{
    // Only a site file of the current profile: never Any.ini, the shortcuts or another profile's.
    return m_sites.IsSiteFileName(file) ? DataFilePath(m_location, file) : QString();
}

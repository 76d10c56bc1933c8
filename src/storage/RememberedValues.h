#pragma once

#include <QList>
#include <QString>

class DataLocation;
class Ini;
class SiteFiles;
class ValueStore;

// What the current profile remembers, for the user to see and correct: the values for any site
// (by field name, and by meaning) and the site files with their values and visits. Changes are
// written entry by entry through the same INI calls as a capture, so the files stay what other
// programs read; a change takes effect at the next read, that is at the next fill.
class RememberedValues
{
public:
    enum class Kind
    {
        Name,   // [Any] of Any.ini, by the field's name
        Meaning // [Meaning] of Any.ini, by what the field means
    };
    struct Entry
    {
        Kind kind = Kind::Name;
        QString name;    // as stored
        QString meaning; // for a name: the meaning of the field it was typed in, if known
        QString value;   // line breaks as typed
    };
    struct Site
    {
        QString file;    // name without folder
        QString address; // the first address the file holds values for, or its name
        QString lastVisit;
        int days = 0;
        int values = 0;
    };
    struct SiteValue
    {
        QString address; // the section: the address the value was typed at
        QString key;
        QString value;
    };

    RememberedValues(const Ini& ini, const DataLocation& location, const ValueStore& values,
                     const SiteFiles& sites);

    QList<Entry> general() const;
    QList<Site> sites() const;
    QList<SiteValue> siteValues(const QString& file) const;

    // Each false when nothing was written: a blank value (remove the entry instead), a name or
    // value the file cannot hold, a file that cannot be written, or not a site file.
    bool change(const Entry& entry, const QString& value) const;
    bool remove(const Entry& entry) const;
    bool change(const QString& file, const SiteValue& entry, const QString& value) const;
    bool remove(const QString& file, const SiteValue& entry) const;
    bool forgetSite(const QString& file) const;

    // Whether the filter text is in the entry's name, meaning or value (any letter case).
    static bool matches(const Entry& entry, const QString& filter);

private:
    QString sitePath(const QString& file) const;

    const Ini& m_ini;
    const DataLocation& m_location;
    const ValueStore& m_values;
    const SiteFiles& m_sites;
};

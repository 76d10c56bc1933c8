#pragma once

#include <QString>

#include <functional>
#include <optional>

class DataLocation;
class ErrorReport;
class Ini;
class SiteFiles;

// The remembered form values: each one for its site and, when not blank, for any site in the
// profile's Any.ini. Line breaks are kept as "<VBCR>" and "<VBLF>".
// Where a remembered value counts: on every site (through Any.ini), or on its own site only.
enum class ValueReach
{
    AnySite,
    SiteOnly
};

class ValueStore
{
public:
    ValueStore(const Ini& ini, const DataLocation& location, ErrorReport& errors,
               const SiteFiles& sites);

    // The site's value, else the profile's value for any site, else the default; unescaped.
    QString GetValue(const QString& site, const QString& key, const QString& defaultValue,
                     ValueReach reach = ValueReach::AnySite);
    // `meaning`, where given, is the meaning key of the field the value was typed in ("" for a
    // field of no meaning): the entry for any site remembers it, so that another site's field
    // of another meaning under the same name is not filled with it.
    // `anyKey`, where not empty, is the key of the entry for any site when it differs from the
    // site's (a field told apart on its page is the same name on other sites).
    void SetValue(const QString& site, const QString& key, const QString& value,
                  ValueReach reach = ValueReach::AnySite,
                  const std::optional<QString>& meaning = std::nullopt, const QString& anyKey = {});
    // As GetValue, where what counts when neither entry holds a value is left to `missing`
    // (asked only then; its text is taken as it is). The entry for any site counts only where
    // `takesMeaning` accepts the meaning it was typed under ("" where none was remembered, as
    // in files of older releases).
    QString ValueOr(const QString& site, const QString& key, ValueReach reach,
                    const std::function<QString()>& missing,
                    const std::function<bool(const QString&)>& takesMeaning = {},
                    const QString& anyKey = {});

    // Values remembered by what a field means ("given-name", "postal-code"), for any site, in a
    // section of Any.ini that no name a page chooses can reach. Only values that are not blank
    // are written.
    QString MeaningValue(const QString& meaning);
    void SetMeaningValue(const QString& meaning, const QString& value);
    // The profile's file of values for any site.
    QString anyFile() const;

private:
    const Ini& m_ini;
    const DataLocation& m_location;
    ErrorReport& m_errors;
    const SiteFiles& m_sites;
};

// The sections of Any.ini.
inline const QString AnySection = QStringLiteral("Any");
// Page-chosen names are keys of [Any]; this section's keys are the program's own.
inline const QString MeaningSection = QStringLiteral("Meaning");
// The meaning of the field each [Any] entry was typed in, by the entry's name.
inline const QString FieldMeaningSection = QStringLiteral("Field Meanings");

QString EscapeLineBreaks(QString value);
// The meaning key an entry for any site records for a field of no meaning.
inline const char* const NoMeaningKey = "none";
// Both escapes are matched without regard to letter case.
QString UnescapeLineBreaks(QString value);

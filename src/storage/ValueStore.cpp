#include "ValueStore.h"

#include "AppError.h"
#include "DataLocation.h"
#include "ErrorReport.h"
#include "Ini.h"
#include "SiteFiles.h"
#include "VbText.h"

namespace {
const QString CrEscape = QStringLiteral("<VBCR>");
const QString LfEscape = QStringLiteral("<VBLF>");
} // namespace

QString EscapeLineBreaks(QString value)
{
    return value.replace(QLatin1Char('\r'), CrEscape).replace(QLatin1Char('\n'), LfEscape);
}

QString UnescapeLineBreaks(QString value)
{
    return value.replace(CrEscape, QStringLiteral("\r"), Qt::CaseInsensitive)
        .replace(LfEscape, QStringLiteral("\n"), Qt::CaseInsensitive);
}

ValueStore::ValueStore(const Ini& ini, const DataLocation& location, ErrorReport& errors,
                       const SiteFiles& sites)
    : m_ini(ini), m_location(location), m_errors(errors), m_sites(sites)
{
}

QString ValueStore::anyFile() const
{
    return DataFilePath(m_location, m_location.GetProfilePrefix(-1) + QStringLiteral("Any.ini"));
}

QString ValueStore::GetValue(const QString& site, const QString& key, const QString& defaultValue,
                             ValueReach reach)
{
    return ValueOr(site, key, reach, [&defaultValue] { return UnescapeLineBreaks(defaultValue); });
}

QString ValueStore::ValueOr(const QString& site, const QString& key, ValueReach reach,
                            const std::function<QString()>& missing,
                            const std::function<bool(const QString&)>& takesMeaning,
                            const QString& anyKey)
{
    QString value;
    try {
        value = m_ini.ReadINI(site, key, QString(), m_sites.SiteFilePath(site));
        const QString& nameForAny = anyKey.isEmpty() ? key : anyKey;
        if (value.isEmpty() && reach == ValueReach::AnySite) {
            value = m_ini.ReadINI(AnySection, nameForAny, QString(), anyFile());
            if (!value.isEmpty() && takesMeaning &&
                !takesMeaning(m_ini.ReadINI(FieldMeaningSection, nameForAny, QString(), anyFile())))
                value.clear();
        }
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("GetValue"));
        return {};
    }
    return value.isEmpty() ? missing() : UnescapeLineBreaks(value);
}

QString ValueStore::MeaningValue(const QString& meaning)
{
    try {
        return UnescapeLineBreaks(m_ini.ReadINI(MeaningSection, meaning, QString(), anyFile()));
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("GetValue"));
        return {};
    }
}

void ValueStore::SetMeaningValue(const QString& meaning, const QString& value)
{
    const QString escaped = EscapeLineBreaks(value);
    if (TrimSpaces(escaped).isEmpty())
        return;
    try {
        m_ini.WriteINI(MeaningSection, meaning, escaped, anyFile());
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("SetValue"));
    }
}

void ValueStore::SetValue(const QString& site, const QString& key, const QString& value,
                          ValueReach reach, const std::optional<QString>& meaning,
                          const QString& anyKey)
{
    try {
        const QString escaped = EscapeLineBreaks(value);
        m_ini.WriteINI(site, key, escaped, m_sites.SiteFilePath(site));
        const QString& nameForAny = anyKey.isEmpty() ? key : anyKey;
        if (reach == ValueReach::AnySite && !TrimSpaces(escaped).isEmpty()) {
            m_ini.WriteINI(AnySection, nameForAny, escaped, anyFile());
            // Written when it changes only: a capture comes with every key the user types.
            const QString record = meaning && meaning->isEmpty() ? QString::fromLatin1(NoMeaningKey)
                                                                 : meaning.value_or(QString());
            if (meaning &&
                m_ini.ReadINI(FieldMeaningSection, nameForAny, QString(), anyFile()) != record)
                m_ini.WriteINI(FieldMeaningSection, nameForAny, record, anyFile());
        }
    } catch (const AppError& error) {
        m_errors.ReportError(error, QStringLiteral("SetValue"));
    }
}

#include "QtSettingsStore.h"

#include "AppError.h"
#include "PrivateFiles.h"

QtSettingsStore::QtSettingsStore()
    : m_settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Tolvane"),
                 QStringLiteral("Tolvane"))
{
}

QtSettingsStore::QtSettingsStore(const QString& file) : m_settings(file, QSettings::IniFormat) {}

QString QtSettingsStore::GetSetting(const QString& section, const QString& key,
                                    const QString& defaultValue)
{
    m_settings.sync();
    return m_settings.value(section + QLatin1Char('/') + key, defaultValue).toString();
}

void QtSettingsStore::SaveSetting(const QString& section, const QString& key, const QString& value)
{
    m_settings.setValue(section + QLatin1Char('/') + key, value);
    m_settings.sync();
    KeepPrivate(m_settings.fileName());
    if (m_settings.status() != QSettings::NoError)
        throw AppError(
            ErrorNumber::PathNotFound,
            QStringLiteral("The settings could not be saved to %1.").arg(m_settings.fileName()));
}

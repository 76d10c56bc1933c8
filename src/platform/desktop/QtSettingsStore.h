#pragma once

#include "SettingsStore.h"

#include <QSettings>

// The settings store on QSettings: one group per section, under the application "Tolvane".
class QtSettingsStore : public SettingsStore
{
public:
    QtSettingsStore();
    // For tests: the store kept in one INI-format file.
    explicit QtSettingsStore(const QString& file);

    QString GetSetting(const QString& section, const QString& key,
                       const QString& defaultValue) override;
    void SaveSetting(const QString& section, const QString& key, const QString& value) override;

private:
    QSettings m_settings;
};

#pragma once

#include <QString>

// The per-user settings store of the program (application "Tolvane").
class SettingsStore
{
public:
    virtual ~SettingsStore() = default;
    virtual QString GetSetting(const QString& section, const QString& key,
                               const QString& defaultValue) = 0;
    // Throws AppError when the store cannot be written.
    virtual void SaveSetting(const QString& section, const QString& key, const QString& value) = 0;
};

#pragma once

#include "frmProfiles.h"

#include <QObject>
#include <QString>
#include <array>
#include <functional>
#include <memory>

class ComboControl;
class Control;
class ErrorReport;
class Ini;
class SettingsStore;
class ShellWindowList;
class ShortcutList;

// The five profiles: the selector on the bar, the names in Profiles.ini, the profile menu, and
// what a change of profile does.
class Profiles : public QObject
{
    Q_OBJECT
public:
    struct Controls
    {
        ComboControl& cboProfiles;
        Control& cmdProfiles;
        std::array<Control*, 5> mnuProfile;
    };
    struct Services
    {
        const Ini& ini;
        SettingsStore& settings;
        ErrorReport& errors;
        ShortcutList& shortcuts;
        ShellWindowList& SW;
        ProfilesEditorDisplay& display;
        std::function<QString()> profilesFile;
        // Sets ShortcutsFile for the profile now selected.
        std::function<void()> resetShortcutsFile;
        // The bar is on screen (not during start-up).
        std::function<bool()> isShown;
    };

    Profiles(const Controls& controls, const Services& services, QObject* parent = nullptr);

    void RequeryProfiles();
    void cboProfiles_Click();
    void cmdProfiles_Click();
    void ShowProfiles();

private:
    QString profileName(int number) const;

    Controls m_c;
    Services m_services;
};

// Default name of profile number 1 to 5: "Profile " + number.
QString DefaultProfileName(int number);

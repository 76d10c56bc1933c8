#pragma once

#include "BrowserTracking.h"
#include "Controls.h"
#include "CopyToProfile.h"
#include "DataLocation.h"
#include "Docking.h"
#include "ErrorReport.h"
#include "FormCapture.h"
#include "FormFill.h"
#include "Ini.h"
#include "PageNotices.h"
#include "Profiles.h"
#include "ShortcutCommands.h"
#include "ShortcutList.h"
#include "SiteFiles.h"
#include "ValueStore.h"
#include "frmProfiles.h"

#include <QObject>
#include <array>
#include <memory>

class Clock;
class IniBackend;
class MessageBoxes;
class MessagePump;
class SettingsStore;
class ShellServices;
class TextMetrics;

// The main bar: its controls, its lifecycle from load to unload, the status line, pause and the
// common error report.
class frmMain : public QObject,
                public ErrorReport,
                public DataLocation,
                public IEHolderEvents,
                public TrackingHost,
                public FormMemoryHost
{
    Q_OBJECT
public:
    struct Services
    {
        ShellServices& shell;
        SettingsStore& settings;
        MessageBoxes& boxes;
        const Clock& clock;
        IniBackend& ini;
        ShellWindowList& shellWindows;
        MessagePump& pump;
        const TextMetrics& metrics;
        ShortcutEditorDisplay& shortcutEditor;
        ProfilesEditorDisplay& profilesEditor;
        DockingPlatform& docking;
    };

    enum class LoadResult
    {
        Show,
        End
    };

    explicit frmMain(const Services& services, QObject* parent = nullptr);
    ~frmMain() override;

    // The start-up sequence; End means the program stops now, without the unload.
    LoadResult Form_Load();
    void Form_Unload();
    // Docks the bar at its first showing and after a restore; stretches the list.
    void Form_Resize();
    bool isDocked() const { return m_docked; }

    QString GetProfilePrefix(int a_iIndex = -1) const override;
    void ShowStatus(const QString& text) override;
    bool isMainWindowVisible() const override { return window.isVisible(); }
    void ReportError(const AppError& error, const QString& procedure) override;

    void cmdExit_Click();
    void cmdPause_Click();
    void lblHelp_Click();
    void TimerClearStatus_Timer();

    // The browser holders' events.
    void IEHolder_NewDoc(int Index, const DocPtr& document) override;
    void IEHolder_DocChanged(int Index, const DocPtr& document, const ElementPtr& element) override;
    void IEHolder_HTMLGotFocus(int Index, const DocPtr& document) override;
    void IEHolder_UpdateShortcut(int Index, const QString& URL) override;
    void IEHolder_SetStatus(int Index, const QString& Text) override;
    void IEHolder_FieldsAdded(int Index, const DocPtr& document) override;

    bool isPaused() const override { return m_paused; }
    bool isAutoJumpChecked() const override { return chkAutoJump.value() == 1; }
    const FormFill& formFill() const { return m_fill; }
    ShortcutList& shortcutList() { return m_shortcutList; }
    ShortcutCommands& shortcutCommands() { return *m_commands; }
    Profiles& profiles() { return *m_profiles; }
    BrowserTracking& tracking() { return *m_tracking; }
    const Ini& ini() const { return m_ini; }
    SettingsStore& settings() { return m_settings; }
    SiteFiles& siteFiles() { return m_siteFiles; }
    ValueStore& valueStore() { return m_valueStore; }
    QString HelpFile() const { return m_helpFile; }
    QString DataFolder() const override { return m_dataFolder; }
    QString ProfilesFile() const { return m_profilesFile; }
    QString ShortcutsFile() const { return m_shortcutsFile; }

    // The window itself; its text is the caption, its visibility the window's own.
    Control window{QStringLiteral("frmMain")};
    Control lblHelp{QStringLiteral("lblHelp"), QStringLiteral("Help - Press F1")};
    std::array<std::unique_ptr<Control>, 4> Frame;
    std::array<std::unique_ptr<Control>, 3> Label;
    ComboControl cboProfiles{QStringLiteral("cboProfiles")};
    Control cmdProfiles{QStringLiteral("cmdProfiles"), QStringLiteral("Edit...")};
    Control txtActive{QStringLiteral("txtActive")};
    Control txtURL{QStringLiteral("txtURL")};
    Control imgCookie{QStringLiteral("imgCookie")};
    Control cmdAddShortcut{QStringLiteral("cmdAddShortcut"),
                           QStringLiteral("Add active page to shortcuts")};
    ListViewControl lvShortcuts{QStringLiteral("lvShortcuts")};
    Control fraBottom{QStringLiteral("fraBottom")};
    Control Label1{QStringLiteral("Label1"), QStringLiteral("Last Visit")};
    Control lblLastEntry{QStringLiteral("lblLastEntry"), QStringLiteral("Last Entry")};
    Control Label3{QStringLiteral("Label3"), QStringLiteral("Visits")};
    Control lblEntries{QStringLiteral("lblEntries"), QStringLiteral("1")};
    CheckBoxControl chkAutoJump{QStringLiteral("chkAutoJump"),
                                QStringLiteral("Auto-jump to first field")};
    Control cmdPause{QStringLiteral("cmdPause"), QStringLiteral("&Pause")};
    Control cmdExit{QStringLiteral("cmdExit"), QStringLiteral("E&xit")};
    Control StatusBar{QStringLiteral("StatusBar")};
    TimerControl TimerClearStatus{QStringLiteral("TimerClearStatus"), 500};
    MenuControl mnuPopup{QStringLiteral("mnuPopup")};
    Control mnuGotoShortcut{QStringLiteral("mnuGotoShortcut"), QStringLiteral("&Goto Shortcut")};
    Control mnuEditShortcut{QStringLiteral("mnuEditShortcut"), QStringLiteral("&Edit Shortcut")};
    Control mnuRemoveShortcut{QStringLiteral("mnuRemoveShortcut"),
                              QStringLiteral("&Remove Shortcut")};
    Control mnuBar{QStringLiteral("mnuBar"), QStringLiteral("-")};
    MenuControl mnuCopyToProfile{QStringLiteral("mnuCopyToProfile"),
                                 QStringLiteral("&Copy to Profile")};
    std::array<std::unique_ptr<Control>, 5> mnuProfile;

Q_SIGNALS:
    // The bar is to close; the window then runs Form_Unload.
    void unloadRequested();

private:
    float secondsSinceMidnight() const;
    void buildMenus();
    void setDesignGeometry();
    void buildProfiles(const Services& services);
    void resetShortcutsFile();
    void loadSettingsAndLists();

    ShellServices& m_shell;
    SettingsStore& m_settings;
    MessageBoxes& m_boxes;
    const Clock& m_clock;
    Ini m_ini;
    DockingPlatform& m_docking;
    SiteFiles m_siteFiles;
    ValueStore m_valueStore;
    std::shared_ptr<BrowserTracking> m_tracking;
    FormCapture m_capture;
    FormFill m_fill;
    PageNotices m_notices{txtActive, txtURL, imgCookie};
    ShortcutList m_shortcutList;
    std::unique_ptr<ShortcutCommands> m_commands;
    std::unique_ptr<Profiles> m_profiles;
    std::unique_ptr<CopyToProfile> m_copy;

    AppBarData m_appBarData;
    bool m_inResize = false;
    bool m_docked = false;
    bool m_paused = false;
    QString m_dockingNoteShown;
    QString m_helpFile;
    QString m_dataFolder;
    QString m_profilesFile;
    QString m_shortcutsFile;
};

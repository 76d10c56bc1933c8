#include "frmMain.h"

#include "AppError.h"
#include "AppInfo.h"
#include "Clock.h"
#include "DataLocation.h"
#include "MessageBoxes.h"
#include "SettingsStore.h"
#include "ShellServices.h"
#include "StartupChecks.h"
#include "VbText.h"

#include <QDir>

namespace {
const QString SettingsSection = QStringLiteral("Settings");
const QString AutojumpKey = QStringLiteral("Autojump");
const QString ProfileKey = QStringLiteral("Profile");
const QString LoadProcedure = QStringLiteral("frmMain.Form_Load");
constexpr float SecondsPerDay = 86400.0f;
// A status text stays until more than this has passed, checked at every timer tick.
constexpr float StatusSeconds = 1.0f;
} // namespace

frmMain::frmMain(const Services& services, QObject* parent)
    : QObject(parent), m_shell(services.shell), m_settings(services.settings),
      m_boxes(services.boxes), m_clock(services.clock), m_ini(services.ini),
      m_docking(services.docking), m_siteFiles(m_ini, *this, *this, m_clock),
      m_valueStore(m_ini, *this, *this, m_siteFiles),
      m_tracking(std::make_shared<BrowserTracking>(
          services.shellWindows,
          IEHolderServices{*this, *this, m_siteFiles, services.shellWindows, m_clock}, *this,
          services.pump)),
      m_capture({*this, m_valueStore, *this, services.pump, m_clock}),
      m_fill({*this, m_valueStore, *this, services.pump, m_clock}),
      m_shortcutList(lvShortcuts, {m_ini, m_siteFiles, *this, m_clock, services.metrics,
                                   [this] { return m_shortcutsFile; },
                                   [this] { m_commands->lvShortcuts_Click(); }})
{
    buildMenus();
    m_commands = std::make_unique<ShortcutCommands>(
        ShortcutCommands::Controls{lvShortcuts, lblEntries, lblLastEntry, txtActive, txtURL,
                                   cmdAddShortcut, mnuPopup, mnuGotoShortcut, mnuEditShortcut,
                                   mnuRemoveShortcut},
        ShortcutCommands::Services{
            frmShortcut::Services{m_ini, m_siteFiles, *this, m_clock, services.shortcutEditor,
                                  [this] { return m_shortcutsFile; },
                                  [this](const QString& keys) { m_shell.SendKeys(keys); }},
            m_shortcutList, m_boxes, m_shell});
    buildProfiles(services);
    window.setVisible(false);
    for (size_t i = 0; i < Frame.size(); ++i)
        Frame[i] = std::make_unique<Control>(QStringLiteral("Frame(%1)").arg(i));
    const QStringList labels = {QStringLiteral("Active web page"), QStringLiteral("&Shortcuts:"),
                                QStringLiteral("Current Profile")};
    for (size_t i = 0; i < Label.size(); ++i)
        Label[i] = std::make_unique<Control>(QStringLiteral("Label(%1)").arg(i), labels.at(i));
    txtURL.setVisible(false);
    imgCookie.setVisible(false);
    cmdAddShortcut.setEnabled(false);
    chkAutoJump.setToolTip(
        QStringLiteral("When checked, web pages will automatically show the first input box."));

    connect(&cmdExit, &Control::clicked, this, &frmMain::cmdExit_Click);
    connect(&cmdPause, &Control::clicked, this, &frmMain::cmdPause_Click);
    connect(&lblHelp, &Control::clicked, this, &frmMain::lblHelp_Click);
    connect(&TimerClearStatus, &TimerControl::timer, this, &frmMain::TimerClearStatus_Timer);
    setDesignGeometry();
}

frmMain::~frmMain() = default;

void frmMain::buildMenus()
{
    for (Control* item : {&mnuGotoShortcut, &mnuEditShortcut, &mnuRemoveShortcut, &mnuBar})
        mnuPopup.addItem(item);
    for (size_t i = 0; i < mnuProfile.size(); ++i) {
        mnuProfile[i] = std::make_unique<Control>(QStringLiteral("mnuProfile(%1)").arg(i),
                                                  QStringLiteral("Profile %1").arg(i + 1));
        mnuCopyToProfile.addItem(mnuProfile[i].get());
    }
    mnuPopup.addItem(&mnuCopyToProfile);
}

void frmMain::buildProfiles(const Services& services)
{
    std::array<Control*, 5> menu;
    for (size_t i = 0; i < menu.size(); ++i)
        menu[i] = mnuProfile[i].get();
    m_profiles = std::make_unique<Profiles>(
        Profiles::Controls{cboProfiles, cmdProfiles, menu},
        Profiles::Services{m_ini, m_settings, *this, m_shortcutList, services.shellWindows,
                           services.profilesEditor, [this] { return m_profilesFile; },
                           [this] { resetShortcutsFile(); },
                           [this] { return window.isVisible(); }});
    m_copy = std::make_unique<CopyToProfile>(lvShortcuts, m_ini, *this,
                                             [this] { return m_shortcutsFile; });
    for (size_t i = 0; i < mnuProfile.size(); ++i) {
        connect(mnuProfile[i].get(), &Control::clicked, this,
                [this, i] { m_copy->mnuProfile_Click(static_cast<int>(i)); });
    }
}

void frmMain::resetShortcutsFile()
{
    m_shortcutsFile =
        m_dataFolder + QDir::separator() + GetProfilePrefix(-1) + QStringLiteral("Shortcuts.ini");
}

frmMain::LoadResult frmMain::Form_Load()
{
    StartupChecks checks(m_shell, m_boxes, m_clock);
    try {
        window.setText(AppCaption());
        m_helpFile = m_shell.ProgramFolder() + QDir::separator() + QStringLiteral("Tolvane.hlp");
        if (m_shell.IsAnotherInstanceRunning())
            return LoadResult::End;
        checks.CheckBrowser();
    } catch (const AppError& error) {
        ReportError(error, LoadProcedure);
        return LoadResult::Show;
    }

    try {
        m_dataFolder = checks.GetUserFolder();
    } catch (const AppError&) {
        m_boxes.show(QStringLiteral("Tolvane is unable to find the application data folder."),
                     MsgButtons::Ok, MsgIcon::Critical, AppTitle());
        return LoadResult::End;
    }
    StartupChecks::MoveOldReleaseFiles(m_dataFolder, m_ini);

    try {
        loadSettingsAndLists();
    } catch (const AppError& error) {
        ReportError(error, LoadProcedure);
    }
    return LoadResult::Show;
}

void frmMain::loadSettingsAndLists()
{
    const QString autojump =
        m_settings.GetSetting(SettingsSection, AutojumpKey, QStringLiteral("1"));
    chkAutoJump.setValue(Val(autojump) != 0 ? 1 : 0);
    ShowStatus(QString());
    m_tracking->start();
    m_profilesFile = m_dataFolder + QDir::separator() + QStringLiteral("Profiles.ini");
    m_profiles->RequeryProfiles();
    resetShortcutsFile();
    m_shortcutList.RequeryShortcuts();
    m_tracking->ResetIEs();
}

void frmMain::Form_Unload()
{
    // Every step goes on whatever the one before it did.
    try {
        Docking::UndockForm(m_docking, m_appBarData);
    } catch (const AppError&) {
    }
    try {
        m_settings.SaveSetting(SettingsSection, AutojumpKey, QString::number(chkAutoJump.value()));
    } catch (const AppError&) {
    }
    try {
        m_settings.SaveSetting(SettingsSection, ProfileKey,
                               QString::number(cboProfiles.listIndex()));
    } catch (const AppError&) {
    }
}

QString frmMain::GetProfilePrefix(int a_iIndex) const
{
    return ProfilePrefixOf(a_iIndex < 0 ? cboProfiles.listIndex() : a_iIndex);
}

float frmMain::secondsSinceMidnight() const
{
    return static_cast<float>(m_clock.now().time().msecsSinceStartOfDay()) / 1000.0f;
}

void frmMain::ShowStatus(const QString& text)
{
    TimerClearStatus.setTag(QString::number(secondsSinceMidnight(), 'g', 9));
    TimerClearStatus.setEnabled(true);
    StatusBar.setText(QLatin1Char(' ') + TrimSpaces(text));
}

void frmMain::TimerClearStatus_Timer()
{
    float elapsed = secondsSinceMidnight() - TimerClearStatus.tag().toFloat();
    // Set before midnight, looked at after it.
    if (elapsed < 0)
        elapsed += SecondsPerDay;
    if (elapsed > StatusSeconds) {
        StatusBar.setText(QString());
        TimerClearStatus.setEnabled(false);
    }
}

void frmMain::ReportError(const AppError& error, const QString& procedure)
{
    m_boxes.show(ErrorReportText(error, procedure), MsgButtons::Ok, MsgIcon::None, AppTitle());
}

void frmMain::cmdExit_Click()
{
    Q_EMIT unloadRequested();
}

void frmMain::cmdPause_Click()
{
    m_paused = !m_paused;
    cmdPause.setText(m_paused ? QStringLiteral("&Resume") : QStringLiteral("&Pause"));
}

void frmMain::lblHelp_Click()
{
    m_shell.SendKeys(QStringLiteral("{F1}"));
}

void frmMain::IEHolder_NewDoc(int Index, const DocPtr& document)
{
    m_fill.IEHolder_NewDoc(Index, document);
}

void frmMain::IEHolder_FieldsAdded(int Index, const DocPtr& document)
{
    m_fill.IEHolder_FieldsAdded(Index, document);
}

void frmMain::IEHolder_DocChanged(int Index, const DocPtr& document, const ElementPtr& element)
{
    m_capture.IEHolder_DocChanged(Index, document, element);
}

void frmMain::IEHolder_HTMLGotFocus(int Index, const DocPtr& document)
{
    m_notices.IEHolder_HTMLGotFocus(Index, document);
}

void frmMain::IEHolder_UpdateShortcut(int /*Index*/, const QString& URL)
{
    m_commands->UpdateShortcut(URL);
}

void frmMain::IEHolder_SetStatus(int /*Index*/, const QString& Text)
{
    ShowStatus(Text);
}

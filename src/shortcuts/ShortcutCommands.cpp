#include "ShortcutCommands.h"

#include "AppError.h"
#include "Controls.h"
#include "Ini.h"
#include "MessageBoxes.h"
#include "ShortcutFile.h"
#include "ShortcutList.h"
#include "ShortcutPlatform.h"
#include "SiteFiles.h"
#include "VbText.h"

namespace {
constexpr int RightButton = 2;
constexpr int EnterKey = 13;
} // namespace

ShortcutCommands::ShortcutCommands(const Controls& controls, const Services& services,
                                   QObject* parent)
    : QObject(parent), m_c(controls), m_services(services)
{
    connect(&m_c.lvShortcuts, &Control::clicked, this, &ShortcutCommands::lvShortcuts_Click);
    connect(&m_c.lvShortcuts, &Control::doubleClicked, this,
            &ShortcutCommands::lvShortcuts_DblClick);
    connect(&m_c.lvShortcuts, &ListViewControl::keyDownRaised, this,
            &ShortcutCommands::lvShortcuts_KeyDown);
    connect(&m_c.lvShortcuts, &ListViewControl::mouseDownRaised, this,
            &ShortcutCommands::lvShortcuts_MouseDown);
    connect(&m_c.lvShortcuts, &ListViewControl::mouseUpRaised, this,
            &ShortcutCommands::lvShortcuts_MouseUp);
    connect(&m_c.mnuGotoShortcut, &Control::clicked, this, &ShortcutCommands::lvShortcuts_DblClick);
    connect(&m_c.mnuEditShortcut, &Control::clicked, this,
            &ShortcutCommands::mnuEditShortcut_Click);
    connect(&m_c.mnuRemoveShortcut, &Control::clicked, this,
            &ShortcutCommands::mnuRemoveShortcut_Click);
    connect(&m_c.cmdAddShortcut, &Control::clicked, this, &ShortcutCommands::cmdAddShortcut_Click);
    connect(&m_c.txtActive, &Control::textChanged, this, &ShortcutCommands::txtActive_Change);
}

QString ShortcutCommands::selectedAddress() const
{
    return m_c.lvShortcuts.row(m_c.lvShortcuts.selectedIndex()).toolTip;
}

void ShortcutCommands::lvShortcuts_Click()
{
    if (m_c.lvShortcuts.selectedIndex() < 0)
        return;
    SiteFiles& sites = m_services.editor.sites;
    try {
        m_c.lblLastEntry.setText(sites.GetLastVisit(selectedAddress()));
    } catch (const AppError&) {
    }
    try {
        m_c.lblEntries.setText(QString::number(sites.GetTotalVisits(selectedAddress())));
    } catch (const AppError&) {
    }
}

void ShortcutCommands::lvShortcuts_DblClick()
{
    if (m_c.lvShortcuts.selectedIndex() < 0)
        return;
    try {
        m_services.platform.OpenAddress(selectedAddress());
    } catch (const AppError&) {
    }
}

void ShortcutCommands::lvShortcuts_KeyDown(int KeyCode)
{
    if (KeyCode == EnterKey)
        lvShortcuts_DblClick();
}

void ShortcutCommands::lvShortcuts_MouseDown(int Button, int rowUnderPointer)
{
    // A right press selects the row under the pointer as a left click would.
    if (Button != RightButton || rowUnderPointer < 0)
        return;
    m_c.lvShortcuts.setSelectedIndex(rowUnderPointer);
    lvShortcuts_Click();
}

void ShortcutCommands::lvShortcuts_MouseUp(int Button)
{
    if (Button == RightButton)
        m_services.platform.PopupMenu(m_c.mnuPopup, &m_c.mnuGotoShortcut);
}

void ShortcutCommands::mnuRemoveShortcut_Click()
{
    const int selected = m_c.lvShortcuts.selectedIndex();
    if (selected < 0)
        return;
    const ListRow row = m_c.lvShortcuts.row(selected);
    if (m_services.boxes.show(QStringLiteral("Remove shortcut ") + row.text + QLatin1Char('?'),
                              MsgButtons::YesNo, MsgIcon::Question,
                              QStringLiteral("Tolvane")) != MsgAnswer::Yes)
        return;
    m_services.editor.ini.WriteINI(ShortcutFile::Section(row.tag), ShortcutFile::TitleKey,
                                   QString(), m_services.editor.shortcutsFile());
    m_services.list.RequeryShortcuts();
}

void ShortcutCommands::mnuEditShortcut_Click()
{
    const int selected = m_c.lvShortcuts.selectedIndex();
    if (selected < 0)
        return;
    frmShortcut editor(m_services.editor);
    editor.EditShortcut(m_c.lvShortcuts.row(selected).tag, QString(), QString());
    m_services.list.RequeryShortcuts();
}

void ShortcutCommands::cmdAddShortcut_Click()
{
    {
        frmShortcut editor(m_services.editor);
        editor.EditShortcut(0, m_c.txtActive.text(), m_c.txtURL.text());
    }
    m_services.list.RequeryShortcuts();
}

void ShortcutCommands::txtActive_Change()
{
    const QString active = m_c.txtActive.text();
    bool enabled = !TrimSpaces(active).isEmpty();
    for (int i = 0; i < m_c.lvShortcuts.count(); ++i) {
        if (SameText(active, m_c.lvShortcuts.row(i).text))
            enabled = false;
    }
    m_c.cmdAddShortcut.setEnabled(enabled);
    m_c.txtActive.setToolTip(active);
}

void ShortcutCommands::UpdateShortcut(const QString& URL)
{
    for (int i = 0; i < m_c.lvShortcuts.count(); ++i) {
        if (SameText(m_c.lvShortcuts.row(i).toolTip, URL)) {
            m_services.list.DrawShortcut(i);
            lvShortcuts_Click();
            return;
        }
    }
}

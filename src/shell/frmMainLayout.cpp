// The main bar's geometry and its resize handling: docking at the right edge and the list
// stretched to the window's height.
#include "frmMain.h"

#include "AppError.h"

namespace {
// Client area at design size, in twips.
constexpr int DesignWidth = 2535;
constexpr int DesignHeight = 6420;
} // namespace

void frmMain::setDesignGeometry()
{
    window.setGeometry(QRect(0, 0, DesignWidth, DesignHeight));
    const std::initializer_list<std::pair<Control*, QRect>> placed = {
        {&lblHelp, {60, 60, 2430, 210}},          {Frame[0].get(), {60, 360, 2415, 75}},
        {Label[2].get(), {60, 540, 1050, 195}},   {&cboProfiles, {60, 840, 1695, 315}},
        {&cmdProfiles, {1860, 840, 615, 315}},    {Frame[3].get(), {60, 1200, 2415, 75}},
        {&imgCookie, {2220, 1320, 240, 240}},     {Label[0].get(), {60, 1380, 1200, 195}},
        {&txtActive, {60, 1680, 2415, 285}},      {&txtURL, {720, 1800, 1575, 285}},
        {&cmdAddShortcut, {60, 2040, 2415, 315}}, {Frame[1].get(), {60, 2400, 2415, 75}},
        {Label[1].get(), {60, 2520, 750, 195}},   {&lvShortcuts, {60, 2760, 2415, 495}},
        {&fraBottom, {0, 4800, 2535, 1320}},      {&Label1, {0, 0, 735, 195}},
        {&lblLastEntry, {900, 0, 735, 195}},      {&Label3, {0, 240, 735, 195}},
        {&lblEntries, {900, 240, 90, 195}},       {Frame[2].get(), {60, 480, 2415, 75}},
        {&chkAutoJump, {120, 600, 2055, 195}},    {&cmdPause, {120, 900, 1095, 315}},
        {&cmdExit, {1380, 900, 1035, 315}},       {&StatusBar, {0, 6120, 2535, 300}},
    };
    for (const auto& [control, twips] : placed)
        control->setGeometry(twips);
}

void frmMain::Form_Resize()
{
    if (m_inResize)
        return;
    m_inResize = true;
    try {
        if (m_docking.isMinimized()) {
            m_docked = false;
            Docking::UndockForm(m_docking, m_appBarData);
        } else if (!m_docked) {
            m_docked = true;
            m_docking.setWindowVisible(false);
            Docking::DockForm(AppBar::ABE_RIGHT, m_docking, m_appBarData);
            m_docking.setWindowVisible(true);
            // Said once: the next restore would only say it again.
            const QString note = m_docking.dockingNote();
            if (!note.isEmpty() && note != m_dockingNoteShown) {
                m_dockingNoteShown = note;
                ShowStatus(note);
            }
        }
    } catch (const AppError& error) {
        ReportError(error, QStringLiteral("frmMain.Form_Resize"));
        m_inResize = false;
        return;
    }
    try {
        const int height = m_docking.innerHeightTwips() - fraBottom.geometry().height() -
                           StatusBar.geometry().height() - lvShortcuts.geometry().top();
        // A window too short for the list leaves it as it was.
        if (height >= 0 && !m_docking.isMinimized())
            lvShortcuts.setHeight(height);
    } catch (const AppError&) {
    }
    m_inResize = false;
}

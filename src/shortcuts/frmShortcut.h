#pragma once

#include "Controls.h"
#include "ModalDisplay.h"

#include <QObject>
#include <functional>

class Clock;
class ErrorReport;
class Ini;
class SiteFiles;
class frmShortcut;

using ShortcutEditorDisplay = ModalDisplay<frmShortcut>;

// The shortcut editor: adds the active page as a new shortcut or edits one, and on OK writes
// it to the current profile's Shortcuts.ini.
class frmShortcut : public QObject
{
    Q_OBJECT
public:
    struct Services
    {
        const Ini& ini;
        SiteFiles& sites;
        ErrorReport& errors;
        const Clock& clock;
        ShortcutEditorDisplay& display;
        std::function<QString()> shortcutsFile;
        // Sends "{F1}" to the program.
        std::function<void(const QString&)> sendKeys;
    };

    explicit frmShortcut(const Services& services, QObject* parent = nullptr);

    // A number below 1 adds a shortcut with the title and address given; otherwise edits
    // shortcut N and ignores them.
    void EditShortcut(int number, const QString& title, const QString& address);
    void cmdOK_Click();
    void cmdCancel_Click();
    void lblHelp_Click();

    int number() const { return m_number; }

    Control window{QStringLiteral("frmShortcut"), QStringLiteral("Add Shortcut")};
    Control lblName{QStringLiteral("lblName"), QStringLiteral("&Name")};
    Control txtTitle{QStringLiteral("txtTitle")};
    Control lblURL{QStringLiteral("lblURL"), QStringLiteral("&URL")};
    Control txtURL{QStringLiteral("txtURL")};
    Control lblReminder{QStringLiteral("lblReminder"), QStringLiteral("&Reminder")};
    ComboControl cboRemind{QStringLiteral("cboRemind")};
    Control lblStarting{QStringLiteral("lblStarting"), QStringLiteral("Contest &Starts")};
    DateControl dtStartDate{QStringLiteral("dtStartDate")};
    Control lblEnding{QStringLiteral("lblEnding"), QStringLiteral("Contest &Ends")};
    DateControl dtExpires{QStringLiteral("dtExpires")};
    Control lblLastVisit{QStringLiteral("lblLastVisit"), QStringLiteral("Last Entry")};
    Control txtLastVisit{QStringLiteral("txtLastVisit")};
    Control lblTotalEntries{QStringLiteral("lblTotalEntries"), QStringLiteral("Total Entries")};
    Control txtTotalEntries{QStringLiteral("txtTotalEntries")};
    Control lblSource{QStringLiteral("lblSource"), QStringLiteral("Source")};
    Control txtSource{QStringLiteral("txtSource")};
    Control lblNotes{QStringLiteral("lblNotes"), QStringLiteral("Notes")};
    Control txtNotes{QStringLiteral("txtNotes")};
    Control cmdOK{QStringLiteral("cmdOK"), QStringLiteral("&OK")};
    Control cmdCancel{QStringLiteral("cmdCancel"), QStringLiteral("&Cancel")};
    Control lblHelp{QStringLiteral("lblHelp"), QStringLiteral("Help - Press F1")};

Q_SIGNALS:
    // The dialog is to close (OK saved, or Cancel).
    void closeRequested();

private:
    void Form_Load();
    void fillNew(const QString& title, const QString& address);
    void fillExisting(int number);
    void showVisits(const QString& address);

    Services m_services;
    int m_number = 0;
};

#pragma once

#include "frmShortcut.h"

#include <QObject>

class Control;
class ListViewControl;
class MenuControl;
class MessageBoxes;
class ShortcutList;
class ShortcutPlatform;

// What the user does with the shortcut list: clicks show the visit record, a double click or
// Enter opens the page, a right click offers the pop-up menu, Remove asks first; a recorded
// visit redraws its row; the add button follows the active page.
class ShortcutCommands : public QObject
{
    Q_OBJECT
public:
    struct Controls
    {
        ListViewControl& lvShortcuts;
        Control& lblEntries;
        Control& lblLastEntry;
        Control& txtActive;
        Control& txtURL;
        Control& cmdAddShortcut;
        MenuControl& mnuPopup;
        Control& mnuGotoShortcut;
        Control& mnuEditShortcut;
        Control& mnuRemoveShortcut;
    };
    struct Services
    {
        frmShortcut::Services editor;
        ShortcutList& list;
        MessageBoxes& boxes;
        ShortcutPlatform& platform;
    };

    ShortcutCommands(const Controls& controls, const Services& services, QObject* parent = nullptr);

    void lvShortcuts_Click();
    void lvShortcuts_DblClick();
    void lvShortcuts_KeyDown(int KeyCode);
    void lvShortcuts_MouseDown(int Button, int rowUnderPointer);
    void lvShortcuts_MouseUp(int Button);
    void mnuRemoveShortcut_Click();
    void mnuEditShortcut_Click();
    void cmdAddShortcut_Click();
    void txtActive_Change();
    // A visit to this address was recorded: redraw its row.
    void UpdateShortcut(const QString& URL);

private:
    QString selectedAddress() const;

    Controls m_c;
    Services m_services;
};

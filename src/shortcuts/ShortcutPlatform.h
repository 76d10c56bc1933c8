#pragma once

#include <QString>

class Control;
class MenuControl;

// What the shortcut commands need of the desktop.
class ShortcutPlatform
{
public:
    virtual ~ShortcutPlatform() = default;
    // Opens a page address for the user; the result is not examined.
    virtual void OpenAddress(const QString& address) = 0;
    // Shows a pop-up menu at the pointer and returns when it has closed; a chosen item raises
    // its clicked().
    virtual void PopupMenu(MenuControl& menu, Control* defaultItem) = 0;
};

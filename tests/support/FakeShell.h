#pragma once

// Test doubles for what the bar needs of the desktop: a scriptable shell, dialogs the test
// answers, a desktop that reserves the bar's strip.

#include "AppError.h"
#include "Docking.h"
#include "FakeCore.h"
#include "ShellServices.h"
#include "frmProfiles.h"
#include "frmShortcut.h"

#include <optional>

class FakeShell : public ShellServices
{
public:
    bool anotherInstance = false;
    BrowserIdentity identity{QStringLiteral("Microsoft Internet Explorer"),
                             QStringLiteral("Internet Explorer"), QStringLiteral("iexplor"),
                             QStringLiteral("5.0")};
    std::optional<DllVersion> version = DllVersion{6, 0};
    QString tempFolder;
    bool tempFolderFails = false;
    std::function<QString(const QString&)> findExecutable = [](const QString&) {
        return QStringLiteral("C:\\Program Files\\Internet Explorer\\iexplore.exe");
    };
    std::optional<QString> appDataFolder;
    bool appDataFails = false;
    QString programFolder;
    QStringList keysSent;
    QStringList filesAskedFor;
    QStringList opened;
    // Where opened addresses go on to, in end-to-end tests.
    std::function<void(const QString&)> onOpen;
    // What the user does with a pop-up menu once it is shown.
    std::function<void(MenuControl&, Control*)> onPopup;
    int popups = 0;

    bool IsAnotherInstanceRunning() override { return anotherInstance; }
    BrowserIdentity browserIdentity() override { return identity; }
    DllVersion DllGetVersion() override
    {
        if (!version)
            throw AppError(453, QStringLiteral("Can't find DLL entry point DllGetVersion"));
        return *version;
    }
    QString TempFolder() override
    {
        if (tempFolderFails)
            throw AppError(ErrorNumber::PathNotFound, QStringLiteral("Path not found"));
        return tempFolder;
    }
    QString FindExecutable(const QString& file) override
    {
        filesAskedFor << file;
        return findExecutable(file);
    }
    std::optional<QString> AppDataFolder() override
    {
        if (appDataFails)
            throw AppError(ErrorNumber::InvalidCall, QStringLiteral("Invalid procedure call"));
        return appDataFolder;
    }
    QString ProgramFolder() override { return programFolder; }
    void SendKeys(const QString& keys) override { keysSent << keys; }
    void OpenAddress(const QString& address) override
    {
        opened << address;
        if (onOpen)
            onOpen(address);
    }
    void PopupMenu(MenuControl& menu, Control* defaultItem) override
    {
        ++popups;
        if (onPopup)
            onPopup(menu, defaultItem);
    }
};

// A dialog shown modally: what the user does in it is scripted by the test.
template <class Form> class FakeDisplay : public ModalDisplay<Form>
{
public:
    std::function<void(Form&)> user;
    int shown = 0;
    void ShowModal(Form& form) override
    {
        ++shown;
        if (user)
            user(form);
    }
};
using FakeEditorDisplay = FakeDisplay<frmShortcut>;
using FakeProfilesDisplay = FakeDisplay<frmProfiles>;

// A desktop 1280 by 800 pixels whose shell reserves the strip an application bar asks for,
// and a main window on it; every call is recorded.
class FakeDocking : public DockingPlatform
{
public:
    QStringList calls;
    PixelRect work{0, 0, 1280, 760}; // a taskbar at the bottom
    PixelRect reserved;
    bool reserves = true;
    bool minimized = false;
    bool visible = true;
    bool failNext = false;
    QRect windowTwips{0, 0, 2625, 6750};
    int innerHeight = 6420;

    void SHAppBarMessage(int message, AppBarData& data) override
    {
        if (failNext) {
            failNext = false;
            throw AppError(ErrorNumber::InvalidCall,
                           QStringLiteral("Invalid procedure call or argument"));
        }
        calls << QStringLiteral("SHAppBarMessage %1").arg(message);
        if (message == AppBar::ABM_REMOVE)
            reserved = {};
        if (message == AppBar::ABM_SETPOS && reserves) {
            data.rc.bottom = std::min(data.rc.bottom, work.bottom); // the shell corrects the height
            reserved = data.rc;
        }
    }
    PixelRect SystemWorkArea() override
    {
        PixelRect area = work;
        if (reserved.right > reserved.left)
            area.right = reserved.left;
        return area;
    }
    void SetWindowPosTopmost(const PixelRect& rect) override
    {
        calls << QStringLiteral("SetWindowPos %1,%2 %3x%4")
                     .arg(rect.left)
                     .arg(rect.top)
                     .arg(rect.right - rect.left)
                     .arg(rect.bottom - rect.top);
    }
    qint64 windowHandle() override { return 0x1234; }
    double twipsPerPixelX() override { return 15; }
    double twipsPerPixelY() override { return 15; }
    int screenWidthTwips() override { return 1280 * 15; }
    int screenHeightTwips() override { return 800 * 15; }
    int windowWidthTwips() override { return windowTwips.width(); }
    int windowHeightTwips() override { return windowTwips.height(); }
    void setWindowGeometryTwips(int left, int top, int width, int height) override
    {
        windowTwips = QRect(left, top, width, height);
    }
    bool isMinimized() override { return minimized; }
    int innerHeightTwips() override { return innerHeight; }
    void setWindowVisible(bool show) override
    {
        visible = show;
        calls << (show ? QStringLiteral("show") : QStringLiteral("hide"));
    }
    QString note; // what a desktop that keeps no strip says
    QString dockingNote() override { return note; }
    // What arrives while docking lets events run.
    std::function<void()> onDoEvents;
    void DoEvents() override
    {
        if (onDoEvents)
            onDoEvents();
    }
};

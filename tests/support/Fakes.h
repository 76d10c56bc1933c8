#pragma once

// Test doubles for what the logic needs of the machine: a settable clock, pre-answered message
// boxes, an in-memory settings store and a scriptable shell.

#include "AppError.h"
#include "Clock.h"
#include "Docking.h"
#include "MessageBoxes.h"
#include "MessagePump.h"
#include "SettingsStore.h"
#include "ShellServices.h"
#include "TextMetrics.h"
#include "frmProfiles.h"
#include "frmShortcut.h"

#include <QMap>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

class FakeClock : public Clock
{
public:
    QDateTime current = QDateTime(QDate(2026, 11, 23), QTime(12, 0, 0));
    qint64 monotonic = 0;
    QDateTime now() const override { return current; }
    qint64 monotonicMs() const override { return monotonic; }
    void advanceMs(qint64 ms)
    {
        current = current.addMSecs(ms);
        monotonic += ms;
    }
};

class FakeMessageBoxes : public MessageBoxes
{
public:
    struct Shown
    {
        QString text;
        MsgButtons buttons;
        MsgIcon icon;
        QString title;
    };
    std::vector<Shown> shown;
    MsgAnswer nextAnswer = MsgAnswer::Ok;

    MsgAnswer show(const QString& text, MsgButtons buttons, MsgIcon icon,
                   const QString& title) override
    {
        shown.push_back({text, buttons, icon, title});
        return nextAnswer;
    }
};

class FakeSettings : public SettingsStore
{
public:
    QMap<QString, QString> values; // "Section/Key"
    QStringList failingKeys;

    QString GetSetting(const QString& section, const QString& key,
                       const QString& defaultValue) override
    {
        return values.value(section + QLatin1Char('/') + key, defaultValue);
    }
    void SaveSetting(const QString& section, const QString& key, const QString& value) override
    {
        if (failingKeys.contains(key))
            throw AppError(ErrorNumber::PathNotFound, QStringLiteral("Path not found"));
        values.insert(section + QLatin1Char('/') + key, value);
    }
};

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

// A message pump whose turn runs what tests have queued for it, as events arriving meanwhile.
class ImmediatePump : public MessagePump
{
public:
    std::vector<std::function<void()>> pending;
    int turns = 0;
    void DoEvents() override
    {
        ++turns;
        auto now = std::move(pending);
        pending.clear();
        for (auto& action : now)
            action();
    }
};

// Every character is 100 twips wide.
class FakeTextMetrics : public TextMetrics
{
public:
    int TextWidth(const QString& text, double) const override
    {
        return 100 * static_cast<int>(text.size());
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
    void DoEvents() override {}
};

#pragma once

#include <QString>

// A rectangle in screen pixels, as the shell gives it.
struct PixelRect
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

// The record of an application bar, kept by the main window for its lifetime.
struct AppBarData
{
    int cbSize = 0;
    qint64 hWnd = 0;
    int uCallbackMessage = 0;
    int uEdge = 0;
    PixelRect rc;
};

namespace AppBar {
constexpr int ABM_NEW = 0;
constexpr int ABM_REMOVE = 1;
constexpr int ABM_SETPOS = 3;
constexpr int ABE_RIGHT = 2;
} // namespace AppBar

// What docking needs of the desktop shell and of the main window. Sizes of the window are in
// twips; the shell's are in pixels.
class DockingPlatform
{
public:
    virtual ~DockingPlatform() = default;
    // The shell's application-bar call; it may correct the record's rectangle.
    virtual void SHAppBarMessage(int message, AppBarData& data) = 0;
    virtual PixelRect SystemWorkArea() = 0;
    // Places the window at the rectangle, above all windows that are not topmost, and shows it.
    virtual void SetWindowPosTopmost(const PixelRect& rect) = 0;
    virtual qint64 windowHandle() = 0;
    virtual double twipsPerPixelX() = 0;
    virtual double twipsPerPixelY() = 0;
    virtual int screenWidthTwips() = 0;
    virtual int screenHeightTwips() = 0;
    virtual int windowWidthTwips() = 0;
    virtual int windowHeightTwips() = 0;
    // Left, top, width and height in twips, set in the order top, left, height, width.
    virtual void setWindowGeometryTwips(int left, int top, int width, int height) = 0;
    virtual bool isMinimized() = 0;
    virtual int innerHeightTwips() = 0;
    virtual void setWindowVisible(bool visible) = 0;
    virtual void DoEvents() = 0;
    // What the user should know when the desktop keeps no strip free for the bar (empty when it
    // does), known once the bar is placed.
    virtual QString dockingNote() { return {}; }
};

// Registers and places the main bar as an application bar at the right edge of the screen.
namespace Docking {
void DockForm(int edge, DockingPlatform& window, AppBarData& record);
void UndockForm(DockingPlatform& window, AppBarData& record);
PixelRect GetWorkArea(DockingPlatform& window);
// Pixels from twips: rounded to the nearest, a half to the even neighbour.
int ToPixels(double twips, double twipsPerPixel);
} // namespace Docking

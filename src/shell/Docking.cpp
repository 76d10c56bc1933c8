#include "Docking.h"

#include <cmath>

namespace {
// The shell normally reserves the strip at once; a desktop that never does must not hang us.
constexpr int MaxWorkAreaWaits = 100;
} // namespace

int Docking::ToPixels(double twips, double twipsPerPixel)
{
    return static_cast<int>(std::nearbyint(twips / twipsPerPixel));
}

PixelRect Docking::GetWorkArea(DockingPlatform& window)
{
    return window.SystemWorkArea();
}

void Docking::UndockForm(DockingPlatform& window, AppBarData& record)
{
    window.SHAppBarMessage(AppBar::ABM_REMOVE, record);
    window.DoEvents();
}

void Docking::DockForm(int edge, DockingPlatform& window, AppBarData& record)
{
    record.hWnd = window.windowHandle();
    record.cbSize = 36;
    record.uCallbackMessage = 512;
    const PixelRect work = GetWorkArea(window);
    const double tppX = window.twipsPerPixelX();
    const double tppY = window.twipsPerPixelY();
    const int screenHeight = ToPixels(window.screenHeightTwips(), tppY);
    const int windowWidth = ToPixels(window.windowWidthTwips(), tppX);

    window.SHAppBarMessage(AppBar::ABM_REMOVE, record);
    window.DoEvents();
    window.SHAppBarMessage(AppBar::ABM_NEW, record);
    record.uEdge = edge;
    if (edge == AppBar::ABE_RIGHT)
        record.rc = {work.right - windowWidth, 0, work.right, screenHeight};
    const PixelRect earlier = GetWorkArea(window);
    window.SHAppBarMessage(AppBar::ABM_SETPOS, record);
    window.DoEvents();
    window.DoEvents();
    for (int wait = 0; wait < MaxWorkAreaWaits && GetWorkArea(window).right >= earlier.right;
         ++wait)
        window.DoEvents();

    const PixelRect& rc = record.rc;
    window.SetWindowPosTopmost(rc);
    window.setWindowGeometryTwips(static_cast<int>(rc.left * tppX), static_cast<int>(rc.top * tppY),
                                  static_cast<int>((rc.right - rc.left) * tppX),
                                  static_cast<int>((rc.bottom - rc.top) * tppY));
}

#pragma once

#include "AppBarShell.h"

#include <cstdint>

struct xcb_connection_t;

// An application bar on X11: a window of type _NET_WM_WINDOW_TYPE_DOCK whose
// _NET_WM_STRUT_PARTIAL reserves its strip; the window manager publishes the work area that is
// left in _NET_WORKAREA.
class X11AppBarShell : public AppBarShell
{
public:
    X11AppBarShell(QWidget* window, xcb_connection_t* connection);
    void message(int message, AppBarData& data) override;
    PixelRect workArea() override;

private:
    uint32_t atom(const char* name);
    void setCardinals(const char* property, const uint32_t* values, uint32_t count);

    QWidget* m_window;
    xcb_connection_t* m_connection;
    uint32_t m_root = 0;
    int m_screenWidth = 0;
};

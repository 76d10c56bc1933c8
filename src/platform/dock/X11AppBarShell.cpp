#include "X11AppBarShell.h"

#include <QWidget>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

X11AppBarShell::X11AppBarShell(QWidget* window, xcb_connection_t* connection)
    : m_window(window), m_connection(connection)
{
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_root = screen->root;
    m_screenWidth = screen->width_in_pixels;
}

uint32_t X11AppBarShell::atom(const char* name)
{
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
    const uint32_t value = reply ? reply->atom : uint32_t(XCB_ATOM_NONE);
    std::free(reply);
    return value;
}

void X11AppBarShell::setCardinals(const char* property, const uint32_t* values, uint32_t count)
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(m_window->winId()), atom(property),
                        XCB_ATOM_CARDINAL, 32, count, values);
}

void X11AppBarShell::message(int message, AppBarData& data)
{
    const auto window = static_cast<xcb_window_t>(m_window->winId());
    switch (message) {
    case AppBar::ABM_NEW: {
        // A window manager takes the first type it knows. One that knows no docks (sway) still
        // floats a utility window where it is placed, rather than tiling it over the screen.
        const uint32_t types[] = {atom("_NET_WM_WINDOW_TYPE_DOCK"),
                                  atom("_NET_WM_WINDOW_TYPE_UTILITY")};
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window,
                            atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 2, types);
        break;
    }
    case AppBar::ABM_SETPOS: {
        // Below what other panels keep (GNOME's top bar), as the Windows shell corrects a bar's
        // rectangle for the bars already there.
        data.rc.top = std::max(data.rc.top, workArea().top);
        // Right strut: from the screen's right edge to the bar's left, over the bar's height.
        const uint32_t width = static_cast<uint32_t>(std::max(0, m_screenWidth - data.rc.left));
        const uint32_t partial[12] = {
            0,
            width,
            0,
            0,
            0,
            0,
            static_cast<uint32_t>(data.rc.top),
            static_cast<uint32_t>(std::max(data.rc.top, data.rc.bottom - 1)),
            0,
            0,
            0,
            0};
        setCardinals("_NET_WM_STRUT_PARTIAL", partial, 12);
        setCardinals("_NET_WM_STRUT", partial, 4);
        break;
    }
    case AppBar::ABM_REMOVE:
        xcb_delete_property(m_connection, window, atom("_NET_WM_STRUT_PARTIAL"));
        xcb_delete_property(m_connection, window, atom("_NET_WM_STRUT"));
        break;
    default:
        break;
    }
    xcb_flush(m_connection);
}

PixelRect X11AppBarShell::workArea()
{
    const auto cookie =
        xcb_get_property(m_connection, 0, m_root, atom("_NET_WORKAREA"), XCB_ATOM_CARDINAL, 0, 4);
    xcb_get_property_reply_t* reply = xcb_get_property_reply(m_connection, cookie, nullptr);
    PixelRect area;
    if (reply && xcb_get_property_value_length(reply) >= 16) {
        const auto* value = static_cast<const uint32_t*>(xcb_get_property_value(reply));
        area = {static_cast<int>(value[0]), static_cast<int>(value[1]),
                static_cast<int>(value[0] + value[2]), static_cast<int>(value[1] + value[3])};
    }
    std::free(reply);
    if (area.right > area.left)
        return area;
    // A window manager that publishes no work area: the whole screen.
    return TopmostOnlyShell(m_window).workArea();
}

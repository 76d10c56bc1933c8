#include "WinAppBarShell.h"

#include <QWidget>
#include <shellapi.h>
#include <windows.h>

void WinAppBarShell::message(int message, AppBarData& data)
{
    APPBARDATA record{};
    record.cbSize = sizeof(APPBARDATA);
    record.hWnd = reinterpret_cast<HWND>(m_window->winId());
    record.uCallbackMessage = static_cast<UINT>(data.uCallbackMessage);
    record.uEdge = static_cast<UINT>(data.uEdge);
    record.rc = {data.rc.left, data.rc.top, data.rc.right, data.rc.bottom};
    SHAppBarMessage(static_cast<DWORD>(message), &record);
    // The shell may correct the rectangle it grants.
    data.rc = {record.rc.left, record.rc.top, record.rc.right, record.rc.bottom};
}

PixelRect WinAppBarShell::workArea()
{
    RECT area{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    return {area.left, area.top, area.right, area.bottom};
}

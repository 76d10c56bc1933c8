#pragma once

#include "AppBarShell.h"

// An application bar on Windows, through SHAppBarMessage and SPI_GETWORKAREA.
class WinAppBarShell : public AppBarShell
{
public:
    explicit WinAppBarShell(QWidget* window) : m_window(window) {}
    void message(int message, AppBarData& data) override;
    PixelRect workArea() override;

private:
    QWidget* m_window;
};

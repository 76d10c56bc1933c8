#include "AppBarShell.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#ifdef TOLVANE_HAS_XCB
#include "X11AppBarShell.h"
#endif
#ifdef Q_OS_WIN
#include "WinAppBarShell.h"
#endif

PixelRect TopmostOnlyShell::workArea()
{
    QScreen* screen = m_window->screen() ? m_window->screen() : QGuiApplication::primaryScreen();
    const QRect area = screen->availableGeometry();
    return {area.left(), area.top(), area.right() + 1, area.bottom() + 1};
}

std::unique_ptr<AppBarShell> AppBarShell::forDesktop(QWidget* window)
{
#ifdef Q_OS_WIN
    return std::make_unique<WinAppBarShell>(window);
#else
#ifdef TOLVANE_HAS_XCB
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
            return std::make_unique<X11AppBarShell>(window, x11->connection());
    }
#endif
    return std::make_unique<TopmostOnlyShell>(window);
#endif
}

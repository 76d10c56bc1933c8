#include "WidgetDocking.h"

#include "AppBarShell.h"
#include "Twips.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {
QRect screenOf(QWidget* window)
{
    QScreen* screen =
        window && window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    return screen->geometry();
}
} // namespace

WidgetDocking::WidgetDocking() = default;
WidgetDocking::~WidgetDocking() = default;

void WidgetDocking::setWindow(QWidget* window)
{
    m_window = window;
    m_shell = AppBarShell::forDesktop(window);
}

void WidgetDocking::SHAppBarMessage(int message, AppBarData& data)
{
    if (message == AppBar::ABM_SETPOS)
        m_areaBeforeReserving = m_shell->workArea();
    m_shell->message(message, data);
}

PixelRect WidgetDocking::SystemWorkArea()
{
    return m_shell->workArea();
}

void WidgetDocking::SetWindowPosTopmost(const PixelRect& rect)
{
    // The window was made topmost when it was created; changing flags now would re-create it.
    m_window->setGeometry(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
    if (m_shell->workArea().right >= m_areaBeforeReserving.right)
        m_note = QStringLiteral("This desktop keeps no strip free for the bar: other windows may "
                                "cover it.");
    m_window->show();
    m_window->raise();
}

qint64 WidgetDocking::windowHandle()
{
    return static_cast<qint64>(m_window->winId());
}

double WidgetDocking::twipsPerPixelX()
{
    return TwipsPerPixel;
}

double WidgetDocking::twipsPerPixelY()
{
    return TwipsPerPixel;
}

int WidgetDocking::screenWidthTwips()
{
    return screenOf(m_window).width() * TwipsPerPixel;
}

int WidgetDocking::screenHeightTwips()
{
    return screenOf(m_window).height() * TwipsPerPixel;
}

int WidgetDocking::windowWidthTwips()
{
    return m_window->frameGeometry().width() * TwipsPerPixel;
}

int WidgetDocking::windowHeightTwips()
{
    return m_window->frameGeometry().height() * TwipsPerPixel;
}

void WidgetDocking::setWindowGeometryTwips(int left, int top, int width, int height)
{
    m_window->move(left / TwipsPerPixel, top / TwipsPerPixel);
    m_window->resize(width / TwipsPerPixel, height / TwipsPerPixel);
}

bool WidgetDocking::isMinimized()
{
    return m_window->isMinimized();
}

int WidgetDocking::innerHeightTwips()
{
    return m_window->height() * TwipsPerPixel;
}

void WidgetDocking::setWindowVisible(bool visible)
{
    m_window->setVisible(visible);
}

void WidgetDocking::DoEvents()
{
    QCoreApplication::processEvents();
}

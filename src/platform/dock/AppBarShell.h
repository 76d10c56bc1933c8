#pragma once

#include "Docking.h"

#include <memory>

class QWidget;

// The desktop's side of an application bar: reserving a strip of the screen and telling the
// work area that is left. One per kind of desktop.
class AppBarShell
{
public:
    virtual ~AppBarShell() = default;
    virtual void message(int message, AppBarData& data) = 0;
    virtual PixelRect workArea() = 0;

    // The kind that fits the running desktop: X11, Windows, or a plain topmost window.
    static std::unique_ptr<AppBarShell> forDesktop(QWidget* window);
};

// No strip can be reserved: the window only stays above the others at the screen's edge.
class TopmostOnlyShell : public AppBarShell
{
public:
    explicit TopmostOnlyShell(QWidget* window) : m_window(window) {}
    void message(int, AppBarData&) override {}
    PixelRect workArea() override;

private:
    QWidget* m_window;
};

#pragma once

#include "Docking.h"

#include <memory>

class AppBarShell;
class QWidget;

// Docking for a real window: its geometry in twips, the screen, and the desktop's application
// bar support.
class WidgetDocking : public DockingPlatform
{
public:
    WidgetDocking();
    ~WidgetDocking() override;
    // The window to dock; must be set before the window is first shown.
    void setWindow(QWidget* window);

    void SHAppBarMessage(int message, AppBarData& data) override;
    PixelRect SystemWorkArea() override;
    void SetWindowPosTopmost(const PixelRect& rect) override;
    qint64 windowHandle() override;
    double twipsPerPixelX() override;
    double twipsPerPixelY() override;
    int screenWidthTwips() override;
    int screenHeightTwips() override;
    int windowWidthTwips() override;
    int windowHeightTwips() override;
    void setWindowGeometryTwips(int left, int top, int width, int height) override;
    bool isMinimized() override;
    int innerHeightTwips() override;
    void setWindowVisible(bool visible) override;
    void DoEvents() override;
    QString dockingNote() override { return m_note; }

private:
    QWidget* m_window = nullptr;
    std::unique_ptr<AppBarShell> m_shell;
    // The work area as it was before the strip was asked for: unchanged after it, nothing was
    // reserved.
    PixelRect m_areaBeforeReserving;
    QString m_note;
};

#include "DisplayPlatform.h"

#include <QByteArray>
#include <QtGlobal>

void DisplayPlatform::chooseBeforeApplication()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    const bool wayland = qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
                         qgetenv("XDG_SESSION_TYPE") == QByteArrayLiteral("wayland");
    // Without Xwayland the bar stays a Wayland window, placed where the compositor puts it.
    if (wayland && !qgetenv("DISPLAY").isEmpty())
        qputenv("QT_QPA_PLATFORM", "xcb");
}

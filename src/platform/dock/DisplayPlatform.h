#pragma once

// Which of Qt's display platforms the bar runs on, chosen before the application object exists.
// A Wayland session gives a client no way to place a window or keep a strip free short of the
// layer-shell protocol, which Qt 6.4 offers no API for. Through Xwayland the bar is an X11 dock
// window with a strut, which GNOME's and KDE's compositors honour. The user's own choice
// (QT_QPA_PLATFORM) always stands.
namespace DisplayPlatform {
void chooseBeforeApplication();
} // namespace DisplayPlatform

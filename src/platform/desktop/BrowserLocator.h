#pragma once

#include <QString>
#include <optional>

// Finds the browser the program follows (Chromium-family or Firefox) and reads its name and
// version.
namespace BrowserLocator {

struct VersionInfo
{
    QString productName; // "Chromium", "Google Chrome", ...
    int major = 0;
    int minor = 0;
};

// TOLVANE_BROWSER when set, else the user's default web browser when it is one of these, else
// the first of chromium, chromium-browser, google-chrome, microsoft-edge, brave-browser,
// firefox-esr, firefox on PATH; empty when none is there.
QString executable();
// Whether that executable is Firefox's (followed over WebDriver BiDi, not DevTools).
bool isFirefox(const QString& executable);
// The token the default browser's path must hold: the executable's own name.
QString executableToken(const QString& executable);
// Parses "Chromium 156.0.8078.73 built on Debian ...", "Google Chrome 120.0.1.2" or
// "Mozilla Firefox 153.0esr".
std::optional<VersionInfo> parseVersionOutput(const QString& output);
// Runs the browser with --version; nullopt when it cannot be run or says nothing useful.
std::optional<VersionInfo> queryVersion(const QString& executable);

} // namespace BrowserLocator

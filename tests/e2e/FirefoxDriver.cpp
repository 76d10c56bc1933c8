#include "FirefoxDriver.h"

#include <QStandardPaths>

std::unique_ptr<PageDriver> makeChromiumDriver(const QString& profileFolder);
std::unique_ptr<PageDriver> makeExtensionDriver(bool firefox, const QString& profileFolder);

std::unique_ptr<PageDriver> makeDriver(TestBrowser browser, const QString& profileFolder)
{
    if (browser == TestBrowser::Chromium)
        return makeChromiumDriver(profileFolder);
    if (browser == TestBrowser::Extension || browser == TestBrowser::FirefoxExtension)
        return makeExtensionDriver(browser == TestBrowser::FirefoxExtension, profileFolder);
    const QString firefox = QStandardPaths::findExecutable(u"firefox-esr"_s);
    if (firefox.isEmpty())
        return nullptr;
    return std::make_unique<FirefoxDriver>(firefox, profileFolder);
}

#include "ChromiumDriver.h"

#include <QStandardPaths>

std::unique_ptr<PageDriver> makeChromiumDriver(const QString& profileFolder)
{
    const QString chromium = QStandardPaths::findExecutable(u"chromium"_s);
    if (chromium.isEmpty())
        return nullptr;
    return std::make_unique<ChromiumDriver>(chromium, profileFolder);
}

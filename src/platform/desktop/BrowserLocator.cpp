#include "BrowserLocator.h"

#include "DefaultApplication.h"

#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace {
constexpr int VersionTimeoutMs = 10000;

// The browsers Tolvane can follow, by the names of their programs, in the order they are looked
// for.
const char* const Followable[] = {"chromium",       "chromium-browser", "google-chrome",
                                  "microsoft-edge", "brave-browser",    "firefox-esr",
                                  "firefox"};

// Whether a program is one of them ("google-chrome-stable" is Chrome's).
bool isFollowable(const QString& program)
{
    const QString name = QFileInfo(program).fileName();
    for (const char* known : Followable) {
        if (name.startsWith(QLatin1String(known)))
            return true;
    }
    return false;
}
} // namespace

QString BrowserLocator::executable()
{
    const QString chosen = qEnvironmentVariable("TOLVANE_BROWSER");
    if (!chosen.isEmpty()) {
        const QString found = QStandardPaths::findExecutable(chosen);
        return found.isEmpty() ? chosen : found;
    }
    const QString preferred =
        DefaultApplication::forMimeType(QStringLiteral("x-scheme-handler/http"));
    if (isFollowable(preferred) && QFileInfo(preferred).isExecutable())
        return preferred;
    for (const char* name : Followable) {
        const QString found = QStandardPaths::findExecutable(QString::fromLatin1(name));
        if (!found.isEmpty())
            return found;
    }
    return {};
}

bool BrowserLocator::isFirefox(const QString& executable)
{
    return QFileInfo(executable).fileName().contains(QLatin1String("firefox"), Qt::CaseInsensitive);
}

QString BrowserLocator::executableToken(const QString& executable)
{
    const QString name = QFileInfo(executable).completeBaseName();
    return name.isEmpty() ? QStringLiteral("chromium") : name;
}

std::optional<BrowserLocator::VersionInfo> BrowserLocator::parseVersionOutput(const QString& output)
{
    static const QRegularExpression pattern(
        QStringLiteral(R"(^\s*(.*?)\s+(\d+)\.(\d+)(?:\.\d+)*(?:[a-z]+\d*)?(?:\s|$))"));
    const auto match = pattern.match(output);
    if (!match.hasMatch())
        return std::nullopt;
    VersionInfo info;
    info.productName = match.captured(1).trimmed();
    info.major = match.captured(2).toInt();
    info.minor = match.captured(3).toInt();
    if (info.productName.isEmpty())
        info.productName = QStringLiteral("Chromium");
    return info;
}

std::optional<BrowserLocator::VersionInfo> BrowserLocator::queryVersion(const QString& executable)
{
    if (executable.isEmpty())
        return std::nullopt;
    QProcess process;
    process.start(executable, {QStringLiteral("--version")});
    if (!process.waitForFinished(VersionTimeoutMs)) {
        process.kill();
        process.waitForFinished(1000);
        return std::nullopt;
    }
    return parseVersionOutput(QString::fromLocal8Bit(process.readAllStandardOutput()));
}

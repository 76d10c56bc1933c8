#include "DefaultApplication.h"

#include "IniDocument.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QProcess>
#include <QStandardPaths>

namespace {
QString readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

// mimeapps.list files first (most specific first), then the distribution's defaults.list.
QStringList associationFiles()
{
    QStringList files;
    for (const QString& dir : QStandardPaths::standardLocations(QStandardPaths::ConfigLocation))
        files << dir + QStringLiteral("/mimeapps.list");
    for (const QString& dir :
         QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation))
        files << dir + QStringLiteral("/mimeapps.list") << dir + QStringLiteral("/defaults.list");
    return files;
}

QString desktopEntryPath(const QString& desktopId)
{
    return QStandardPaths::locate(QStandardPaths::ApplicationsLocation, desktopId);
}

// The program of a desktop entry: the first word of its Exec line, found on PATH.
QString programOf(const QString& desktopFile)
{
    const IniDocument entry(readText(desktopFile));
    const QString exec =
        entry.value(QStringLiteral("Desktop Entry"), QStringLiteral("Exec")).value_or(QString());
    const QStringList words = QProcess::splitCommand(exec);
    if (words.isEmpty())
        return {};
    const QString found = QStandardPaths::findExecutable(words.first());
    return found.isEmpty() ? words.first() : found;
}
} // namespace

QString DefaultApplication::forFile(const QString& file)
{
    // Web pages are named directly: the MIME database may be missing from a minimal system.
    const QString suffix = QFileInfo(file).suffix().toLower();
    return forMimeType((suffix == QLatin1String("html") || suffix == QLatin1String("htm"))
                           ? QStringLiteral("text/html")
                           : QMimeDatabase().mimeTypeForFile(file).name());
}

QString DefaultApplication::forMimeType(const QString& mimeType)
{
    for (const QString& list : associationFiles()) {
        const IniDocument associations(readText(list));
        const QString ids = associations.value(QStringLiteral("Default Applications"), mimeType)
                                .value_or(QString());
        for (const QString& id : ids.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const QString desktopFile = desktopEntryPath(id.trimmed());
            if (!desktopFile.isEmpty())
                return programOf(desktopFile);
        }
    }
    return {};
}

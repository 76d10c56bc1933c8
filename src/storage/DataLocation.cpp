#include "DataLocation.h"

#include <QDir>

QString DataFilePath(const DataLocation& location, const QString& fileName)
{
    return location.DataFolder() + QDir::separator() + fileName;
}

QString ProfilePrefixOf(int index)
{
    if (index <= 0)
        return QStringLiteral("z");
    switch (index) {
    case 1:
        return QStringLiteral("v");
    case 2:
        return QStringLiteral("w");
    case 3:
        return QStringLiteral("x");
    case 4:
        return QStringLiteral("y");
    default:
        return {};
    }
}

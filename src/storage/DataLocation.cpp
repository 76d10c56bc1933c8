#include "DataLocation.h"

#include <QDir>

QString DataFilePath(const DataLocation& location, const QString& fileName)
{
    return location.DataFolder() + QDir::separator() + fileName;
}

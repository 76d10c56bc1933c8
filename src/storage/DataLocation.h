#pragma once

#include <QString>

// Where the current profile's data files are: asked anew at every file operation, so a change
// of profile takes effect with the next read or write.
class DataLocation
{
public:
    virtual ~DataLocation() = default;
    virtual QString DataFolder() const = 0;
    // The file-name prefix of a profile; a negative index means the current profile.
    virtual QString GetProfilePrefix(int a_iIndex = -1) const = 0;
};

// DataFolder + separator + file name.
QString DataFilePath(const DataLocation& location, const QString& fileName);

// The one-letter file-name prefix of a profile index: 0 or below "z", 1 "v", 2 "w", 3 "x",
// 4 "y", anything else empty.
QString ProfilePrefixOf(int index);

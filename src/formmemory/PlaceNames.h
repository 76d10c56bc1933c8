#pragma once

#include <QString>

// States, provinces and countries by code and by name, so that "IL" on one site fills
// "Illinois" on another and "USA" picks "United States".
namespace PlaceNames {

// The region's code ("IL"), or empty when the text names no region this table knows.
QString regionCode(const QString& text);
// The country's two-letter code ("US"), or empty.
QString countryCode(const QString& text);

inline bool isRegion(const QString& text)
{
    return !regionCode(text).isEmpty();
}
inline bool isCountry(const QString& text)
{
    return !countryCode(text).isEmpty();
}

} // namespace PlaceNames

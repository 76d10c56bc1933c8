#pragma once

#include <QString>

// The application's title, as message boxes and the settings store name it.
inline QString AppTitle()
{
    return QStringLiteral("Tolvane");
}

// The caption of the bar: "Tolvane v" + major.minor.revision.
inline QString AppCaption()
{
    return AppTitle() + QStringLiteral(" v%1.%2.%3")
                            .arg(TOLVANE_VERSION_MAJOR)
                            .arg(TOLVANE_VERSION_MINOR)
                            .arg(TOLVANE_VERSION_PATCH);
}

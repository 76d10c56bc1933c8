#pragma once

#include "PageScriptText.h"

#include <QString>

// The script Tolvane runs in every frame (PageScript.js), called with the function it reports
// through.
namespace PageScript {

// `send` is a script expression for a function taking one text message (a report in JSON).
inline QString source(const QString& send)
{
    return QString::fromUtf8(PageScriptText) + QStringLiteral("tolvanePageScript(%1);\n").arg(send);
}

} // namespace PageScript

#pragma once

#include "TextMetrics.h"

// Text widths in Tahoma through Qt's font metrics, in twips (15 to the pixel at 96 dpi).
class QtTextMetrics : public TextMetrics
{
public:
    int TextWidth(const QString& text, double pointSize) const override;
};

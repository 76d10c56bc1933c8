#pragma once

#include <QString>

// Measures text in the forms' font (Tahoma) at a given size, in twips.
class TextMetrics
{
public:
    virtual ~TextMetrics() = default;
    virtual int TextWidth(const QString& text, double pointSize) const = 0;
};

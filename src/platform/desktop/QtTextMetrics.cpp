#include "QtTextMetrics.h"

#include <QFont>
#include <QFontMetrics>

namespace {
constexpr int TwipsPerPixel = 15;
}

int QtTextMetrics::TextWidth(const QString& text, double pointSize) const
{
    QFont font(QStringLiteral("Tahoma"));
    font.setPointSizeF(pointSize);
    return QFontMetrics(font).horizontalAdvance(text) * TwipsPerPixel;
}

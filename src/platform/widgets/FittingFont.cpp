#include "FittingFont.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QFontMetrics>
#include <QLabel>
#include <QStyle>

#include <algorithm>

namespace {
// The text as shown: "&&" is an ampersand, a single "&" only underlines the next letter.
QString shownText(const QString& text)
{
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        shown += text[i];
    }
    return shown;
}

QString textOf(const QWidget* widget)
{
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->pixmap().isNull() ? label->text() : QString();
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
        return button->text();
    return {};
}

// Width the widget needs to show its whole text in the font.
int neededWidth(const QWidget* widget, const QFont& font)
{
    const int textWidth = QFontMetrics(font).horizontalAdvance(shownText(textOf(widget)));
    const QStyle* style = widget->style();
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return textWidth + 2 * (label->margin() + label->frameWidth()) +
               std::max(0, label->indent());
    if (qobject_cast<const QCheckBox*>(widget))
        return textWidth + style->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, widget) +
               style->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, widget);
    return textWidth + 2 * (style->pixelMetric(QStyle::PM_ButtonMargin, nullptr, widget) +
                            style->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, widget));
}

bool fits(const QWidget* widget, const QFont& font)
{
    const QString text = textOf(widget);
    if (text.isEmpty())
        return true;
    if (neededWidth(widget, font) > widget->width())
        return false;
    return !qobject_cast<const QLabel*>(widget) || QFontMetrics(font).height() <= widget->height();
}
} // namespace

void FittingFont::shrinkToFit(QWidget* window, double smallest)
{
    QList<QWidget*> sharing;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        const bool shows = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget);
        if (shows && !widget->testAttribute(Qt::WA_SetFont))
            sharing << widget;
    }
    QFont font = window->font();
    while (font.pointSizeF() - 0.25 >= smallest &&
           !std::all_of(sharing.begin(), sharing.end(),
                        [&](const QWidget* w) { return fits(w, font); }))
        font.setPointSizeF(font.pointSizeF() - 0.25);
    window->setFont(font);
}

#pragma once

class QWidget;

// The bar is laid out for Tahoma, which is rarely installed here; the font that stands in for it
// is usually wider. These keep every caption inside the control it was placed in.
namespace FittingFont {

// Lowers the window's font, a quarter point at a time from its present size down to smallest,
// until every label, button and check box that uses it shows its whole text in its width and
// every label's line fits its height. Widgets with a font of their own are left alone.
void shrinkToFit(QWidget* window, double smallest);

} // namespace FittingFont

#pragma once

#include <QString>
#include <memory>

// An element of a web page, as form capture and fill use it. A property the element does not
// have, or a browser that no longer answers, throws AppError.
class HtmlElement
{
public:
    virtual ~HtmlElement() = default;

    virtual QString tagName() const = 0;
    virtual QString name() const = 0;
    virtual void scrollIntoView() = 0;
    // All elements; text areas also take a new text through it.
    virtual QString innerText() const = 0;
    virtual void setInnerText(const QString& text) = 0;
    // Input elements.
    virtual QString type() const = 0;
    virtual bool checked() const = 0;
    // On a radio button, checking unchecks the rest of its group.
    virtual void setChecked(bool checked) = 0;
    // Input and list elements; for a list, the selected option's value.
    virtual QString value() const = 0;
    virtual void setValue(const QString& value) = 0;
    // List elements; -1 means none selected.
    virtual int selectedIndex() const = 0;
    virtual void setSelectedIndex(int index) = 0;
    // The user has focused or edited this field; a fill of added fields leaves it alone.
    virtual bool userTouched() const { return false; }
};

using ElementPtr = std::shared_ptr<HtmlElement>;

#pragma once

#include <QList>
#include <QString>
#include <memory>
#include <utility>

// What a page says about a form field besides its name: the texts a user reads beside it and the
// declarations the page makes for browsers. Every text is the page's own and may be anything.
struct FieldDescription
{
    QString autocomplete; // the standard autofill tokens, as declared
    QString id;
    QString label; // its label's text, or the short caption just before it
    QString placeholder;
    QString ariaLabel;
    QString inputType; // the page's own input type (email, tel, date, ...), before any mapping
    QList<std::pair<QString, QString>> options; // a list's option values and texts
    QString section;  // the legend or heading of the part of the form it is in
    QString language; // the page's language ("en-GB"), as it declares it
    // Told apart from the document's other fields of its kind that share its name (or have
    // none): "#" + its id, else "#" + its place among them; empty for a field of its own name.
    QString twin;
    // Where the user could not type: read-only, disabled, hidden or off-screen.
    bool outOfReach = false;
    // A list whose option the page chose in advance (a country preselected).
    bool preselected = false;
};

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
    // Its value is what the user's own key presses, pointer or paste made it, not what a page
    // script put there; only such a value of a text field or text area is remembered.
    virtual bool userTyped() const { return true; }
    // Text fields, text areas and lists; other elements describe nothing.
    virtual FieldDescription description() const { return {}; }
};

using ElementPtr = std::shared_ptr<HtmlElement>;

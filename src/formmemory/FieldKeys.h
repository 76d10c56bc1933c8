#pragma once

#include "HtmlElement.h"
#include "ValueStore.h"

#include <QString>

class HtmlElement;

// The element kinds form memory knows, from the tag name and input type in lower case.
enum class FieldKind
{
    TextField,
    Choice,
    List,
    TextArea,
    Other
};

FieldKind KindOfInput(const QString& type);
// The key of a radio button or check box: name + "_" + value.
QString ChoiceKey(const HtmlElement& element);
// The index entry of a list: name + " SelectedIndex".
QString SelectedIndexKey(const QString& name);
// "True" or "False", as the choice entries hold them.
QString BooleanText(bool value);
// A stored choice read back: "True"/"False" in any case, or a number (0 is false). Anything
// else throws a type mismatch.
bool ReadBoolean(const QString& text);
// A field without a name gives keys ("_", "", " SelectedIndex") that say nothing about which
// field it is on another site: its entries are kept for its own site only.
ValueReach ReachOf(const QString& name);

// Where a text field, text area or list is remembered. On its site: by its name, and where
// other fields of its kind in the document share that name (or it has none), by what tells it
// apart from them. For any site: by its name alone; not at all when it has none or is someone
// else's (a friend's, an answer), which says nothing about a field on another site.
struct FieldEntry
{
    QString key;
    QString anyKey;
    ValueReach reach;
};
FieldEntry EntryOf(const QString& name, const FieldDescription& described, bool someoneElses);

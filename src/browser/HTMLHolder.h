#pragma once

#include "HtmlDocument.h"

#include <memory>
#include <optional>

class Clock;

// What a document holder reports to its browser window holder.
class HTMLHolderEvents
{
public:
    virtual ~HTMLHolderEvents() = default;
    virtual void HTMLHolder_DocChanged(const DocPtr& document, const ElementPtr& element) = 0;
    virtual void HTMLHolder_HTMLGotFocus(const DocPtr& document) = 0;
    virtual void HTMLHolder_DocComplete(const DocPtr& document) = 0;
    virtual void HTMLHolder_DocVisited(const DocPtr& document) = 0;
    virtual void HTMLHolder_FieldsAdded(const DocPtr& document) = 0;
};

// Follows one HTML document and reduces its events to five: an element may have changed, the
// document got the focus, the document is complete (or a refill was asked for), a click, and
// fields the page added after it completed.
class HTMLHolder : public DocumentEvents, public std::enable_shared_from_this<HTMLHolder>
{
public:
    HTMLHolder(HTMLHolderEvents& owner, const Clock& clock);
    ~HTMLHolder() override;
    HTMLHolder(const HTMLHolder&) = delete;
    HTMLHolder& operator=(const HTMLHolder&) = delete;

    DocPtr HTMLDoc() const { return m_html; }
    void setHTMLDoc(const DocPtr& document);
    ElementPtr LastActiveElement() const { return m_lastActiveElement; }

    void HTML_onactivate() override;
    bool HTML_onclick() override;
    bool HTML_ondblclick() override;
    void HTML_onfocusin() override;
    void HTML_onpropertychange() override;
    void HTML_onreadystatechange() override;
    void HTML_onfieldsadded() override;

private:
    void rememberActiveElement();

    HTMLHolderEvents& m_owner;
    const Clock& m_clock;
    DocPtr m_html;
    ElementPtr m_lastActiveElement;
    std::optional<qint64> m_lastDblClickMs;
};

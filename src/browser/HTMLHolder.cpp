#include "HTMLHolder.h"

#include "AppError.h"
#include "Clock.h"
#include "Ini.h"
#include "VbText.h"

namespace {
// A second double click within this time asks for the page to be filled again.
constexpr qint64 RefillIntervalMs = 2000;
} // namespace

HTMLHolder::HTMLHolder(HTMLHolderEvents& owner, const Clock& clock) : m_owner(owner), m_clock(clock)
{
}

HTMLHolder::~HTMLHolder()
{
    if (m_html) {
        try {
            m_html->unsubscribe(this);
        } catch (const AppError&) {
        }
    }
}

void HTMLHolder::setHTMLDoc(const DocPtr& document)
{
    if (m_html)
        m_html->unsubscribe(this);
    m_html = document;
    if (m_html)
        m_html->subscribe(shared_from_this());
    m_lastActiveElement.reset();
    rememberActiveElement();
}

void HTMLHolder::rememberActiveElement()
{
    try {
        if (m_html)
            m_lastActiveElement = m_html->activeElement();
    } catch (const AppError&) {
        m_lastActiveElement.reset();
    }
}

void HTMLHolder::HTML_onpropertychange()
{
    // The element active before this change is the one that may have been edited.
    const auto self = shared_from_this();
    if (const ElementPtr previous = m_lastActiveElement)
        m_owner.HTMLHolder_DocChanged(m_html, previous);
    m_lastActiveElement.reset();
    rememberActiveElement();
}

void HTMLHolder::HTML_onactivate()
{
    const auto self = shared_from_this();
    m_owner.HTMLHolder_HTMLGotFocus(m_html);
}

void HTMLHolder::HTML_onfocusin()
{
    const auto self = shared_from_this();
    m_owner.HTMLHolder_HTMLGotFocus(m_html);
}

bool HTMLHolder::HTML_onclick()
{
    const auto self = shared_from_this();
    m_owner.HTMLHolder_DocVisited(m_html);
    return true;
}

bool HTMLHolder::HTML_ondblclick()
{
    const auto self = shared_from_this();
    if (m_lastDblClickMs && m_clock.monotonicMs() - *m_lastDblClickMs < RefillIntervalMs)
        m_owner.HTMLHolder_DocComplete(m_html);
    // Taken after the refill, which may run for a while, as the next interval's start.
    m_lastDblClickMs = m_clock.monotonicMs();
    return false;
}

void HTMLHolder::HTML_onreadystatechange()
{
    const auto self = shared_from_this();
    if (SameText(m_html->readyState(), QStringLiteral("complete")))
        m_owner.HTMLHolder_DocComplete(m_html);
}

void HTMLHolder::HTML_onfieldsadded()
{
    const auto self = shared_from_this();
    m_owner.HTMLHolder_FieldsAdded(m_html);
}

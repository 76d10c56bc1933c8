#pragma once

#include "HtmlDocument.h"

class Control;

// Shows the page that last got the focus (title, address, cookies) in the bar.
class PageNotices
{
public:
    PageNotices(Control& txtActive, Control& txtURL, Control& imgCookie)
        : m_txtActive(txtActive), m_txtURL(txtURL), m_imgCookie(imgCookie)
    {
    }

    void IEHolder_HTMLGotFocus(int Index, const DocPtr& document);

private:
    Control& m_txtActive;
    Control& m_txtURL;
    Control& m_imgCookie;
};

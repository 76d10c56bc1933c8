#include "PageNotices.h"

#include "AppError.h"
#include "Controls.h"
#include "VbText.h"

namespace {
// Every step may fail on its own; a failed step is skipped.
template <class Step> void ignoringErrors(Step step)
{
    try {
        step();
    } catch (const AppError&) {
    }
}
} // namespace

void PageNotices::IEHolder_HTMLGotFocus(int /*Index*/, const DocPtr& document)
{
    m_txtActive.setText(QString());
    m_txtURL.setText(QString());
    ignoringErrors([&] { m_txtActive.setText(document->title()); });
    ignoringErrors([&] { m_txtURL.setText(document->url()); });
    if (TrimSpaces(m_txtActive.text()).isEmpty() && !TrimSpaces(m_txtURL.text()).isEmpty())
        m_txtActive.setText(m_txtURL.text());
    ignoringErrors([&] {
        const QString cookies = TrimSpaces(document->cookie());
        m_imgCookie.setVisible(!cookies.isEmpty());
        m_imgCookie.setToolTip(QStringLiteral("This page uses cookies: ") + cookies);
    });
}

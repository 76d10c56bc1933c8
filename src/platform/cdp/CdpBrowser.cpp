#include "CdpBrowser.h"

#include "AppError.h"
#include "CdpShell.h"

namespace {
AppError closedWindow()
{
    return AppError(ErrorNumber::BrowserCall, QStringLiteral("The browser window has closed."));
}
} // namespace

qint64 CdpBrowser::HWND() const
{
    if (!m_shell.isOpen(m_targetId))
        throw closedWindow();
    return m_handle;
}

DocPtr CdpBrowser::document()
{
    if (!m_shell.isOpen(m_targetId))
        throw closedWindow();
    return m_shell.pageDocument(m_targetId);
}

QString CdpBrowser::LocationURL() const
{
    if (!m_shell.isOpen(m_targetId))
        throw closedWindow();
    return m_shell.targetUrl(m_targetId);
}

void CdpBrowser::Refresh()
{
    if (!m_shell.isOpen(m_targetId))
        throw closedWindow();
    m_shell.call(m_targetId, QStringLiteral("Page.reload"));
}

void CdpBrowser::documentComplete(const BrowserPtr& pDisp, const QString& url)
{
    const auto self = shared_from_this();
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            sink->IE_DocumentComplete(pDisp, url);
        } catch (const AppError&) {
        }
    }
}

void CdpBrowser::statusText(const QString& text)
{
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            sink->IE_StatusTextChange(text);
        } catch (const AppError&) {
        }
    }
}

void CdpBrowser::progressChange(int progress, int progressMax)
{
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            sink->IE_ProgressChange(progress, progressMax);
        } catch (const AppError&) {
        }
    }
}

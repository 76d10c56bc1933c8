#include "ScriptWindow.h"

#include "AppError.h"

namespace {
AppError closedWindow()
{
    return AppError(ErrorNumber::BrowserCall, QStringLiteral("The browser window has closed."));
}
} // namespace

qint64 ScriptWindow::HWND() const
{
    if (!isOpen())
        throw closedWindow();
    return m_handle;
}

DocPtr ScriptWindow::document()
{
    if (!isOpen())
        throw closedWindow();
    return m_host.pageDocument(m_windowId);
}

QString ScriptWindow::LocationURL() const
{
    if (!isOpen())
        throw closedWindow();
    return m_host.pageUrl(m_windowId);
}

void ScriptWindow::Refresh()
{
    if (!isOpen())
        throw closedWindow();
    m_host.reload(m_windowId);
}

void ScriptWindow::loaded(const QString& frameId, const DocPtr& document)
{
    if (frameId == m_windowId)
        documentComplete(shared_from_this(), m_host.pageUrl(m_windowId));
    else if (document)
        documentComplete(std::make_shared<ScriptFrameWindow>(shared_from_this(), document),
                         QString());
}

void ScriptWindow::documentComplete(const BrowserPtr& pDisp, const QString& url)
{
    const auto self = shared_from_this();
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            sink->IE_DocumentComplete(pDisp, url);
        } catch (const AppError&) {
        }
    }
}

void ScriptWindow::statusText(const QString& text)
{
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            sink->IE_StatusTextChange(text);
        } catch (const AppError&) {
        }
    }
}

void ScriptWindow::subscribe(const std::shared_ptr<BrowserEvents>& sink)
{
    m_sinks.add(sink);
    if (!m_progress)
        return;
    try {
        sink->IE_ProgressChange(m_progress->first, m_progress->second);
    } catch (const AppError&) {
    }
}

void ScriptWindow::progressChange(int progress, int progressMax)
{
    m_progress = std::pair{progress, progressMax};
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            sink->IE_ProgressChange(progress, progressMax);
        } catch (const AppError&) {
        }
    }
}

DocPtr ScriptFrameOwner::document()
{
    DocPtr document = m_host.documentFor(m_scope, m_frame);
    if (!document)
        throw AppError(ErrorNumber::BrowserCall,
                       QStringLiteral("The frame's document cannot be reached."));
    return document;
}

#include "ScriptWindowList.h"

#include "AppError.h"
#include "ScriptDocument.h"

#include <algorithm>

void ScriptWindowList::connect()
{
    if (m_connection != Connection::None)
        return;
    // Windows announced while connecting may be asked for at once: they use what is there.
    m_connection = Connection::Opening;
    try {
        openConnection();
        m_connection = Connection::Open;
    } catch (const AppError& error) {
        m_connectFailure = error.description();
        m_connection = Connection::Failed;
    }
}

void ScriptWindowList::requireConnection()
{
    connect();
    if (m_connection == Connection::Failed)
        throw AppError(ErrorNumber::BrowserCall, m_connectFailure);
}

void ScriptWindowList::reconnect()
{
    dropConnection();
    // What was known belongs to the old browser; handles go on counting, so none is reused.
    for (const Window& known : std::as_const(m_windows))
        known.window->retire();
    m_windows.clear();
    m_order.clear();
    m_progress.clear();
    m_connection = Connection::None;
    m_connectFailure.clear();
    requireConnection();
}

QList<BrowserPtr> ScriptWindowList::items()
{
    requireConnection();
    QList<BrowserPtr> windows;
    for (const QString& id : std::as_const(m_order)) {
        const Window& known = m_windows[id];
        if (known.open)
            windows.append(known.window);
    }
    return windows;
}

void ScriptWindowList::subscribe(const std::shared_ptr<ShellWindowEvents>& sink)
{
    m_sinks.add(sink);
    connect();
}

void ScriptWindowList::unsubscribe(const ShellWindowEvents* sink)
{
    m_sinks.remove(sink);
}

bool ScriptWindowList::isOpen(const QString& windowId) const
{
    const auto known = m_windows.constFind(windowId);
    return known != m_windows.constEnd() && known->open && isConnected();
}

void ScriptWindowList::addWindow(const QString& windowId)
{
    Window& known = m_windows[windowId];
    if (known.window) {
        known.open = true;
        return;
    }
    known.window = std::make_shared<ScriptWindow>(*this, windowId, (*m_nextHandle)++);
    m_order.append(windowId);
    for (const auto& sink : m_sinks.snapshot())
        sink->SW_WindowRegistered(static_cast<int>(known.window->HWND()));
}

std::shared_ptr<ScriptWindow> ScriptWindowList::window(const QString& windowId) const
{
    return m_windows.value(windowId).window;
}

void ScriptWindowList::windowClosed(const QString& windowId)
{
    const auto known = m_windows.find(windowId);
    if (known == m_windows.end() || !known->open)
        return;
    known->open = false;
    revoked();
}

void ScriptWindowList::browserGone()
{
    bool hadWindows = false;
    for (Window& known : m_windows) {
        hadWindows = hadWindows || known.open;
        known.open = false;
    }
    // One pass of the window tracking frees every holder of the browser that went.
    if (hadWindows)
        revoked();
}

void ScriptWindowList::revoked()
{
    for (const auto& sink : m_sinks.snapshot())
        sink->SW_WindowRevoked(0);
}

void ScriptWindowList::activateTitled(
    const QString& title, const std::function<QString(const QString&)>& titleOf,
    const std::function<bool(const QString&)>& bringForwardIfShown)
{
    for (const bool exact : {true, false}) {
        for (const QString& id : std::as_const(m_order)) {
            if (title.isEmpty() || !isOpen(id))
                continue;
            const QString tabTitle = titleOf(id);
            if ((exact ? tabTitle == title : tabTitle.startsWith(title)) && bringForwardIfShown(id))
                return;
        }
    }
    throw AppError(ErrorNumber::InvalidCall, QStringLiteral("Invalid procedure call or argument"));
}

void ScriptWindowList::restartProgress(const QString& windowId)
{
    m_progress[windowId] = Progress{};
}

void ScriptWindowList::requestSent(const std::shared_ptr<ScriptWindow>& page)
{
    Progress& progress = m_progress[page->windowId()];
    ++progress.requested;
    page->progressChange(progress.ended, progress.requested);
}

void ScriptWindowList::requestEnded(const std::shared_ptr<ScriptWindow>& page)
{
    // A request sent before the page started navigating again may end after: it was not counted,
    // and the page is never more than all loaded.
    Progress& progress = m_progress[page->windowId()];
    progress.ended = std::min(progress.ended + 1, progress.requested);
    page->progressChange(progress.ended, progress.requested);
}

void ScriptWindowList::reportLoad(const std::shared_ptr<ScriptWindow>& page, const QString& frameId,
                                  const DocPtr& document, const ScriptDocuments& documents,
                                  const std::function<bool(const QString& realm)>& ofPage,
                                  std::function<DocPtr()> shownNow)
{
    if (!document) {
        page->loaded(frameId, nullptr);
        return;
    }
    const auto loaded = std::static_pointer_cast<ScriptDocument>(document);
    ScriptDocuments::DocumentList fetched{loaded};
    if (frameId == page->windowId()) {
        for (const auto& frame : documents.held(ofPage)) {
            if (frame != loaded && !frame->unloaded())
                fetched.push_back(frame);
        }
    }
    ScriptDocuments::prefetch(fetched, [loaded, page, frameId, shownNow = std::move(shownNow)] {
        if (shownNow() == loaded)
            page->loaded(frameId, loaded);
    });
}

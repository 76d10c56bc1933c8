#include "ModelBrowser.h"

#include "AppError.h"

namespace {
void closedError()
{
    throw AppError(ErrorNumber::BrowserCall, QStringLiteral("The browser window has closed."));
}

// The browser object of one frame: the frame's document and address, the window's handle.
class FrameBrowser : public Browser
{
public:
    FrameBrowser(qint64 hwnd, DocPtr document) : m_hwnd(hwnd), m_document(std::move(document)) {}
    qint64 HWND() const override { return m_hwnd; }
    DocPtr document() override { return m_document; }
    QString LocationURL() const override { return m_document ? m_document->url() : QString(); }
    void Refresh() override {}
    void subscribe(const std::shared_ptr<BrowserEvents>&) override {}
    void unsubscribe(const BrowserEvents*) override {}

private:
    qint64 m_hwnd;
    DocPtr m_document;
};
} // namespace

void ModelBrowser::checkOpen() const
{
    if (m_closed)
        closedError();
}

qint64 ModelBrowser::HWND() const
{
    checkOpen();
    return m_hwnd;
}

DocPtr ModelBrowser::document()
{
    checkOpen();
    return m_page;
}

QString ModelBrowser::LocationURL() const
{
    checkOpen();
    return m_location;
}

void ModelBrowser::Refresh()
{
    checkOpen();
    ++m_refreshes;
}

void ModelBrowser::subscribe(const std::shared_ptr<BrowserEvents>& sink)
{
    m_sinks.add(sink);
}

void ModelBrowser::unsubscribe(const BrowserEvents* sink)
{
    m_sinks.remove(sink);
}

void ModelBrowser::raiseComplete(const BrowserPtr& pDisp, const QString& url)
{
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            sink->IE_DocumentComplete(pDisp, url);
        } catch (const AppError&) {
        }
    }
}

void ModelBrowser::navigate(const std::shared_ptr<ModelDocument>& page)
{
    checkOpen();
    m_page = page;
    if (!m_shown.contains(page))
        m_shown.append(page);
    m_location = page->url();
    for (int j = 0; j < page->framesLength(); ++j) {
        try {
            const DocPtr frame = page->frameItem(j)->document();
            if (frame && frame->readyState() == QLatin1String("complete"))
                raiseComplete(std::make_shared<FrameBrowser>(m_hwnd, frame), frame->url());
        } catch (const AppError&) {
        }
    }
    page->setReadyState(QStringLiteral("complete"));
    raiseComplete(shared_from_this(), m_location);
}

void ModelBrowser::showFolder(const QString& path)
{
    checkOpen();
    m_page.reset();
    m_location = path;
    raiseComplete(shared_from_this(), path);
}

void ModelBrowser::completeFrame(int index)
{
    const DocPtr frame = m_page->frameItem(index)->document();
    static_cast<ModelDocument*>(frame.get())->setReadyState(QStringLiteral("complete"));
    raiseComplete(std::make_shared<FrameBrowser>(m_hwnd, frame), frame->url());
}

void ModelBrowser::loadFrame(int index, const std::shared_ptr<ModelDocument>& document)
{
    const auto frame = std::static_pointer_cast<ModelFrame>(m_page->frameItem(index));
    if (auto* previous = static_cast<ModelDocument*>(frame->shown().get()))
        previous->detach();
    frame->show(document);
    if (!m_shown.contains(document))
        m_shown.append(document);
    completeFrame(index);
}

void ModelBrowser::progress(int Progress, int ProgressMax)
{
    for (const auto& sink : m_sinks.snapshot())
        sink->IE_ProgressChange(Progress, ProgressMax);
}

void ModelBrowser::statusText(const QString& text)
{
    for (const auto& sink : m_sinks.snapshot())
        sink->IE_StatusTextChange(text);
}

void ModelBrowser::close()
{
    m_closed = true;
    for (const auto& page : std::as_const(m_shown))
        page->detach();
}

QList<BrowserPtr> ModelShell::items()
{
    if (m_walkFails)
        throw AppError(ErrorNumber::BrowserCall,
                       QStringLiteral("The shell window list is not available."));
    QList<BrowserPtr> items;
    for (const auto& window : std::as_const(m_windows))
        items.append(window);
    return items;
}

void ModelShell::subscribe(const std::shared_ptr<ShellWindowEvents>& sink)
{
    m_sinks.add(sink);
}

void ModelShell::unsubscribe(const ShellWindowEvents* sink)
{
    m_sinks.remove(sink);
}

void ModelShell::AppActivate(const QString& title)
{
    for (const auto& window : std::as_const(m_windows)) {
        try {
            const DocPtr page = window->document();
            if (page && page->title().startsWith(title)) {
                m_activated.append(title);
                return;
            }
        } catch (const AppError&) {
        }
    }
    throw AppError(ErrorNumber::InvalidCall, QStringLiteral("Invalid procedure call or argument"));
}

std::shared_ptr<ModelBrowser> ModelShell::open()
{
    auto window = std::make_shared<ModelBrowser>(m_nextHwnd);
    m_nextHwnd += 0x10;
    m_windows.append(window);
    for (const auto& sink : m_sinks.snapshot())
        sink->SW_WindowRegistered(static_cast<int>(m_windows.size()));
    return window;
}

void ModelShell::close(const std::shared_ptr<ModelBrowser>& window)
{
    window->close();
    m_windows.removeAll(window);
    for (const auto& sink : m_sinks.snapshot())
        sink->SW_WindowRevoked(0);
}

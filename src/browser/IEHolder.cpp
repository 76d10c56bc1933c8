#include "IEHolder.h"

#include "AppError.h"
#include "ErrorReport.h"
#include "ShellWindowList.h"
#include "SiteFiles.h"

#include <algorithm>
#include <cmath>

IEHolder::IEHolder(int index, const IEHolderServices& services)
    : m_index(index), m_services(services)
{
    // Slot 0 of the document holders is a template that never holds a document.
    m_htmlHolders.push_back(std::make_shared<HTMLHolder>(*this, m_services.clock));
}

IEHolder::~IEHolder()
{
    if (m_ie) {
        try {
            m_ie->unsubscribe(this);
        } catch (const AppError&) {
        }
    }
}

void IEHolder::setInternetExplorer(const BrowserPtr& browser)
{
    try {
        if (m_ie)
            m_ie->unsubscribe(this);
    } catch (const AppError&) {
    }
    m_ie = browser;
    try {
        if (m_ie)
            m_ie->subscribe(shared_from_this());
    } catch (const AppError&) {
    }
    for (int i = htmlHolderUpperBound(); i >= 1; --i) {
        QString url;
        try {
            if (const DocPtr document = m_htmlHolders[i]->HTMLDoc())
                url = document->url();
        } catch (const AppError&) {
        }
        // A document that still answers belongs to a live window: keep what is held.
        if (!url.isEmpty())
            return;
        destroyHTMLHoldersDownTo(i);
    }
    ProcessIE(browser);
}

bool IEHolder::IsHTMLDocument(DocumentOwner* object)
{
    try {
        return object && object->document() != nullptr;
    } catch (const AppError&) {
        return false;
    }
}

void IEHolder::ProcessIE(const BrowserPtr& browser)
{
    if (!IsHTMLDocument(browser.get()))
        return;
    DocPtr top;
    try {
        top = browser->Document();
    } catch (const AppError&) {
        return;
    }
    try {
        m_services.shell.AppActivate(top->title());
    } catch (const AppError&) {
    }
    const auto self = shared_from_this();
    try {
        destroyHTMLHoldersDownTo(1);
        addHTMLHolder(top);
        m_services.events.IEHolder_NewDoc(m_index, top);
        // The fill inside NewDoc may let another load rebuild the holders; this pass goes on
        // with its own frames all the same.
        const int frames = top->framesLength();
        for (int j = 0; j < frames; ++j) {
            const FramePtr frame = top->frameItem(j);
            if (!IsHTMLDocument(frame.get()))
                continue;
            const DocPtr document = frame->document();
            if (document->readyState() != QLatin1String("complete"))
                continue;
            addHTMLHolder(document);
            m_services.events.IEHolder_NewDoc(m_index, document);
        }
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("ProcessIE"));
    }
}

std::shared_ptr<HTMLHolder> IEHolder::makeHTMLHolder(const DocPtr& document)
{
    auto holder = std::make_shared<HTMLHolder>(*this, m_services.clock);
    holder->setHTMLDoc(document);
    return holder;
}

void IEHolder::addHTMLHolder(const DocPtr& document)
{
    m_htmlHolders.push_back(makeHTMLHolder(document));
}

void IEHolder::ProcessFrame(const BrowserPtr& frame)
{
    if (!IsHTMLDocument(frame.get()))
        return;
    const auto self = shared_from_this();
    try {
        const DocPtr document = frame->Document();
        const QString frameId = document->frameId();
        auto held =
            std::find_if(m_htmlHolders.begin() + 1, m_htmlHolders.end(), [&](const auto& holder) {
                return holder->HTMLDoc() && holder->HTMLDoc()->frameId() == frameId;
            });
        // The frame's previous holder goes; one still handling an event lives on by its own
        // reference until that returns.
        if (held != m_htmlHolders.end())
            *held = makeHTMLHolder(document);
        else
            addHTMLHolder(document);
        m_services.events.IEHolder_NewDoc(m_index, document);
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("ProcessIE"));
    }
}

void IEHolder::destroyHTMLHoldersDownTo(int lowest)
{
    // A holder still handling one of its events stays alive through its own reference.
    while (htmlHolderUpperBound() >= lowest && htmlHolderUpperBound() >= 1)
        m_htmlHolders.pop_back();
}

void IEHolder::IE_DocumentComplete(const BrowserPtr& pDisp, const QString& /*URL*/)
{
    // The window's own completion rebuilds what is held; a frame's replaces that frame only,
    // so a late ad or captcha frame does not stop the page's form being followed.
    if (pDisp == m_ie)
        ProcessIE(pDisp);
    else if (pDisp)
        ProcessFrame(pDisp);
}

std::optional<QString> ProgressText(int Progress, int ProgressMax)
{
    if (ProgressMax == 0 || Progress == -1)
        return std::nullopt;
    const double percent = static_cast<double>(Progress) / ProgressMax * 100.0;
    return QStringLiteral("loading ... %1%").arg(static_cast<qint64>(std::floor(percent)));
}

void IEHolder::IE_ProgressChange(int Progress, int ProgressMax)
{
    if (const auto text = ProgressText(Progress, ProgressMax)) {
        try {
            m_services.events.IEHolder_SetStatus(m_index, *text);
        } catch (const AppError&) {
        }
    }
}

void IEHolder::IE_StatusTextChange(const QString& Text)
{
    m_services.events.IEHolder_SetStatus(m_index, Text);
}

void IEHolder::HTMLHolder_DocChanged(const DocPtr& document, const ElementPtr& element)
{
    m_services.events.IEHolder_DocChanged(m_index, document, element);
}

void IEHolder::HTMLHolder_HTMLGotFocus(const DocPtr& document)
{
    m_services.events.IEHolder_HTMLGotFocus(m_index, document);
}

void IEHolder::HTMLHolder_DocComplete(const DocPtr& document)
{
    m_services.events.IEHolder_NewDoc(m_index, document);
}

void IEHolder::HTMLHolder_FieldsAdded(const DocPtr& document)
{
    m_services.events.IEHolder_FieldsAdded(m_index, document);
}

void IEHolder::HTMLHolder_DocVisited(const DocPtr& /*document*/)
{
    try {
        if (!m_ie)
            throw AppError(ErrorNumber::ObjectNotSet,
                           QStringLiteral("Object variable or With block variable not set"));
        m_services.sites.SetLastVisit(m_ie->LocationURL());
        m_services.events.IEHolder_UpdateShortcut(m_index, m_ie->LocationURL());
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("HTMLHolder_DocComplete"));
    }
}

#include "ModelDocument.h"

#include "AppError.h"

#include <QUrl>
#include <utility>

namespace {
const QString Gone = QStringLiteral("The object invoked has disconnected from its clients.");
constexpr int Disconnected = 10002;

// Every window and frame of the model is told apart by a number of its own.
QString nextViewId()
{
    static int next = 0;
    return QStringLiteral("view-%1").arg(++next);
}
} // namespace

ModelFrame::ModelFrame(DocPtr document, bool accessDenied)
    : m_id(nextViewId()), m_denied(accessDenied)
{
    show(std::move(document));
}

void ModelFrame::show(DocPtr document)
{
    m_document = std::move(document);
    if (auto* shown = static_cast<ModelDocument*>(m_document.get()))
        shown->setFrameId(m_id);
}

DocPtr ModelFrame::document()
{
    if (m_denied)
        throw AppError(70, QStringLiteral("Permission denied"));
    return m_document;
}

ModelDocument::ModelDocument(const QString& url, const QString& title)
    : m_url(url), m_frameId(nextViewId()), m_title(title)
{
    m_active = add(ModelElement::plain(QStringLiteral("BODY")));
}

void ModelDocument::addLater(const std::shared_ptr<ModelElement>& element, bool reportNow)
{
    m_added.append(add(element));
    if (reportNow)
        raise([](DocumentEvents& e) {
            e.HTML_onfieldsadded();
            return true;
        });
}

QList<ElementPtr> ModelDocument::addedFields()
{
    checkAlive();
    return std::exchange(m_added, {});
}

void ModelDocument::detach()
{
    m_detached = true;
    for (const auto& frame : std::as_const(m_frames)) {
        if (auto* document = static_cast<ModelDocument*>(frame->shown().get()))
            document->detach();
    }
}

void ModelDocument::checkAlive() const
{
    if (m_detached)
        throw AppError(Disconnected, Gone);
}

QString ModelDocument::title() const
{
    checkAlive();
    return m_title;
}

QString ModelDocument::url() const
{
    checkAlive();
    return m_url;
}

QString ModelDocument::URLUnencoded() const
{
    checkAlive();
    return QUrl::fromPercentEncoding(m_url.toUtf8());
}

QString ModelDocument::readyState() const
{
    checkAlive();
    return m_readyState;
}

QString ModelDocument::cookie() const
{
    checkAlive();
    return m_cookie;
}

ElementPtr ModelDocument::activeElement() const
{
    checkAlive();
    if (m_activeUnreadable)
        throw AppError(ErrorNumber::ObjectRequired, QStringLiteral("Object required"));
    return m_active;
}

QList<ElementPtr> ModelDocument::tags(const QString& tagName) const
{
    checkAlive();
    QList<ElementPtr> found;
    for (const ElementPtr& element : m_elements) {
        if (element->tagName().compare(tagName, Qt::CaseInsensitive) == 0)
            found.append(element);
    }
    return found;
}

int ModelDocument::framesLength() const
{
    checkAlive();
    return static_cast<int>(m_frames.size());
}

FramePtr ModelDocument::frameItem(int index) const
{
    checkAlive();
    if (index < 0 || index >= m_frames.size())
        throw AppError(ErrorNumber::InvalidCall,
                       QStringLiteral("Invalid procedure call or argument"));
    return m_frames.at(index);
}

void ModelDocument::subscribe(const std::shared_ptr<DocumentEvents>& sink)
{
    m_sinks.add(sink);
}

void ModelDocument::unsubscribe(const DocumentEvents* sink)
{
    m_sinks.remove(sink);
}

std::shared_ptr<ModelFrame> ModelDocument::addFrame(const DocPtr& document, bool accessDenied)
{
    auto frame = std::make_shared<ModelFrame>(document, accessDenied);
    m_frames.append(frame);
    return frame;
}

void ModelDocument::uncheckRadioGroup(const QString& name, const ModelElement* except)
{
    for (const ElementPtr& element : std::as_const(m_elements)) {
        auto* other = static_cast<ModelElement*>(element.get());
        if (other != except && other->tagName() == QLatin1String("INPUT") &&
            other->type() == QLatin1String("radio") && other->name() == name)
            other->setChecked(false);
    }
}

bool ModelDocument::raise(const std::function<bool(DocumentEvents&)>& event)
{
    bool answer = true;
    // Each subscriber is held for the length of its handler.
    for (const auto& sink : m_sinks.snapshot()) {
        try {
            answer = event(*sink) && answer;
        } catch (const AppError&) {
            ++m_handlerErrors;
        }
    }
    return answer;
}

void ModelDocument::focus(const ElementPtr& element)
{
    m_active = element;
    if (auto* field = dynamic_cast<ModelElement*>(element.get()))
        field->markTouched();
    raise([](DocumentEvents& e) {
        e.HTML_onfocusin();
        return true;
    });
    raise([](DocumentEvents& e) {
        e.HTML_onpropertychange();
        return true;
    });
}

void ModelDocument::edit(const ElementPtr& element, const std::function<void()>& change)
{
    if (m_active != element)
        focus(element);
    change();
    raise([](DocumentEvents& e) {
        e.HTML_onpropertychange();
        return true;
    });
}

void ModelDocument::type(const std::shared_ptr<ModelElement>& element, const QString& text)
{
    edit(element, [&] { element->setValue(text); });
}

void ModelDocument::check(const std::shared_ptr<ModelElement>& element, bool checked)
{
    edit(element, [&] { element->setChecked(checked); });
}

void ModelDocument::choose(const std::shared_ptr<ModelElement>& list, int index)
{
    edit(list, [&] { list->setSelectedIndex(index); });
}

bool ModelDocument::click()
{
    return raise([](DocumentEvents& e) { return e.HTML_onclick(); });
}

bool ModelDocument::dblclick()
{
    return raise([](DocumentEvents& e) { return e.HTML_ondblclick(); });
}

void ModelDocument::activate()
{
    raise([](DocumentEvents& e) {
        e.HTML_onactivate();
        return true;
    });
}

void ModelDocument::setReadyState(const QString& state)
{
    m_readyState = state;
    raise([](DocumentEvents& e) {
        e.HTML_onreadystatechange();
        return true;
    });
}

#pragma once

// Browser monitoring on the in-memory document model, with the holders' events recorded.

#include "BrowserTracking.h"
#include "ModelBrowser.h"
#include "StorageFixture.h"

#include <QStringList>

// Records the holders' events as short lines ("NewDoc 1 http://a/").
class RecordedEvents : public IEHolderEvents
{
public:
    QStringList lines;
    std::function<void(int, const DocPtr&)> onNewDoc;

    void IEHolder_NewDoc(int Index, const DocPtr& document) override
    {
        lines << QStringLiteral("NewDoc %1 %2").arg(Index).arg(document->url());
        if (onNewDoc)
            onNewDoc(Index, document);
    }
    void IEHolder_DocChanged(int Index, const DocPtr& document, const ElementPtr& element) override
    {
        lines << QStringLiteral("DocChanged %1 %2 %3")
                     .arg(Index)
                     .arg(document->url(), element->tagName());
    }
    void IEHolder_HTMLGotFocus(int Index, const DocPtr& document) override
    {
        lines << QStringLiteral("HTMLGotFocus %1 %2").arg(Index).arg(document->url());
    }
    void IEHolder_UpdateShortcut(int Index, const QString& URL) override
    {
        lines << QStringLiteral("UpdateShortcut %1 %2").arg(Index).arg(URL);
    }
    void IEHolder_SetStatus(int Index, const QString& Text) override
    {
        lines << QStringLiteral("SetStatus %1 %2").arg(Index).arg(Text);
    }
    void IEHolder_FieldsAdded(int Index, const DocPtr& document) override
    {
        lines << QStringLiteral("FieldsAdded %1 %2").arg(Index).arg(document->url());
    }
    QStringList take()
    {
        QStringList taken = lines;
        lines.clear();
        return taken;
    }
};

class RecordedHost : public TrackingHost
{
public:
    QStringList statuses;
    bool visible = false;
    void ShowStatus(const QString& text) override { statuses << text; }
    bool isMainWindowVisible() const override { return visible; }
};

class BrowserFixture : public StorageFixture
{
protected:
    // A page with a title and the given frames.
    static std::shared_ptr<ModelDocument> page(const QString& url, const QList<DocPtr>& frames = {})
    {
        auto document = std::make_shared<ModelDocument>(url, QStringLiteral("Title of ") + url);
        for (const DocPtr& frame : frames)
            document->addFrame(frame);
        return document;
    }
    static std::shared_ptr<ModelDocument> loadedFrame(const QString& url)
    {
        auto frame = page(url);
        frame->setReadyState(QStringLiteral("complete"));
        return frame;
    }
    int holderFor(const std::shared_ptr<ModelBrowser>& window) const
    {
        for (int i = 1; i <= tracking->upperBound(); ++i) {
            if (tracking->holder(i)->InternetExplorer() == window)
                return i;
        }
        return 0;
    }

    ModelShell shell;
    RecordedEvents events;
    RecordedHost host;
    ImmediatePump pump;
    std::shared_ptr<BrowserTracking> tracking = std::make_shared<BrowserTracking>(
        shell, IEHolderServices{events, errors, sites, shell, clock}, host, pump);
};

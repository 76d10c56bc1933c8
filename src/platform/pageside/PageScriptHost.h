#pragma once

#include "HtmlDocument.h"
#include "PageCall.h"

#include <QJsonValue>
#include <QString>
#include <functional>

class AppError;

// What a document of the page script needs of the browser adapter it lives in. A document's
// script runs in a realm of its own that the page cannot see; the adapter names that realm.
class PageScriptHost
{
public:
    // Why a call to a document's realm failed, where that is not an error of the document's own.
    enum class Failure
    {
        Other,
        Refused, // the page shows a dialog (alert, confirm, prompt, leave-page) and runs nothing
        Gone,    // the page went on to another document: this one has nothing more to give
    };

    virtual ~PageScriptHost() = default;
    // Runs the call in the realm and gives back its value; throws AppError.
    virtual QJsonValue evaluate(const QString& realm, const PageCall& call) = 0;
    // Runs it without waiting for the answer; calls made after it still see what it did.
    virtual void evaluateLater(const QString& realm, const PageCall& call) = 0;
    // Runs it and hands its value to `answered` once it is in (an empty value when the page
    // refused or failed it, or the browser has gone).
    virtual void evaluateAnswered(const QString& realm, const PageCall& call,
                                  std::function<void(const QJsonValue&)> answered) = 0;
    // The window of the document's frame at that index.
    virtual FramePtr frameOwner(const QString& realm, int index) = 0;
    virtual Failure failureOf(const AppError& error) const = 0;
};

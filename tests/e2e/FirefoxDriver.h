#pragma once

// The test's hands in Firefox: WebDriver BiDi input actions and evaluations.
#include "AppError.h"
#include "BidiWindowList.h"
#include "FirefoxProcess.h"
#include "PageDriver.h"

#include <QJsonArray>
#include <QJsonDocument>

class FirefoxDriver : public ShellDriver<BidiWindowList>
{
public:
    // `started` runs on each browser started (for what the test's browser needs besides).
    FirefoxDriver(const QString& executable, const QString& profile,
                  std::function<void(FirefoxProcess&)> started = {})
        : ShellDriver([executable, profile, started] {
              auto browser = FirefoxProcess::start(executable, profile, {u"--headless"_s});
              if (started)
                  started(*browser);
              return browser;
          })
    {
    }
    void openTab(const QString& url, bool background) override
    {
        const QString first =
            std::static_pointer_cast<ScriptWindow>(m_shell.items().first())->windowId();
        const QString tab =
            m_shell
                .call(u"browsingContext.create"_s,
                      {{"type", "tab"}, {"referenceContext", first}, {"background", background}})
                .value("context")
                .toString();
        m_shell.call(u"browsingContext.navigate"_s,
                     {{"context", tab}, {"url", url}, {"wait", "none"}});
    }
    QJsonValue evaluateInFrame(const ScriptWindow& page, int index,
                               const QString& expression) override
    {
        const QJsonArray tree = m_shell.call(u"browsingContext.getTree"_s, {{"root", target(page)}})
                                    .value("contexts")
                                    .toArray();
        const QJsonArray children = tree.at(0).toObject().value("children").toArray();
        if (index >= children.size())
            return u"unreachable"_s;
        return evaluateIn(children.at(index).toObject().value("context").toString(), expression);
    }
    void mouse(const ScriptWindow& page, Mouse action, int x, int y) override
    {
        QJsonArray steps{QJsonObject{{"type", "pointerMove"}, {"x", x}, {"y", y}}};
        for (int click = 0; action != Mouse::Move && click < (action == Mouse::DoubleClick ? 2 : 1);
             ++click) {
            steps.append(QJsonObject{{"type", "pointerDown"}, {"button", 0}});
            steps.append(QJsonObject{{"type", "pointerUp"}, {"button", 0}});
        }
        perform(page, QJsonObject{{"type", "pointer"},
                                  {"id", "mouse"},
                                  {"parameters", QJsonObject{{"pointerType", "mouse"}}},
                                  {"actions", steps}});
    }
    void type(const ScriptWindow& page, const QString& text) override
    {
        // In calls of a few hundred keys: each must end within the call's time limit.
        const QStringList characters = graphemes(text);
        for (qsizetype start = 0; start < characters.size(); start += 500) {
            QJsonArray steps;
            for (const QString& character : characters.mid(start, 500)) {
                steps.append(QJsonObject{{"type", "keyDown"}, {"value", character}});
                steps.append(QJsonObject{{"type", "keyUp"}, {"value", character}});
            }
            perform(page, QJsonObject{{"type", "key"}, {"id", "keyboard"}, {"actions", steps}});
        }
    }
    void paste(const ScriptWindow& page, const QString& text) override
    {
        // Onto the clipboard as a click would allow, then Ctrl+V into the focused field.
        const QJsonObject written = m_shell.call(
            u"script.evaluate"_s,
            {{"expression",
              u"navigator.clipboard.writeText(%1).then(() => 'written')"_s.arg(quoted(text))},
             {"target", QJsonObject{{"context", target(page)}}},
             {"awaitPromise", true},
             {"userActivation", true}});
        if (written.value("result").toObject().value("value").toString() !=
            QLatin1String("written"))
            throw AppError(ErrorNumber::BrowserCall, u"The clipboard was not written."_s);
        const QString control = u"\uE009"_s;
        perform(page,
                QJsonObject{
                    {"type", "key"},
                    {"id", "keyboard"},
                    {"actions", QJsonArray{QJsonObject{{"type", "keyDown"}, {"value", control}},
                                           QJsonObject{{"type", "keyDown"}, {"value", "v"}},
                                           QJsonObject{{"type", "keyUp"}, {"value", "v"}},
                                           QJsonObject{{"type", "keyUp"}, {"value", control}}}}});
    }
    void press(const ScriptWindow& page, Key key) override
    {
        // WebDriver's code points for the keys.
        const QString value = key == Key::Tab ? u"\uE004"_s : u"\uE015"_s;
        perform(page, QJsonObject{{"type", "key"},
                                  {"id", "keyboard"},
                                  {"actions",
                                   QJsonArray{QJsonObject{{"type", "keyDown"}, {"value", value}},
                                              QJsonObject{{"type", "keyUp"}, {"value", value}}}}});
    }
    void closeTab(const ScriptWindow& page) override
    {
        m_shell.call(u"browsingContext.close"_s, {{"context", target(page)}});
    }
    void acceptDialog(const ScriptWindow& page) override
    {
        m_shell.call(u"browsingContext.handleUserPrompt"_s,
                     {{"context", target(page)}, {"accept", true}});
    }

protected:
    // The browsing context of the page's tab.
    virtual QString target(const ScriptWindow& page) { return page.windowId(); }

private:
    void perform(const ScriptWindow& page, const QJsonObject& source)
    {
        m_shell.call(u"input.performActions"_s,
                     {{"context", target(page)}, {"actions", QJsonArray{source}}});
    }

protected:
    QJsonValue evaluateIn(const QString& context, const QString& expression) override
    {
        const QJsonObject answer = m_shell.call(
            u"script.evaluate"_s, {{"expression", u"JSON.stringify([(\n%1\n)])"_s.arg(expression)},
                                   {"target", QJsonObject{{"context", context}}},
                                   {"awaitPromise", false}});
        return QJsonDocument::fromJson(
                   answer.value("result").toObject().value("value").toString().toUtf8())
            .array()
            .at(0);
    }
};

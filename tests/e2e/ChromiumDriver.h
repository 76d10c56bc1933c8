#pragma once

// The test's hands in Chromium: DevTools input events and evaluations.
#include "AppError.h"
#include "CdpWindowList.h"
#include "ChromiumProcess.h"
#include "PageDriver.h"

#include <QJsonArray>
#include <QJsonDocument>

class ChromiumDriver : public ShellDriver<CdpWindowList>
{
public:
    ChromiumDriver(const QString& executable, const QString& profile,
                   const QStringList& arguments = {})
        : ShellDriver([executable, profile, arguments] {
              return ChromiumProcess::start(
                  executable, profile, chromiumTestArguments() + arguments << u"about:blank"_s);
          })
    {
    }
    void openTab(const QString& url, bool background) override
    {
        m_shell.call(QString(), u"Target.createTarget"_s,
                     {{"url", url}, {"background", background}});
    }
    QJsonValue evaluateInFrame(const ScriptWindow& page, int index,
                               const QString& expression) override
    {
        // Another site's frame runs in a process of its own: it is reached through its target.
        const QString src =
            evaluate(page, u"document.querySelectorAll('iframe, frame')[%1].src"_s.arg(index))
                .toString();
        for (const QJsonValue& target :
             m_shell.call(QString(), u"Target.getTargets"_s).value("targetInfos").toArray()) {
            const QJsonObject info = target.toObject();
            if (info.value("type").toString() != QLatin1String("iframe") ||
                info.value("url").toString() != src)
                continue;
            const QJsonObject attached =
                m_shell.call(QString(), u"Target.attachToTarget"_s,
                             {{"targetId", info.value("targetId")}, {"flatten", true}});
            return evaluateIn(attached.value("sessionId").toString(), expression);
        }
        return evaluate(page, u"(() => { try { return frames[%1].eval(%2); } catch "
                              "(e) { return 'unreachable'; } })()"_s.arg(index)
                                  .arg(quoted(expression)));
    }
    void mouse(const ScriptWindow& page, Mouse action, int x, int y) override
    {
        if (action == Mouse::Move) {
            m_shell.call(target(page), u"Input.dispatchMouseEvent"_s,
                         {{"type", "mouseMoved"}, {"x", x}, {"y", y}});
            return;
        }
        const int clicks = action == Mouse::DoubleClick ? 2 : 1;
        for (int count = 1; count <= clicks; ++count) {
            for (const char* type : {"mousePressed", "mouseReleased"})
                m_shell.call(target(page), u"Input.dispatchMouseEvent"_s,
                             {{"type", type},
                              {"x", x},
                              {"y", y},
                              {"button", "left"},
                              {"clickCount", count}});
        }
    }
    void type(const ScriptWindow& page, const QString& text) override
    {
        // A key press for each character as the desktop delivers it: the key going down, then the
        // character it makes, then the key going up, each a message of its own.
        for (const QString& character : graphemes(text)) {
            const bool enter = character == QLatin1String("\n");
            const QString key = enter ? u"Enter"_s : character;
            const QString typed = enter ? u"\r"_s : character;
            const int code = enter ? 13 : 0;
            m_shell.call(target(page), u"Input.dispatchKeyEvent"_s,
                         {{"type", "rawKeyDown"}, {"key", key}, {"windowsVirtualKeyCode", code}});
            m_shell.call(
                target(page), u"Input.dispatchKeyEvent"_s,
                {{"type", "char"}, {"key", key}, {"text", typed}, {"unmodifiedText", typed}});
            m_shell.call(target(page), u"Input.dispatchKeyEvent"_s,
                         {{"type", "keyUp"}, {"key", key}});
        }
    }
    void paste(const ScriptWindow& page, const QString& text) override
    {
        // Onto the clipboard, then Ctrl+V into the focused field.
        m_shell.call(
            QString(), u"Browser.grantPermissions"_s,
            {{"permissions", QJsonArray{"clipboardReadWrite", "clipboardSanitizedWrite"}}});
        const QJsonObject written = m_shell.call(
            target(page), u"Runtime.evaluate"_s,
            {{"expression",
              u"navigator.clipboard.writeText(%1).then(() => 'written')"_s.arg(quoted(text))},
             {"awaitPromise", true},
             {"userGesture", true},
             {"returnByValue", true}});
        if (written.value("result").toObject().value("value").toString() !=
            QLatin1String("written"))
            throw AppError(ErrorNumber::BrowserCall, u"The clipboard was not written."_s);
        for (const char* type : {"keyDown", "keyUp"}) {
            QJsonObject key{{"type", type},
                            {"key", "v"},
                            {"code", "KeyV"},
                            {"modifiers", 2},
                            {"windowsVirtualKeyCode", 86}};
            if (QLatin1String(type) == QLatin1String("keyDown"))
                key.insert("commands", QJsonArray{"paste"});
            m_shell.call(target(page), u"Input.dispatchKeyEvent"_s, key);
        }
    }
    void press(const ScriptWindow& page, Key key) override
    {
        const auto [name, code] =
            key == Key::Tab ? std::pair{"Tab", 9} : std::pair{"ArrowDown", 40};
        for (const char* type : {"keyDown", "keyUp"})
            m_shell.call(
                target(page), u"Input.dispatchKeyEvent"_s,
                {{"type", type}, {"key", name}, {"code", name}, {"windowsVirtualKeyCode", code}});
    }
    void closeTab(const ScriptWindow& page) override
    {
        m_shell.call(target(page), u"Page.close"_s);
    }
    void acceptDialog(const ScriptWindow& page) override
    {
        m_shell.call(target(page), u"Page.handleJavaScriptDialog"_s, {{"accept", true}});
    }

protected:
    // The DevTools target of the page's tab.
    virtual QString target(const ScriptWindow& page) { return page.windowId(); }
    QJsonValue evaluateIn(const QString& targetOrSession, const QString& expression) override
    {
        return m_shell
            .call(targetOrSession, u"Runtime.evaluate"_s,
                  {{"expression", expression}, {"returnByValue", true}})
            .value("result")
            .toObject()
            .value("value");
    }
};

#pragma once

// The whole bar following a headless Chromium that it starts itself, the dialogs and desktop
// answered by test doubles, the data files real: what the browser benchmarks measure.
#include "BenchSupport.h"
#include "ScriptWindow.h"
#include "CdpShell.h"
#include "ChromiumProcess.h"
#include "Fakes.h"
#include "IniFileStore.h"
#include "QtMessagePump.h"
#include "frmMain.h"

#include <QJsonArray>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>

namespace bench {
// Debian's Chromium, or empty (and said) when it is not installed.
inline QString chromium()
{
    const QString found = QStandardPaths::findExecutable(QStringLiteral("chromium"));
    if (found.isEmpty())
        std::printf("chromium is not installed\n");
    return found;
}
} // namespace bench

class BenchBar
{
public:
    explicit BenchBar(const QString& chromium)
        : m_shell([this, chromium] {
              return ChromiumProcess::start(chromium, m_profile.path(),
                                            {QStringLiteral("--headless"), QStringLiteral("--disable-gpu"),
                                             QStringLiteral("--disable-dev-shm-usage")});
          })
    {
        m_desktop.appDataFolder = m_dir.path();
        m_desktop.tempFolder = m_dir.path();
        m_desktop.programFolder = m_dir.path();
        m_form = std::make_unique<frmMain>(frmMain::Services{m_desktop, m_settings, m_boxes, m_clock, m_ini, m_shell,
                                                             m_pump, m_metrics, m_editor, m_profilesEditor, m_docking});
        m_form->Form_Load();
        m_form->window.setVisible(true);
    }

    frmMain& form() { return *m_form; }
    CdpShell& shell() { return m_shell; }
    FakeClock& clock() { return m_clock; }
    bool errorShown() const { return !m_boxes.shown.empty(); }
    QString firstError() const { return m_boxes.shown.empty() ? QString() : m_boxes.shown.front().text; }

    // Opens the page in a new window; waits until it is complete and then for the bar's fill.
    std::shared_ptr<ScriptWindow> open(const QString& url)
    {
        m_shell.OpenAddress(url);
        std::shared_ptr<ScriptWindow> page;
        pumpUntil([&] {
            for (const BrowserPtr& window : m_shell.items()) {
                if (window->LocationURL() == url)
                    page = std::static_pointer_cast<ScriptWindow>(window);
            }
            return page && page->document() && page->document()->readyState() == QLatin1String("complete");
        }, 20000);
        pumpUntil([] { return false; }, 300);
        return page;
    }

    // In the page's own world, as the page's script would.
    QJsonValue evaluate(const std::shared_ptr<ScriptWindow>& page, const QString& expression)
    {
        return m_shell.call(page->windowId(), QStringLiteral("Runtime.evaluate"),
                            {{"expression", expression}, {"returnByValue", true}})
            .value("result").toObject().value("value");
    }
    void input(const std::shared_ptr<ScriptWindow>& page, const QString& method, const QJsonObject& params)
    {
        m_shell.call(page->windowId(), method, params);
    }
    void click(const std::shared_ptr<ScriptWindow>& page, const QString& selector)
    {
        const QJsonArray box = evaluate(page, QStringLiteral("(() => { const e = document.querySelector('%1'); "
                                                             "e.scrollIntoView(); const r = e.getBoundingClientRect(); "
                                                             "return [r.x + r.width / 2, r.y + r.height / 2]; })()")
                                                  .arg(selector)).toArray();
        for (const char* type : {"mousePressed", "mouseReleased"})
            input(page, QStringLiteral("Input.dispatchMouseEvent"),
                  {{"type", type}, {"x", box[0]}, {"y", box[1]}, {"button", "left"}, {"clickCount", 1}});
    }

private:
    QTemporaryDir m_dir;
    QTemporaryDir m_profile;
    FakeShell m_desktop;
    FakeSettings m_settings;
    FakeMessageBoxes m_boxes;
    FakeClock m_clock;
    IniFileStore m_ini;
    QtMessagePump m_pump;
    FakeTextMetrics m_metrics;
    FakeEditorDisplay m_editor;
    FakeProfilesDisplay m_profilesEditor;
    FakeDocking m_docking;
    CdpShell m_shell;
    std::unique_ptr<frmMain> m_form;
};

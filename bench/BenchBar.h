#pragma once

// The whole bar following a headless browser that it starts itself (Chromium or Firefox, through
// the end-to-end tests' drivers), the dialogs and desktop answered by test doubles, the data files
// real: what the browser benchmarks measure.
#include "BenchSupport.h"
#include "FakeShell.h"
#include "IniFileStore.h"
#include "PageDriver.h"
#include "QtMessagePump.h"
#include "ScriptWindow.h"
#include "frmMain.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <cstdio>

class BenchBar
{
public:
    explicit BenchBar(TestBrowser browser) : m_driver(makeDriver(browser, m_profile.path()))
    {
        if (!m_driver) {
            std::printf("%s is not installed\n", nameOf(browser));
            return;
        }
        m_desktop.appDataFolder = m_dir.path();
        m_desktop.tempFolder = m_dir.path();
        m_desktop.programFolder = m_dir.path();
        m_form = std::make_unique<frmMain>(
            frmMain::Services{m_desktop, m_settings, m_boxes, m_clock, m_ini, m_driver->shell(),
                              m_pump, m_metrics, m_editor, m_profilesEditor, m_docking});
        m_form->Form_Load();
        m_form->window.setVisible(true);
        // A browser followed through the extension connects once the bar listens.
        pumpUntil([&] { return m_driver->isConnected(); }, 10000);
    }

    // Whether the browser is there to measure.
    bool ready() const { return m_form != nullptr; }
    frmMain& form() { return *m_form; }
    ShellWindowList& shell() { return m_driver->shell(); }
    PageDriver& driver() { return *m_driver; }
    FakeClock& clock() { return m_clock; }
    bool errorShown() const { return !m_boxes.shown.empty(); }
    QString firstError() const
    {
        return m_boxes.shown.empty() ? QString() : m_boxes.shown.front().text;
    }

    // Opens the page in a new window; waits until it is complete and then for the bar's fill.
    std::shared_ptr<ScriptWindow> open(const QString& url)
    {
        m_driver->openAddress(url);
        std::shared_ptr<ScriptWindow> page;
        pumpUntil(
            [&] {
                for (const BrowserPtr& window : shell().items()) {
                    if (window->LocationURL() == url)
                        page = std::static_pointer_cast<ScriptWindow>(window);
                }
                return page && page->document() &&
                       page->document()->readyState() == QLatin1String("complete");
            },
            20000);
        pumpUntil([] { return false; }, 300);
        return page;
    }

    // In the page's own world, as the page's script would.
    QJsonValue evaluate(const std::shared_ptr<ScriptWindow>& page, const QString& expression)
    {
        return m_driver->evaluate(*page, expression);
    }
    void click(const std::shared_ptr<ScriptWindow>& page, const QString& selector)
    {
        m_driver->clickOn(*page, QStringLiteral("document.querySelector('%1')").arg(selector));
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
    std::unique_ptr<PageDriver> m_driver;
    std::unique_ptr<frmMain> m_form;
};

#pragma once

// The whole bar following a real headless Chromium, the user typing, clicking and pressing Tab
// through DevTools input events, pages served on 127.0.0.1.
#include "ScriptWindow.h"
#include "ScriptDocument.h"
#include "CdpShell.h"
#include "ChromiumProcess.h"
#include "FormFixture.h"
#include "HttpServer.h"
#include "PumpUntil.h"
#include "QtMessagePump.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QStandardPaths>
#include <gtest/gtest.h>

class ChromiumBarFixture : public ::testing::Test
{
protected:
    // The pages the test serves, by path.
    virtual QMap<QString, QByteArray> pages() const = 0;

    void SetUp() override
    {
        server = std::make_unique<HttpServer>(pages());
        const QString chromium = QStandardPaths::findExecutable(QStringLiteral("chromium"));
        if (chromium.isEmpty())
            GTEST_SKIP() << "chromium is not installed";
        m_chromium = chromium;
        startBar();
    }
    // The bar and the browser it starts with the fixture's profile, as a user's start does.
    void startBar()
    {
        shell = std::make_unique<CdpShell>([this] {
            return ChromiumProcess::start(
                m_chromium, profile.path(),
                {QStringLiteral("--headless"), QStringLiteral("--disable-gpu"),
                 QStringLiteral("--disable-dev-shm-usage"), QStringLiteral("about:blank")});
        });
        form = std::make_unique<frmMain>(frmMain::Services{f.shell, f.settings, f.boxes, clock,
                                                           f.ini, *shell, pump, f.metrics, f.editor,
                                                           f.profilesEditor, f.docking});
        form->Form_Load();
        form->window.setVisible(true);
        ASSERT_TRUE(shell->isConnected());
    }
    // Exit: the bar unloads, then its browser is closed.
    void stopBar()
    {
        form->Form_Unload();
        form.reset();
        shell.reset();
    }
    void TearDown() override
    {
        form.reset();
        shell.reset();
    }

    static bool waitFor(const std::function<bool()>& condition, int ms = 15000)
    {
        return pumpUntil(condition, ms, 20);
    }
    std::shared_ptr<ScriptWindow> open(const QString& url)
    {
        const int before = shell->items().size();
        shell->OpenAddress(url);
        EXPECT_TRUE(waitFor([&] { return shell->items().size() > before; }));
        auto page = std::static_pointer_cast<ScriptWindow>(shell->items().last());
        EXPECT_TRUE(waitFor(
            [&] { return evaluate(page, "document.readyState") == QLatin1String("complete"); }));
        // The user starts once the bar has taken up the page (and filled it).
        EXPECT_TRUE(waitFor([&] { return heldUrl(page) == page->LocationURL(); }));
        waitFor([] { return false; }, 300);
        return page;
    }
    // The addresses of the documents the bar holds for the page's window, top first.
    QStringList heldUrls(const std::shared_ptr<ScriptWindow>& page)
    {
        QStringList urls;
        for (int i = 1; i <= form->tracking().upperBound(); ++i) {
            const auto holder = form->tracking().holder(i);
            for (int d = 1; holder->InternetExplorer() == page && d <= holder->htmlHolderUpperBound(); ++d)
                urls << holder->htmlHolder(d)->HTMLDoc()->url();
        }
        return urls;
    }
    QString heldUrl(const std::shared_ptr<ScriptWindow>& page)
    {
        for (int i = 1; i <= form->tracking().upperBound(); ++i) {
            const auto holder = form->tracking().holder(i);
            if (holder->InternetExplorer() == page && holder->htmlHolderUpperBound() >= 1)
                return holder->htmlHolder(1)->HTMLDoc()->url();
        }
        return {};
    }
    // In the page's own world, as the page would.
    QJsonValue evaluate(const std::shared_ptr<ScriptWindow>& page, const QString& expression)
    {
        return shell
            ->call(page->windowId(), QStringLiteral("Runtime.evaluate"),
                   {{"expression", expression}, {"returnByValue", true}})
            .value("result")
            .toObject()
            .value("value");
    }
    // A real mouse click in the middle of the element.
    void click(const std::shared_ptr<ScriptWindow>& page, const QString& selector)
    {
        clickOn(page, QStringLiteral("document.querySelector('%1')").arg(selector));
    }
    // The same on the element a script expression finds (inside a shadow root, say), scrolled
    // into view first as the user would.
    void clickOn(const std::shared_ptr<ScriptWindow>& page, const QString& element)
    {
        const QJsonArray box =
            evaluate(page, QStringLiteral("(() => { const e = %1; e.scrollIntoView({block: 'nearest'}); "
                                          "const r = e.getBoundingClientRect(); "
                                          "return [r.x + r.width / 2, r.y + r.height / 2]; })()")
                               .arg(element))
                .toArray();
        for (const char* type : {"mousePressed", "mouseReleased"}) {
            shell->call(page->windowId(), QStringLiteral("Input.dispatchMouseEvent"),
                        {{"type", type},
                         {"x", box[0]},
                         {"y", box[1]},
                         {"button", "left"},
                         {"clickCount", 1}});
        }
    }
    void type(const std::shared_ptr<ScriptWindow>& page, const QString& text)
    {
        shell->call(page->windowId(), QStringLiteral("Input.insertText"), {{"text", text}});
    }
    void tab(const std::shared_ptr<ScriptWindow>& page)
    {
        for (const char* type : {"keyDown", "keyUp"}) {
            shell->call(
                page->windowId(), QStringLiteral("Input.dispatchKeyEvent"),
                {{"type", type}, {"key", "Tab"}, {"code", "Tab"}, {"windowsVirtualKeyCode", 9}});
        }
    }
    // No error box came up; if one did, its text says why.
    void expectNoErrorBox()
    {
        EXPECT_TRUE(f.boxes.shown.empty())
            << (f.boxes.shown.empty() ? "" : f.boxes.shown[0].text.toStdString());
    }
    QString stored(const QString& file, const QString& section, const QString& key)
    {
        return f.ini.readEntry(f.dataFile(file), section, key)
            .value_or(QStringLiteral("<missing>"));
    }

    QTemporaryDir profile;
    QString m_chromium;
    FormFixture f;
    SystemClock clock;
    QtMessagePump pump;
    std::unique_ptr<CdpShell> shell;
    std::unique_ptr<frmMain> form;
    std::unique_ptr<HttpServer> server;
    QString fieldValue(const std::shared_ptr<ScriptWindow>& page, const char* name)
    {
        return evaluate(page, QStringLiteral("document.querySelector('[name=%1]').value")
                                  .arg(QLatin1String(name)))
            .toString();
    }
};

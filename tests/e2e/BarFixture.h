#pragma once

// The whole bar following a real headless browser (Chromium over DevTools, Firefox ESR over
// WebDriver BiDi: each test runs on both), the user typing, clicking and pressing keys through
// the browser's own input events, pages served on 127.0.0.1.
#include "FormFixture.h"
#include "HttpServer.h"
#include "PageDriver.h"
#include "PumpUntil.h"
#include "QtMessagePump.h"
#include "ScriptDocument.h"
#include "ScriptWindow.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

class BarFixture : public ::testing::TestWithParam<TestBrowser>
{
protected:
    // Pages the test serves besides those of the pages folder (under their path in it).
    virtual QMap<QString, QByteArray> pages() const { return {}; }
    // A page of the pages folder, for serving under another path too.
    static QByteArray page(const char* path)
    {
        QFile file(QStringLiteral(TOLVANE_E2E_PAGES "/") + QLatin1String(path));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no test page %s", path);
        return file.readAll();
    }

    void SetUp() override
    {
        server = std::make_unique<HttpServer>(pages(), QStringLiteral(TOLVANE_E2E_PAGES));
        startBar();
    }
    bool onFirefox() const
    {
        return GetParam() == TestBrowser::Firefox || GetParam() == TestBrowser::FirefoxExtension;
    }
    // What Firefox does not do yet (or does otherwise), said in the test's output.
#define skipOnFirefox(why)                                                                         \
    do {                                                                                           \
        if (onFirefox())                                                                           \
            GTEST_SKIP() << why;                                                                   \
    } while (false)
    // The bar and the browser it starts with the fixture's profile, as a user's start does.
    void startBar()
    {
        driver = makeDriver(GetParam(), profile.path());
        if (!driver)
            GTEST_SKIP() << "the browser is not installed";
        form = std::make_unique<frmMain>(frmMain::Services{f.shell, f.settings, f.boxes, clock,
                                                           f.ini, driver->shell(), pump, f.metrics,
                                                           f.editor, f.profilesEditor, f.docking});
        form->Form_Load();
        form->window.setVisible(true);
        // A browser followed through the extension connects once the bar listens; a browser
        // starting on a busy machine may take most of a minute.
        ASSERT_TRUE(waitFor([&] { return driver->isConnected(); }, 60000)) << connectFailure();
    }
    std::string connectFailure()
    {
        try {
            driver->shell().items();
            return {};
        } catch (const AppError& error) {
            return error.description().toStdString();
        }
    }
    // Exit: the bar unloads, then its browser is closed.
    void stopBar()
    {
        if (form)
            form->Form_Unload();
        form.reset();
        driver.reset();
    }
    void TearDown() override
    {
        form.reset();
        driver.reset();
    }

    static bool waitFor(const std::function<bool()>& condition, int ms = 15000)
    {
        return pumpUntil(condition, ms, 20);
    }
    QList<BrowserPtr> windows()
    {
        return driver->shell().items();
    }
    static std::shared_ptr<ScriptWindow> asPage(const BrowserPtr& window)
    {
        return std::static_pointer_cast<ScriptWindow>(window);
    }
    static bool isOpen(const std::shared_ptr<ScriptWindow>& page)
    {
        try {
            page->HWND();
            return true;
        } catch (const AppError&) {
            return false;
        }
    }
    // The window the bar opens the address in, once it is loaded and the bar holds (and has
    // filled) it.
    std::shared_ptr<ScriptWindow> open(const QString& url)
    {
        const int before = windows().size();
        driver->openAddress(url);
        EXPECT_TRUE(waitFor([&] { return windows().size() > before; }));
        auto page = asPage(windows().last());
        EXPECT_TRUE(waitFor(
            [&] { return evaluate(page, "document.readyState") == QLatin1String("complete"); }));
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
            for (int d = 1;
                 holder->InternetExplorer() == page && d <= holder->htmlHolderUpperBound(); ++d)
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
        return driver->evaluate(*page, expression);
    }
    // A real mouse click in the middle of the element.
    void click(const std::shared_ptr<ScriptWindow>& page, const QString& selector)
    {
        clickOn(page, u"document.querySelector('%1')"_s.arg(selector));
    }
    // The same on the element a script expression finds (inside a shadow root, say), scrolled
    // into view first as the user would.
    void clickOn(const std::shared_ptr<ScriptWindow>& page, const QString& element)
    {
        driver->clickOn(*page, element);
    }
    void type(const std::shared_ptr<ScriptWindow>& page, const QString& text)
    {
        driver->type(*page, text);
    }
    void tab(const std::shared_ptr<ScriptWindow>& page)
    {
        driver->press(*page, PageDriver::Key::Tab);
    }
    // The user accepts the page's dialog once it is up; false if none came within the time.
    bool acceptDialog(const std::shared_ptr<ScriptWindow>& page, int ms = 10000)
    {
        return waitFor(
            [&] {
                try {
                    driver->acceptDialog(*page);
                    return true;
                } catch (const AppError&) {
                    return false; // not up yet
                }
            },
            ms);
    }
    // No error box came up; if one did, its text says why.
    void expectNoErrorBox()
    {
        EXPECT_TRUE(f.boxes.shown.empty())
            << (f.boxes.shown.empty() ? "" : f.boxes.shown[0].text.toStdString());
    }
    QString stored(const QString& file, const QString& section, const QString& key)
    {
        return f.ini.readEntry(f.dataFile(file), section, key).value_or(u"<missing>"_s);
    }
    // What the site's file holds for the key, "<missing>" if nothing.
    QString siteValue(const QString& site, const char* key)
    {
        return f.ini.readEntry(form->siteFiles().SiteFilePath(site), site, QLatin1String(key))
            .value_or(QStringLiteral("<missing>"));
    }
    static QByteArray fileBytes(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString fieldValue(const std::shared_ptr<ScriptWindow>& page, const char* name)
    {
        return evaluate(page,
                        u"document.querySelector('[name=%1]').value"_s.arg(QLatin1String(name)))
            .toString();
    }

    QTemporaryDir profile;
    FormFixture f;
    SystemClock clock;
    QtMessagePump pump;
    std::unique_ptr<PageDriver> driver;
    std::unique_ptr<frmMain> form;
    std::unique_ptr<HttpServer> server;
};

// Every test of a suite on both browsers, and on both through Tolvane's extension, named by the
// browser; or on the ways ON_BROWSERS names. The page script and the BiDi window list are the same
// in Firefox either way, so a suite about pages alone (hostile ones) leaves out Firefox's
// extension, whose start costs the most.
#define ON_BROWSERS(Suite, ...)                                                                    \
    INSTANTIATE_TEST_SUITE_P(                                                                      \
        Browsers, Suite, ::testing::Values(__VA_ARGS__),                                           \
        [](const ::testing::TestParamInfo<TestBrowser>& info) { return nameOf(info.param); })
#define ON_EVERY_BROWSER(Suite)                                                                    \
    ON_BROWSERS(Suite, TestBrowser::Chromium, TestBrowser::Firefox, TestBrowser::Extension,        \
                TestBrowser::FirefoxExtension)

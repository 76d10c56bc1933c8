// Form memory end to end: what the user types is remembered and filled again, frames and
// profiles included.
#include "BarFixture.h"
#include "MainWindow.h"
#include "RememberedValuesHands.h"
#include "RememberedValuesWindow.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
class TestFormMemory : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {
            {"/link.html", QByteArray("<html><body><a id=go href=\"/a.html\" style=\"display:block;"
                                      "padding:40px\">Enter the contest</a></body></html>")},
            {"/a.html", page("memory/contest-form.html")},
            {"/b.html", page("memory/contest-form.html")},
            {"/c.html", page("memory/contest-form.html")},
            {"/frames.html", QByteArray("<html><body><iframe src=\"/a.html\"></iframe>"
                                        "<iframe id=\"other\"></iframe><script>other.src = "
                                        "'http://localhost:' + location.port + '/b.html';</script>"
                                        "</body></html>")}};
    }
};

// Typed on one site, filled on another (a click on the page is a visit to it).
TEST_P(TestFormMemory, EveryKindOfFieldIsRememberedAndFilled)
{
    auto first = open(server->url("/a.html"));
    click(first, "[name=fname]");
    type(first, "Ann");
    click(first, "[name=size][value=M]");
    click(first, "[name=optin]");
    click(first, "[name=comments]");
    type(first, "line one\nline two");
    click(first, "[name=fname]");
    evaluate(first, "0"); // let the events arrive
    const QString site = server->url("/a.html");
    ASSERT_TRUE(waitFor([&] { return siteValue(site, "comments") != "<missing>"; }));
    EXPECT_EQ(siteValue(site, "size_M"), u"True"_s);
    EXPECT_EQ(siteValue(site, "optin_yes"), u"True"_s);
    EXPECT_EQ(siteValue(site, "comments"), u"line one<VBLF>line two"_s);
    EXPECT_EQ(form->siteFiles().SiteFilePath(site),
              f.dataFile(form->siteFiles().URL2INIFile(site)));
    EXPECT_EQ(siteValue(site, "fname"), u"Ann"_s);
    EXPECT_EQ(stored("zAny.ini", "Any", "fname"), u"Ann"_s);
    EXPECT_EQ(form->siteFiles().GetTotalVisits(site), 1);
    form->valueStore().SetValue(server->url("/c.html", true), "state", "NY");

    auto third = open(server->url("/c.html", true));
    EXPECT_EQ(fieldValue(third, "fname"), u"Ann"_s);
    EXPECT_EQ(evaluate(third, "document.querySelector('[name=size][value=M]').checked").toBool(),
              true);
    EXPECT_EQ(evaluate(third, "document.querySelector('[name=optin]').checked").toBool(), true);
    EXPECT_EQ(fieldValue(third, "state"), u"NY"_s);
    EXPECT_EQ(fieldValue(third, "comments"), u"line one\nline two"_s);
    expectNoErrorBox();
}

TEST_P(TestFormMemory, AFramesetIsFilledFrameByFrameOutOfProcessFramesIncluded)
{
    form->valueStore().SetValue(server->url("/a.html"), "fname", "Same site");
    form->valueStore().SetValue(server->url("/b.html", true), "fname", "Other site");
    auto page = open(server->url("/frames.html"));
    // The other site's frame runs in a process of its own in Chromium: read it there.
    const auto frameValue = [&](int index) {
        return driver->evaluateInFrame(*page, index, "document.querySelector('[name=fname]').value")
            .toString();
    };
    EXPECT_TRUE(waitFor([&] { return frameValue(0) == QLatin1String("Same site"); }))
        << frameValue(0).toStdString();
    EXPECT_TRUE(waitFor([&] { return frameValue(1) == QLatin1String("Other site"); }))
        << frameValue(1).toStdString();
    expectNoErrorBox();
}

TEST_P(TestFormMemory, ProgressLinkTextsAndAVisitRedrawingItsShortcut)
{
    const QString file = form->ShortcutsFile();
    f.ini.writeEntry(file, "Shortcuts", "Max", "1");
    f.ini.writeEntry(file, "Shortcut1", "Title", "Link page");
    f.ini.writeEntry(file, "Shortcut1", "URL", server->url("/link.html"));
    f.ini.writeEntry(file, "Shortcut1", "Remind", "1");
    f.ini.writeEntry(file, "Shortcut1", "StartDate", "1/1/2020");
    form->shortcutList().RequeryShortcuts();
    ASSERT_EQ(form->lvShortcuts.row(0).icon, 5); // due

    QStringList statuses;
    QObject watcher;
    QObject::connect(&form->StatusBar, &Control::changed, &watcher,
                     [&] { statuses << form->StatusBar.text(); });
    auto page = open(server->url("/link.html"));
    EXPECT_TRUE(statuses.filter(u" loading ... "_s).size() >= 1)
        << statuses.join('|').toStdString();
    EXPECT_TRUE(statuses.contains(u" loading ... 100%"_s)) << statuses.join('|').toStdString();

    driver->mouse(*page, PageDriver::Mouse::Move, 50, 50);
    EXPECT_TRUE(waitFor([&] { return statuses.contains(u" "_s + server->url("/a.html")); }))
        << statuses.join('|').toStdString();

    // A click in the page is a visit: the shortcut is no longer due.
    driver->mouse(*page, PageDriver::Mouse::Click, 400, 500);
    EXPECT_TRUE(waitFor([&] { return form->lvShortcuts.row(0).icon == 2; }))
        << form->lvShortcuts.row(0).icon;
}

TEST_P(TestFormMemory, ProfileSwitchReloadsEveryPageWithTheOtherProfilesValues)
{
    auto page = open(server->url("/a.html"));
    form->valueStore().SetValue(server->url("/a.html"), "fname", "Zed"); // first profile
    form->cboProfiles.setListIndex(1);
    form->valueStore().SetValue(server->url("/a.html"), "fname", "Vera");
    form->cboProfiles.setListIndex(2);
    // A reload less than a second after the last fill of the same page is not filled again.
    waitFor([] { return false; }, 1200);
    form->cboProfiles.setListIndex(1);
    EXPECT_TRUE(waitFor([&] { return fieldValue(page, "fname") == QLatin1String("Vera"); }))
        << fieldValue(page, "fname").toStdString();
    waitFor([] { return false; }, 1200);
    form->cboProfiles.setListIndex(0);
    EXPECT_TRUE(waitFor([&] { return fieldValue(page, "fname") == QLatin1String("Zed"); }))
        << fieldValue(page, "fname").toStdString();
}

TEST_P(TestFormMemory, TwoDoubleClicksRefillAndAClosedWindowsHolderIsReused)
{
    form->valueStore().SetValue(server->url("/a.html"), "fname", "Ann");
    auto page = open(server->url("/a.html"));
    ASSERT_EQ(fieldValue(page, "fname"), u"Ann"_s);
    evaluate(page,
             "document.querySelector('[name=fname]').value = 'changed by the page';"
             "document.addEventListener('dblclick', (e) => window.cancelled = e.defaultPrevented)");
    waitFor([] { return false; }, 1200);
    for (int i = 0; i < 2; ++i) {
        driver->mouse(*page, PageDriver::Mouse::DoubleClick, 300, 300);
        waitFor([] { return false; }, 200);
    }
    EXPECT_TRUE(waitFor([&] { return fieldValue(page, "fname") == QLatin1String("Ann"); }))
        << fieldValue(page, "fname").toStdString();
    // The page hears of the double clicks as cancelled (in Chromium: a cancel from Firefox's
    // sandbox does not show in the page's own view of the event).
    if (!onFirefox()) {
        EXPECT_TRUE(evaluate(page, "window.cancelled === true").toBool());
    }

    const int holders = form->tracking().upperBound();
    driver->closeTab(*page);
    ASSERT_TRUE(waitFor([&] { return !isOpen(page); }));
    auto next = open(server->url("/b.html"));
    EXPECT_EQ(form->tracking().upperBound(), holders);
    EXPECT_EQ(fieldValue(next, "fname"), u"Ann"_s);
}

// A fill reads what one listing found and sends its writes together: what it reads after each
// write must be what the page itself would answer.
TEST_P(TestFormMemory, ABatchAnswersReadsAsThePageWould)
{
    struct Write
    {
        const char* tag;
        int index;
        const char* property;
        QJsonValue value;
    };
    const std::vector<Write> writes = {
        {"input", 1, "checked", true},      {"input", 5, "checked", true},
        {"input", 6, "checked", true},      {"input", 4, "checked", false},
        {"input", 2, "checked", true},      {"input", 7, "checked", true},
        {"input", 8, "value", "abc"},       {"select", 0, "value", "y"},
        {"select", 0, "value", "nope"},     {"select", 0, "selectedIndex", 2},
        {"select", 0, "selectedIndex", 7},  {"select", 1, "value", "p"},
        {"select", 1, "selectedIndex", -1}, {"input", 0, "checked", true},
    };
    const auto trace = [&](const std::shared_ptr<ScriptWindow>& page, bool batched) {
        const DocPtr document = page->document();
        std::optional<DocumentBatch> batch;
        if (batched)
            batch.emplace(*document);
        QMap<QString, QList<ElementPtr>> listed{{"input", document->tags("input")},
                                                {"select", document->tags("select")}};
        QStringList seen;
        for (const Write& write : writes) {
            const ElementPtr& element = listed[write.tag][write.index];
            if (QLatin1String(write.property) == QLatin1String("checked"))
                element->setChecked(write.value.toBool());
            else if (QLatin1String(write.property) == QLatin1String("value"))
                element->setValue(write.value.toString());
            else
                element->setSelectedIndex(write.value.toInt());
            QString state;
            for (const ElementPtr& input : listed["input"])
                state += input->checked() ? QLatin1Char('1') : QLatin1Char('0');
            state += QLatin1Char(' ') + listed["input"][8]->value();
            for (const ElementPtr& list : listed["select"])
                state += u" %1:%2"_s.arg(list->selectedIndex()).arg(list->value());
            seen.append(state);
        }
        if (batch)
            batch->commit();
        return seen;
    };
    const QStringList live = trace(open(server->url("/memory/groups-page.html")), false);
    const QStringList batched = trace(open(server->url("/memory/groups-page.html")), true);
    EXPECT_EQ(batched, live);
    ASSERT_EQ(live.size(), static_cast<qsizetype>(writes.size()));
    EXPECT_EQ(live[0].left(8), u"01011000"_s); // b unchecks a only, not d or e
}

// A frame moving to a process of its own replaces its document between two calls: the old one
// must end a fill quietly, since the new one is filled on its own load.
TEST_P(TestFormMemory, ADocumentThePageLeftTakesWritesAndHasNothingToGive)
{
    auto page = open(server->url("/c.html"));
    const DocPtr left = page->document();
    const ElementPtr field = left->tags("input").value(0);
    ASSERT_TRUE(field);
    evaluate(page, u"location.href = '/a.html'"_s);
    ASSERT_TRUE(waitFor([&] { return heldUrl(page) == server->url("/a.html"); }));

    DocumentBatch batch(*left);
    EXPECT_TRUE(left->tags("input").isEmpty());
    EXPECT_EQ(left->readyState(), QString());
    field->setValue(u"lost"_s);
    EXPECT_NO_THROW(batch.commit());
    EXPECT_TRUE(std::static_pointer_cast<ScriptDocument>(left)->unloaded());
    EXPECT_EQ(fieldValue(page, "fname"), QString());
    expectNoErrorBox();
}

TEST_P(TestFormMemory, TheBrowserKilledDuringAFillIsReportedAndTheBarGoesOn)
{
    for (int i = 0; i < 40; ++i)
        form->valueStore().SetValue(server->url("/a.html"), u"fname"_s, "Ann");
    int turns = 0;
    // The fill lets events run after every field: the browser dies during the second field.
    QObject killer;
    QObject::connect(&form->StatusBar, &Control::changed, &killer, [&] {
        if (form->StatusBar.text().startsWith(u" retrieving"_s) && ++turns == 2)
            driver->killBrowser();
    });
    driver->openAddress(server->url("/a.html"));
    EXPECT_TRUE(waitFor([&] { return !f.boxes.shown.empty(); }));
    ASSERT_FALSE(f.boxes.shown.empty());
    EXPECT_TRUE(f.boxes.shown[0].text.startsWith(u"An error occured in procedure "_s))
        << f.boxes.shown[0].text.toStdString();
    // The bar still works: its own commands and the data files.
    form->cmdPause.click();
    EXPECT_TRUE(form->isPaused());
    form->valueStore().SetValue("http://x.example/", "k", "v");
    EXPECT_EQ(form->valueStore().GetValue("http://x.example/", "k", ""), u"v"_s);
    form->tracking().ResetIEs();
}
ON_EVERY_BROWSER(TestFormMemory);

// What the user corrects in "Remembered values" is what the fill gives the next page: the same
// in every browser, so shown in the two the bar follows by itself.
class TestMemoryCorrections : public TestFormMemory
{
};

TEST_P(TestMemoryCorrections, AValueCorrectedInTheWindowIsWhatTheNextPageGets)
{
    auto first = open(server->url("/a.html"));
    click(first, "[name=fname]");
    type(first, "Anaa");
    tab(first);
    ASSERT_TRUE(
        waitFor([&] { return stored("zAny.ini", "Any", "fname") == QLatin1String("Anaa"); }));

    MainWindow bar(*form);
    QTest::keyClick(&bar, Qt::Key_F2);
    auto* values = bar.rememberedValues()->findChild<QTableWidget*>("tblAnySite");
    ASSERT_TRUE(RememberedValuesHands::pick(values, 1, u"fname"_s));
    RememberedValuesHands::answer(u"Anna"_s);
    QTest::keyClick(values, Qt::Key_Return);

    auto next = open(server->url("/b.html", true));
    EXPECT_EQ(fieldValue(next, "fname"), u"Anna"_s);
    expectNoErrorBox();
}
ON_BROWSERS(TestMemoryCorrections, TestBrowser::Chromium, TestBrowser::Firefox);
} // namespace

// Pages that finish loading are filled from what was remembered: the site's own value first,
// then the value typed on any site; every kind of field; frames; pause; repeats; auto-jump.
#include "FormMemoryFixture.h"

namespace {
const QString First = QStringLiteral("http://prizes.example/enter.html");
const QString Second = QStringLiteral("http://sweeps.example/form?id=7");

using TestFormFill = FormMemoryFixture;

TEST_F(TestFormFill, AnotherSitesFormIsFilledAndTheSitesOwnValueWins)
{
    auto first = formPage(First, {"fname", "email"});
    load(first);
    first->type(field(first, "fname"), QStringLiteral("Ann"));
    first->type(field(first, "email"), QStringLiteral("ann@example.org"));
    first->focus(field(first, "fname"));

    f.form.valueStore().SetValue(Second, QStringLiteral("email"),
                                 QStringLiteral("contests@example.org"));
    f.form.valueStore().SetValue(First, QStringLiteral("email"), QStringLiteral("ann@example.org"));
    auto second = formPage(Second, {"fname", "email", "phone"});
    field(second, "phone")->setValue(QStringLiteral("555-0100"));
    statuses.clear();
    load(second);
    EXPECT_EQ(field(second, "fname")->value(), QStringLiteral("Ann"));
    EXPECT_EQ(field(second, "email")->value(), QStringLiteral("contests@example.org"));
    EXPECT_EQ(field(second, "phone")->value(), QStringLiteral("555-0100"));
    // One "retrieving" per field, each followed by a turn of the message pump.
    EXPECT_TRUE(statuses.contains(QStringLiteral(" retrieving fname")));
    EXPECT_EQ(statuses.count(QStringLiteral(" retrieving phone")), 1);
    EXPECT_EQ(f.form.formFill().LastFillURL(), Second);
}

TEST_F(TestFormFill, ChoicesListsAndTextAreasComeBack)
{
    const QString site = First;
    auto& values = f.form.valueStore();
    values.SetValue(site, QStringLiteral("optin_yes"), QStringLiteral("False"));
    values.SetValue(site, QStringLiteral("size_S"), QStringLiteral("True"));
    values.SetValue(site, QStringLiteral("size_M"), QStringLiteral("true"));
    values.SetValue(site, QStringLiteral("news_1"), QStringLiteral("2"));
    values.SetValue(site, QStringLiteral("state"), QStringLiteral("NY"));
    values.SetValue(site, QStringLiteral("byindex SelectedIndex"), QStringLiteral("2.5"));
    values.SetValue(site, QStringLiteral("comments"), QStringLiteral("line one\r\nline two"));

    auto page = formPage(site);
    auto optin = page->add(ModelElement::input("checkbox", "optin", "yes"));
    optin->setChecked(true);
    auto news = page->add(ModelElement::input("checkbox", "news", "1"));
    auto sizeS = page->add(ModelElement::input("radio", "size", "S"));
    auto sizeM = page->add(ModelElement::input("radio", "size", "M"));
    auto state = page->add(ModelElement::select("state", {{"CA", ""}, {"NY", ""}, {"TX", ""}}));
    auto byindex = page->add(
        ModelElement::select("byindex", {{"", "one"}, {"", "two"}, {"", "three"}, {"", "four"}}));
    auto untouched = page->add(ModelElement::select(
        "untouched", {ModelElement::Option::textOnly("one"), ModelElement::Option::textOnly("two")},
        1));
    auto comments = page->add(ModelElement::textarea("comments", QStringLiteral("old")));
    load(page);

    EXPECT_FALSE(optin->checked());
    EXPECT_TRUE(news->checked());
    EXPECT_FALSE(sizeS->checked());
    EXPECT_TRUE(sizeM->checked());
    EXPECT_EQ(state->selectedIndex(), 1);
    EXPECT_EQ(byindex->selectedIndex(), 2); // 2.5 rounds to the even neighbour
    EXPECT_EQ(untouched->selectedIndex(), 1);
    EXPECT_EQ(comments->innerText(), QStringLiteral("line one\r\nline two"));
    EXPECT_TRUE(f.boxes.shown.empty());
}

TEST_F(TestFormFill, TheThreePassesRunInTheirFixedOrder)
{
    auto page = formPage(First);
    page->add(ModelElement::select("list1", {{"a", ""}}));
    page->add(ModelElement::textarea("area1"));
    page->add(ModelElement::input("text", "text1"));
    page->add(ModelElement::input("submit", "go"));
    page->add(ModelElement::textarea("area2"));
    page->add(ModelElement::input("radio", "r", "x"));
    const int turnsBefore = f.pump.turns;
    statuses.clear();
    load(page);
    EXPECT_EQ(statuses,
              (QStringList{" retrieving text1", " retrieving go", " retrieving r",
                           " retrieving area1", " retrieving area2", " retrieving list1"}));
    EXPECT_EQ(f.pump.turns - turnsBefore, 6);
}

TEST_F(TestFormFill, RepeatsWithinOneSecondAreSuppressed)
{
    f.form.valueStore().SetValue(First, "fname", QStringLiteral("Ann"));
    auto page = formPage(First, {"fname"});
    load(page);
    ASSERT_EQ(field(page, "fname")->value(), QStringLiteral("Ann"));

    // The page completes again at once (its own and its window's completion): no fill.
    field(page, "fname")->setValue(QStringLiteral("typed"));
    f.clock.advanceMs(300);
    page->setReadyState("complete");
    EXPECT_EQ(field(page, "fname")->value(), QStringLiteral("typed"));

    // Two double clicks two seconds later: filled again.
    f.clock.advanceMs(2000);
    page->dblclick();
    f.clock.advanceMs(400);
    page->dblclick();
    EXPECT_EQ(field(page, "fname")->value(), QStringLiteral("Ann"));

    // Another window loading the same address within the second: not filled.
    auto other = f.shellWindows.open();
    auto again = formPage(First, {"fname"});
    f.clock.advanceMs(200);
    other->navigate(again);
    EXPECT_EQ(field(again, "fname")->value(), QString());
}

TEST_F(TestFormFill, PauseStopsTheFillButNotVisits)
{
    f.form.valueStore().SetValue(First, "fname", QStringLiteral("Ann"));
    f.form.cmdPause.click();
    auto page = formPage(First, {"fname"});
    statuses.clear();
    load(page);
    page->click();
    EXPECT_EQ(field(page, "fname")->value(), QString());
    EXPECT_FALSE(statuses.contains(QStringLiteral(" retrieving fname")));
    EXPECT_EQ(f.form.siteFiles().GetTotalVisits(First), 1);

    f.form.cmdPause.click();
    load(formPage(Second));
    load(page);
    EXPECT_EQ(field(page, "fname")->value(), QStringLiteral("Ann"));
}

TEST_F(TestFormFill, AutoJumpShowsTheFirstChangedField)
{
    QStringList names;
    for (int i = 1; i <= 10; ++i)
        names << QStringLiteral("f%1").arg(i);
    f.form.valueStore().SetValue(First, "f3", QStringLiteral("three"));
    f.form.valueStore().SetValue(First, "f9", QStringLiteral("nine"));

    struct Case
    {
        const char* name;
        bool autoJump;
        bool alreadyFilled;
        int scrollsOf3;
        int scrollsOf9;
    } cases[] = {
        {"changes scroll last then first", true, false, 1, 1},
        {"nothing changed, nothing scrolls", true, true, 0, 0},
        {"auto-jump off", false, false, 0, 0},
    };
    for (const Case& c : cases) {
        f.form.chkAutoJump.setValue(c.autoJump ? 1 : 0);
        auto page = formPage(First, names);
        if (c.alreadyFilled) {
            field(page, "f3")->setValue(QStringLiteral("three"));
            field(page, "f9")->setValue(QStringLiteral("nine"));
        }
        load(page);
        EXPECT_EQ(field(page, "f3")->scrollCount(), c.scrollsOf3) << c.name;
        EXPECT_EQ(field(page, "f9")->scrollCount(), c.scrollsOf9) << c.name;
        EXPECT_EQ(field(page, "f1")->scrollCount(), 0) << c.name;
    }
}

TEST_F(TestFormFill, AnUnreadableChoiceEndsTheFillAndLeavesTheRepeatOpen)
{
    f.form.valueStore().SetValue(First, "optin_yes", QStringLiteral("maybe"));
    f.form.valueStore().SetValue(First, "after", QStringLiteral("later"));
    auto page = formPage(First);
    page->add(ModelElement::input("checkbox", "optin", "yes"));
    auto after = page->add(ModelElement::input("text", "after"));
    load(page);
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_EQ(
        f.boxes.shown[0].text,
        QStringLiteral("An error occured in procedure IEHolder_NewDoc.\r\n\r\n13 Type mismatch"));
    EXPECT_EQ(after->value(), QString());
    EXPECT_NE(f.form.formFill().LastFillURL(), First);

    // Not suppressed: the next report runs again (and fails again) at once.
    f.clock.advanceMs(100);
    page->setReadyState("complete");
    EXPECT_EQ(f.boxes.shown.size(), 2u);
}

TEST_F(TestFormFill, CaptureDuringAFillsPumpAndAWindowClosingMidFill)
{
    f.form.valueStore().SetValue(First, "a", QStringLiteral("A"));
    auto page = formPage(First, {"a", "b", "c"});
    // While the fill pumps after its first field, the user types into the third, and then the
    // window closes under the fill.
    f.pump.pending.push_back([&] {
        page->type(field(page, "c"), QStringLiteral("typed meanwhile"));
        f.pump.pending.push_back([&] { f.shellWindows.close(window); });
    });
    load(page);
    EXPECT_EQ(stored(QStringLiteral("zPRIZES.EXAMPLE!ENTER.HTML.ini"), First, "c"),
              QStringLiteral("typed meanwhile"));
    // The fill reports the vanished page, then the window holder its frames it can no longer read.
    ASSERT_EQ(f.boxes.shown.size(), 2u);
    EXPECT_TRUE(f.boxes.shown[0].text.contains(QStringLiteral("procedure IEHolder_NewDoc.")));
    EXPECT_TRUE(f.boxes.shown[1].text.contains(QStringLiteral("procedure ProcessIE.")));
}
} // namespace

namespace {
// Fields a page's script adds after the load are filled once each, by the fill's own keys and
// rules, and never where the user has already been.
TEST_F(TestFormFill, FieldsAddedAfterTheFillAreFilledOnceUnlessTheUserWasThere)
{
    const std::tuple<QString, const char*, const char*> remembered[] = {
        {Second, "fname", "Ann"},
        {First, "email", "ann@example.org"},
        {First, "optin_yes", "True"},
        {First, "state", "NY"},
        {First, "note", "hello"}};
    for (const auto& [site, key, value] : remembered)
        f.form.valueStore().SetValue(site, QLatin1String(key), QLatin1String(value));
    auto page = formPage(First);
    load(page);
    const QString fillBefore = f.form.formFill().LastFillURL();

    // A contest widget renders its form after the load.
    auto fname = ModelElement::input("text", "fname");
    auto email = ModelElement::input("text", "email");
    auto optin = ModelElement::input("checkbox", "optin", "yes");
    auto state = ModelElement::select("state", {{"CA", ""}, {"NY", ""}});
    auto note = ModelElement::textarea("note");
    statuses.clear();
    for (const auto& field : {fname, email, optin, state, note})
        page->addLater(field);
    EXPECT_EQ(fname->value(), QStringLiteral("Ann")); // from any site
    EXPECT_EQ(email->value(), QStringLiteral("ann@example.org"));
    EXPECT_TRUE(optin->checked());
    EXPECT_EQ(state->value(), QStringLiteral("NY"));
    EXPECT_EQ(note->innerText(), QStringLiteral("hello"));
    EXPECT_EQ(statuses.count(QStringLiteral(" retrieving email")), 1);

    // Each is given out once: the page adding something else does not fill them again.
    page->type(email, QStringLiteral("other@example.org"));
    page->focus(page->tags(QStringLiteral("body")).first());
    page->addLater(ModelElement::input("submit", "go"));
    EXPECT_EQ(email->value(), QStringLiteral("other@example.org"));

    // A field the user is already in when the page reports it stays as the user has it.
    auto typedInto = ModelElement::input("text", "fname");
    page->addLater(typedInto, false);
    page->type(typedInto, QStringLiteral("Bo"));
    auto focused = ModelElement::input("text", "email");
    page->addLater(focused, false);
    page->focus(focused);
    page->addLater(ModelElement::input("text", "spare"));
    EXPECT_EQ(typedInto->value(), QStringLiteral("Bo"));
    EXPECT_EQ(focused->value(), QString());

    // Added fields neither jump nor count as the page's fill.
    EXPECT_EQ(email->scrollCount(), 0);
    EXPECT_EQ(f.form.formFill().LastFillURL(), fillBefore);
    EXPECT_TRUE(f.boxes.shown.empty());

    // Paused: nothing is filled.
    f.form.cmdPause.click();
    auto paused = ModelElement::input("text", "fname");
    page->addLater(paused);
    EXPECT_EQ(paused->value(), QString());
}
} // namespace

namespace {
// A remembered value that no option has leaves the list as it was; where that reads empty, the
// remembered index picks the option.
TEST_F(TestFormFill, AListValueNoOptionHasKeepsTheSelectionAndTheIndexDecides)
{
    struct Case
    {
        const char* name;
        int selectedBefore;
        const char* index; // remembered " SelectedIndex", or nullptr
        int selectedAfter;
    } cases[] = {
        // First: once an index is remembered, Any.ini offers it on every site.
        {"the empty choice without an index stays", 0, nullptr, 0},
        {"a chosen option stays", 1, "3", 1},
        {"the empty choice falls back to the index", 0, "3", 3},
    };
    for (const Case& c : cases) {
        const QString site = First + QStringLiteral("?") + QLatin1String(c.name);
        f.form.valueStore().SetValue(site, "state", QStringLiteral("Texas"));
        if (c.index)
            f.form.valueStore().SetValue(site, "state SelectedIndex", QLatin1String(c.index));
        auto page = formPage(site);
        auto state = page->add(ModelElement::select(
            "state", {{"", "Choose"}, {"CA", ""}, {"NY", ""}, {"TX", ""}}, c.selectedBefore));
        load(page);
        EXPECT_EQ(state->selectedIndex(), c.selectedAfter) << c.name;
    }
    EXPECT_TRUE(f.boxes.shown.empty());
}
} // namespace

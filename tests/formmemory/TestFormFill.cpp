// Pages that finish loading are filled from what was remembered: the site's own value first,
// then the value typed on any site; every kind of field; frames; pause; repeats; auto-jump.
#include "FormMemoryFixture.h"

using namespace Qt::StringLiterals;

namespace {
const QString First = u"http://prizes.example/enter.html"_s;
const QString Second = u"http://sweeps.example/form?id=7"_s;

using TestFormFill = FormMemoryFixture;

TEST_F(TestFormFill, AnotherSitesFormIsFilledAndTheSitesOwnValueWins)
{
    auto first = formPage(First, {"fname", "email"});
    load(first);
    first->type(field(first, "fname"), u"Ann"_s);
    first->type(field(first, "email"), u"ann@example.org"_s);
    first->focus(field(first, "fname"));

    f.form.valueStore().SetValue(Second, u"email"_s, u"contests@example.org"_s);
    f.form.valueStore().SetValue(First, u"email"_s, u"ann@example.org"_s);
    auto second = formPage(Second, {"fname", "email", "phone"});
    field(second, "phone")->setValue(u"555-0100"_s);
    statuses.clear();
    load(second);
    EXPECT_EQ(field(second, "fname")->value(), u"Ann"_s);
    EXPECT_EQ(field(second, "email")->value(), u"contests@example.org"_s);
    EXPECT_EQ(field(second, "phone")->value(), u"555-0100"_s);
    // One "retrieving" per field, each followed by a turn of the message pump.
    EXPECT_TRUE(statuses.contains(u" retrieving fname"_s));
    EXPECT_EQ(statuses.count(u" retrieving phone"_s), 1);
    EXPECT_EQ(f.form.formFill().LastFillURL(), Second);
}

TEST_F(TestFormFill, ChoicesListsAndTextAreasComeBack)
{
    const QString site = First;
    auto& values = f.form.valueStore();
    values.SetValue(site, u"optin_yes"_s, u"False"_s);
    values.SetValue(site, u"size_S"_s, u"True"_s);
    values.SetValue(site, u"size_M"_s, u"true"_s);
    values.SetValue(site, u"news_1"_s, u"2"_s);
    values.SetValue(site, u"state"_s, u"NY"_s);
    values.SetValue(site, u"byindex SelectedIndex"_s, u"2.5"_s);
    values.SetValue(site, u"comments"_s, u"line one\r\nline two"_s);

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
    auto comments = page->add(ModelElement::textarea("comments", u"old"_s));
    load(page);

    EXPECT_FALSE(optin->checked());
    EXPECT_TRUE(news->checked());
    EXPECT_FALSE(sizeS->checked());
    EXPECT_TRUE(sizeM->checked());
    EXPECT_EQ(state->selectedIndex(), 1);
    EXPECT_EQ(byindex->selectedIndex(), 2); // 2.5 rounds to the even neighbour
    EXPECT_EQ(untouched->selectedIndex(), 1);
    EXPECT_EQ(comments->innerText(), u"line one\r\nline two"_s);
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
    f.form.valueStore().SetValue(First, "fname", u"Ann"_s);
    auto page = formPage(First, {"fname"});
    load(page);
    ASSERT_EQ(field(page, "fname")->value(), u"Ann"_s);

    // The page completes again at once (its own and its window's completion): no fill.
    field(page, "fname")->setValue(u"typed"_s);
    f.clock.advanceMs(300);
    page->setReadyState("complete");
    EXPECT_EQ(field(page, "fname")->value(), u"typed"_s);

    // Two double clicks two seconds later: filled again.
    f.clock.advanceMs(2000);
    page->dblclick();
    f.clock.advanceMs(400);
    page->dblclick();
    EXPECT_EQ(field(page, "fname")->value(), u"Ann"_s);

    // Another window loading the same address within the second: not filled.
    auto other = f.shellWindows.open();
    auto again = formPage(First, {"fname"});
    f.clock.advanceMs(200);
    other->navigate(again);
    EXPECT_EQ(field(again, "fname")->value(), QString());
}

TEST_F(TestFormFill, PauseStopsTheFillAndCaptureButNotVisits)
{
    f.form.valueStore().SetValue(First, "fname", u"Ann"_s);
    f.form.cmdPause.click();
    auto page = formPage(First, {"fname", "lname"});
    statuses.clear();
    load(page);
    page->type(field(page, "lname"), u"Lee"_s);
    page->focus(field(page, "fname"));
    page->click();
    EXPECT_EQ(field(page, "fname")->value(), QString());
    EXPECT_TRUE(statuses.isEmpty());
    EXPECT_EQ(stored("zPRIZES.EXAMPLE!ENTER.HTML.ini", First, "lname"), u"<missing>"_s);
    EXPECT_EQ(f.form.siteFiles().GetTotalVisits(First), 1);

    f.form.cmdPause.click();
    load(formPage(Second));
    load(page);
    EXPECT_EQ(field(page, "fname")->value(), u"Ann"_s);
}

TEST_F(TestFormFill, AutoJumpShowsTheFirstChangedField)
{
    QStringList names;
    for (int i = 1; i <= 10; ++i)
        names << u"f%1"_s.arg(i);
    f.form.valueStore().SetValue(First, "f3", u"three"_s);
    f.form.valueStore().SetValue(First, "f9", u"nine"_s);

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
            field(page, "f3")->setValue(u"three"_s);
            field(page, "f9")->setValue(u"nine"_s);
        }
        load(page);
        EXPECT_EQ(field(page, "f3")->scrollCount(), c.scrollsOf3) << c.name;
        EXPECT_EQ(field(page, "f9")->scrollCount(), c.scrollsOf9) << c.name;
        EXPECT_EQ(field(page, "f1")->scrollCount(), 0) << c.name;
    }
}

TEST_F(TestFormFill, AnUnreadableChoiceEndsTheFillAndLeavesTheRepeatOpen)
{
    f.form.valueStore().SetValue(First, "optin_yes", u"maybe"_s);
    f.form.valueStore().SetValue(First, "after", u"later"_s);
    auto page = formPage(First);
    page->add(ModelElement::input("checkbox", "optin", "yes"));
    auto after = page->add(ModelElement::input("text", "after"));
    load(page);
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_EQ(f.boxes.shown[0].text,
              u"An error occured in procedure IEHolder_NewDoc.\r\n\r\n13 Type mismatch"_s);
    EXPECT_EQ(after->value(), QString());
    EXPECT_NE(f.form.formFill().LastFillURL(), First);

    // Not suppressed: the next report runs again (and fails again) at once.
    f.clock.advanceMs(100);
    page->setReadyState("complete");
    EXPECT_EQ(f.boxes.shown.size(), 2u);
}

TEST_F(TestFormFill, CaptureDuringAFillsPumpAndAWindowClosingMidFill)
{
    f.form.valueStore().SetValue(First, "a", u"A"_s);
    auto page = formPage(First, {"a", "b", "c"});
    // While the fill pumps after its first field, the user types into the third, and then the
    // window closes under the fill.
    f.pump.pending.push_back([&] {
        page->type(field(page, "c"), u"typed meanwhile"_s);
        f.pump.pending.push_back([&] { f.shellWindows.close(window); });
    });
    load(page);
    EXPECT_EQ(stored(u"zPRIZES.EXAMPLE!ENTER.HTML.ini"_s, First, "c"), u"typed meanwhile"_s);
    // The fill reports the vanished page, then the window holder its frames it can no longer read.
    ASSERT_EQ(f.boxes.shown.size(), 2u);
    EXPECT_TRUE(f.boxes.shown[0].text.contains(u"procedure IEHolder_NewDoc."_s));
    EXPECT_TRUE(f.boxes.shown[1].text.contains(u"procedure ProcessIE."_s));
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
    EXPECT_EQ(fname->value(), u"Ann"_s); // from any site
    EXPECT_EQ(email->value(), u"ann@example.org"_s);
    EXPECT_TRUE(optin->checked());
    EXPECT_EQ(state->value(), u"NY"_s);
    EXPECT_EQ(note->innerText(), u"hello"_s);
    EXPECT_EQ(statuses.count(u" retrieving email"_s), 1);

    // Each is given out once: the page adding something else does not fill them again.
    page->type(email, u"other@example.org"_s);
    page->focus(page->tags(u"body"_s).first());
    page->addLater(ModelElement::input("submit", "go"));
    EXPECT_EQ(email->value(), u"other@example.org"_s);

    // A field the user is already in when the page reports it stays as the user has it.
    auto typedInto = ModelElement::input("text", "fname");
    page->addLater(typedInto, false);
    page->type(typedInto, u"Bo"_s);
    auto focused = ModelElement::input("text", "email");
    page->addLater(focused, false);
    page->focus(focused);
    page->addLater(ModelElement::input("text", "spare"));
    EXPECT_EQ(typedInto->value(), u"Bo"_s);
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
        const QString site = First + u"?"_s + QLatin1String(c.name);
        f.form.valueStore().SetValue(site, "state", u"Texas"_s);
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

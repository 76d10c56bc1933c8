// The right value in the right field, in real browsers: a contest entry typed on one site fills
// other sites that name and caption it otherwise (labels, table cells in French), but never a
// friend's box, a contest answer or a promotion code, and a site's own value wins; the user's
// own e-mail stays theirs after a friend's was typed; fields of one name keep one value each;
// placeholder and numeric choices leave memory as it was; a page that plants values plants
// nothing in the data files.
#include "BarFixture.h"

using namespace Qt::StringLiterals;

namespace {
class TestContestForms : public BarFixture
{
protected:
    QString byMeaning(const char* key)
    {
        return f.ini.readEntry(form->valueStore().anyFile(), u"Meaning"_s, QString::fromLatin1(key))
            .value_or(QString());
    }
    void pressDown(const std::shared_ptr<ScriptWindow>& page, int times)
    {
        for (int i = 0; i < times; ++i)
            driver->press(*page, PageDriver::Key::ArrowDown);
    }
};
// Recognising fields is the page script's and the logic's: the same in Firefox either way.
class TestContestFields : public TestContestForms
{
};

TEST_P(TestContestFields, AnEntryTypedOnOneSiteFillsAnotherButNeverAFriendsBoxOrAnAnswer)
{
    const QString a = server->url("/contest/entry-a.html");
    auto entry = open(a);
    form->valueStore().SetMeaningValue(u"address-level1"_s, u"Illinois"_s);
    click(entry, "#fn");
    for (const char* text : {"Ann", "Lee", "ann@example.org"}) {
        type(entry, QString::fromLatin1(text));
        tab(entry);
    }
    pressDown(entry, 17); // day 17
    tab(entry);
    pressDown(entry, 5); // May
    tab(entry);
    pressDown(entry, 19); // 1990
    tab(entry);
    tab(entry); // the state left on its placeholder
    type(entry, "Bob Friend");
    tab(entry);
    type(entry, "bob@example.org");
    tab(entry);
    type(entry, "19");
    tab(entry);
    ASSERT_TRUE(waitFor([&] { return siteValue(a, "skill") == "19"; }))
        << fileBytes(form->siteFiles().SiteFilePath(a)).toStdString();
    EXPECT_EQ(byMeaning("email"), u"ann@example.org"_s);
    EXPECT_EQ(byMeaning("bday-year"), u"1990"_s);
    EXPECT_EQ(byMeaning("address-level1"), u"Illinois"_s);
    // The friend's address and the answer are for this site alone, and have no meaning.
    const QByteArray any = fileBytes(form->valueStore().anyFile());
    for (const char* absent : {"bob@", "Bob Friend", "skill", "ref_email"})
        EXPECT_FALSE(any.contains(absent)) << absent;
    // A numeric state list: its text is remembered, never its code.
    click(entry, "#st");
    pressDown(entry, 2);
    tab(entry);
    ASSERT_TRUE(waitFor([&] { return byMeaning("address-level1") == QLatin1String("New York"); }))
        << byMeaning("address-level1").toStdString();

    auto other = open(server->url("/contest/entry-b.html", true));
    const auto shown = [&](const char* name) { return fieldValue(other, name); };
    EXPECT_EQ(shown("given"), u"Ann"_s);
    EXPECT_EQ(shown("family"), u"Lee"_s);
    EXPECT_EQ(shown("mail"), u"ann@example.org"_s);
    EXPECT_EQ(shown("birth"), u"17/05/1990"_s);
    EXPECT_EQ(shown("bday_d"), u"17"_s);
    EXPECT_EQ(shown("bday_m"), u"May"_s);
    EXPECT_EQ(shown("bday_y"), u"1990"_s);
    for (const char* empty : {"email", "name2", "answer", "account_mail"})
        EXPECT_EQ(shown(empty), QString()) << empty;

    const QString fr = server->url("/contest/french.html", true);
    form->valueStore().SetValue(fr, "champ1", u"Anne-Marie"_s, ValueReach::SiteOnly);
    auto french = open(fr);
    QStringList champs;
    for (const char* name : {"champ1", "champ2", "champ3", "champ4", "champ5"})
        champs << fieldValue(french, name);
    EXPECT_EQ(champs, (QStringList{"Anne-Marie", "Lee", "ann@example.org", "17/05/1990", ""}));
    expectNoErrorBox();
}

TEST_P(TestContestFields, FieldsOfOneNameKeepOneValueEach)
{
    const QString site = server->url("/contest/twins.html");
    auto page = open(site);
    const QString values[] = {"Speedy", "7", "Red Kites"};
    for (int i = 0; i < 3; ++i) {
        clickOn(page, u"document.querySelectorAll('[name=inputField]')[%1]"_s.arg(i));
        type(page, values[i]);
        tab(page);
    }
    ASSERT_TRUE(waitFor([&] { return siteValue(site, "inputField#3") == values[2]; }));
    waitFor([] { return false; }, 1100); // not taken for a repeat of the first load
    auto again = open(site);
    const QStringList shown =
        evaluate(
            again,
            "[...document.querySelectorAll('[name=inputField]')].map((f) => f.value).join('|')")
            .toString()
            .split('|');
    EXPECT_EQ(shown, (QStringList{values[0], values[1], values[2]}));
    expectNoErrorBox();
}

TEST_P(TestContestForms, APageThatPlantsValuesChangesNothingInTheDataFiles)
{
    form->valueStore().SetMeaningValue(u"email"_s, u"ann@example.org"_s);
    const QString site = server->url("/contest/planter.html");
    auto page = open(site);
    ASSERT_TRUE(waitFor([&] { return fieldValue(page, "email") == "ann@example.org"; }));
    evaluate(page, "plant(), 0");
    ASSERT_TRUE(waitFor([&] { return evaluate(page, "!!window.planted").toBool(); }));
    EXPECT_EQ(evaluate(page, "window.reached").toString(), u"undefined,undefined"_s);
    ASSERT_TRUE(fieldValue(page, "email").contains(u"planted@evil.example"_s));
    // The user passes through the planted fields without typing, and types in the hijacked one.
    click(page, "[name=email]");
    tab(page);
    tab(page);
    type(page, "x");
    tab(page);
    click(page, "[name=email]");
    waitFor([] { return false; }, 500);
    const QByteArray files =
        fileBytes(form->siteFiles().SiteFilePath(site)) + fileBytes(form->valueStore().anyFile());
    for (const char* planted : {"evil", "555 0199"})
        EXPECT_FALSE(files.contains(planted)) << planted << "\n" << files.toStdString();
    EXPECT_EQ(byMeaning("email"), u"ann@example.org"_s);
    EXPECT_EQ(byMeaning("tel"), QString());
    expectNoErrorBox();
}
ON_EVERY_BROWSER(TestContestForms);
ON_BROWSERS(TestContestFields, TestBrowser::Chromium, TestBrowser::Firefox, TestBrowser::Extension);
} // namespace

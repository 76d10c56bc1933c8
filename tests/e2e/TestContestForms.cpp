// The right value in the right field, in real browsers: a contest entry typed on one site fills
// other sites that name and caption it otherwise (labels, table cells in French), but never a
// friend's box, a contest answer or a promotion code, and a site's own value wins; the user's
// own e-mail stays theirs after a friend's was typed; fields of one name keep one value each;
// placeholder and numeric choices leave memory as it was; a page that plants values plants
// nothing in the data files.
#include "BarFixture.h"

namespace {
QByteArray numberedOptions(int from, int to)
{
    QByteArray options;
    for (int n = from; from <= to ? n <= to : n >= to; n += from <= to ? 1 : -1)
        options += "<option>" + QByteArray::number(n) + "</option>";
    return options;
}

const QByteArray Months =
    "<option>January</option><option>February</option><option>March</option><option>April</option>"
    "<option>May</option><option>June</option><option>July</option><option>August</option>"
    "<option>September</option><option>October</option><option>November</option><option>December</"
    "option>";

const QByteArray EntryA =
    R"(<!doctype html><html lang="en-US"><head><meta charset="utf-8"><title>Win a canoe</title></head><body>
<form><h2>Your details</h2>
<p><label for="fn">First name</label><input id="fn" name="first_name" autocomplete="given-name"></p>
<p><label for="ln">Last name</label><input id="ln" name="last_name"></p>
<p><label for="em">Email</label><input id="em" name="email" type="email"></p>
<p><label for="dd">Date of birth</label><select id="dd" name="dob_day"><option value="">Day</option>)" +
    numberedOptions(1, 31) +
    R"(</select><select name="dob_month"><option value="">Month</option>)" + Months +
    R"(</select><select name="dob_year"><option value="">Year</option>)" +
    numberedOptions(2008, 1920) + R"(</select></p>
<p><label for="st">State</label><select id="st" name="state"><option value="">Select an option…</option>
  <option value="14">Illinois</option><option value="33">New York</option><option value="44">Texas</option></select></p>
<fieldset><legend>Refer a friend for a bonus entry</legend>
<p><label for="ffn">Name</label><input id="ffn" name="friend_name"></p>
<p><label for="fem">Email</label><input id="fem" name="ref_email" type="email" autocomplete="email"></p></fieldset>
<p><label for="q">Skill question: what is 12 + 7?</label><input id="q" name="skill"></p>
</form></body></html>)";

// Another site that names everything otherwise; its friend's box is even called "email".
const QByteArray EntryB =
    R"(<!doctype html><html lang="en-GB"><head><meta charset="utf-8"><title>Win a trip</title></head><body>
<form><h3>About you</h3>
<label>Given name <input name="given"></label><label>Surname <input name="family"></label>
<label>E-mail address <input name="mail"></label>
<label>Date of birth <input name="birth" placeholder="dd/mm/yyyy"></label>
<div>Birthday <select name="bday_d"><option></option>)" +
    numberedOptions(1, 31) + R"(</select>
<select name="bday_m"><option></option>)" +
    Months + R"(</select>
<select name="bday_y"><option></option>)" +
    numberedOptions(1920, 2008) + R"(</select></div>
<fieldset><legend>Tell a friend</legend><label>Email <input name="email"></label>
<label>Their name <input name="name2"></label></fieldset>
<label>Which city would you most like to visit? <input name="answer"></label>
</form></body></html>)";

// Captions in table cells, no labels, in French; a site's own value for one of them.
const QByteArray French =
    R"(<!doctype html><html lang=fr><head><meta charset="utf-8"><title>Grand jeu concours</title></head><body>
<form><table>
<tr><td>Prénom</td><td><input name="champ1"></td></tr>
<tr><td>Nom</td><td><input name="champ2"></td></tr>
<tr><td>Courriel</td><td><input name="champ3"></td></tr>
<tr><td>Date de naissance</td><td><input name="champ4"></td></tr>
<tr><td>Code promo</td><td><input name="champ5"></td></tr>
</table></form></body></html>)";

const QByteArray Twins =
    R"(<!doctype html><html><head><title>Sign up</title></head><body><div id="app">
<label>Nickname for the draw <input name="inputField"></label>
<label>Lucky number <input name="inputField"></label>
<label>Team <input name="inputField"></label></div></body></html>)";

// A page that plants: the editing command (trusted events), the clipboard, values with events,
// and text inserted inside the user's own key press.
const QByteArray Planter = R"(<!doctype html><html><head><title>Free entry</title></head><body>
<label>Email <input name="email" type="email"></label><label>Phone <input name="phone" type="tel"></label>
<label>Notes <input name="note"></label><script>
addEventListener('load', () => setTimeout(async () => {
  const email = document.querySelector('[name=email]');
  email.focus();
  document.execCommand('insertText', false, 'planted@evil.example');
  email.blur();
  const phone = document.querySelector('[name=phone]');
  phone.value = '555 0199';
  phone.dispatchEvent(new Event('input', { bubbles: true }));
  phone.dispatchEvent(new Event('change', { bubbles: true }));
  try { await navigator.clipboard.writeText('clip@evil.example'); } catch (e) {}
  phone.focus();
  document.execCommand('paste');
  phone.blur();
  window.planted = true;
}, 100));
document.addEventListener('keydown', (e) => {
  if (e.target.name === 'note' && !window.hijacked) { window.hijacked = true; document.execCommand('insertText', false, 'hijack@evil.example'); }
}, true);
</script></body></html>)";

class TestContestForms : public BarFixture
{
protected:
    QMap<QString, QByteArray> pages() const override
    {
        return {{"/a.html", EntryA},
                {"/fr.html", French},
                {"/b.html", EntryB},
                {"/twins.html", Twins},
                {"/plant.html", Planter}};
    }
    QString byMeaning(const char* key)
    {
        return f.ini
            .readEntry(form->valueStore().anyFile(), QStringLiteral("Meaning"),
                       QString::fromLatin1(key))
            .value_or(QString());
    }
    QByteArray fileBytes(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void pressDown(const std::shared_ptr<ScriptWindow>& page, int times)
    {
        for (int i = 0; i < times; ++i)
            driver->press(*page, PageDriver::Key::ArrowDown);
    }
};

TEST_P(TestContestForms, AnEntryTypedOnOneSiteFillsAnotherButNeverAFriendsBoxOrAnAnswer)
{
    const QString a = server->url("/a.html");
    auto entry = open(a);
    form->valueStore().SetMeaningValue(QStringLiteral("address-level1"),
                                       QStringLiteral("Illinois"));
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
    ASSERT_TRUE(waitFor([&] {
        return f.ini.readEntry(form->siteFiles().SiteFilePath(a), a, "skill").value_or("") == "19";
    })) << fileBytes(form->siteFiles().SiteFilePath(a)).toStdString();
    EXPECT_EQ(byMeaning("email"), QStringLiteral("ann@example.org"));
    EXPECT_EQ(byMeaning("bday-year"), QStringLiteral("1990"));
    EXPECT_EQ(byMeaning("address-level1"), QStringLiteral("Illinois"));
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

    auto other = open(server->url("/b.html", true));
    const auto shown = [&](const char* name) { return fieldValue(other, name); };
    EXPECT_EQ(shown("given"), QStringLiteral("Ann"));
    EXPECT_EQ(shown("family"), QStringLiteral("Lee"));
    EXPECT_EQ(shown("mail"), QStringLiteral("ann@example.org"));
    EXPECT_EQ(shown("birth"), QStringLiteral("17/05/1990"));
    EXPECT_EQ(shown("bday_d"), QStringLiteral("17"));
    EXPECT_EQ(shown("bday_m"), QStringLiteral("May"));
    EXPECT_EQ(shown("bday_y"), QStringLiteral("1990"));
    for (const char* empty : {"email", "name2", "answer"})
        EXPECT_EQ(shown(empty), QString()) << empty;

    const QString fr = server->url("/fr.html", true);
    form->valueStore().SetValue(fr, "champ1", QStringLiteral("Anne-Marie"), ValueReach::SiteOnly);
    auto french = open(fr);
    QStringList champs;
    for (const char* name : {"champ1", "champ2", "champ3", "champ4", "champ5"})
        champs << fieldValue(french, name);
    EXPECT_EQ(champs, (QStringList{"Anne-Marie", "Lee", "ann@example.org", "17/05/1990", ""}));
    expectNoErrorBox();
}

TEST_P(TestContestForms, FieldsOfOneNameKeepOneValueEach)
{
    const QString site = server->url("/twins.html");
    auto page = open(site);
    const QString values[] = {"Speedy", "7", "Red Kites"};
    for (int i = 0; i < 3; ++i) {
        clickOn(page, QStringLiteral("document.querySelectorAll('[name=inputField]')[%1]").arg(i));
        type(page, values[i]);
        tab(page);
    }
    ASSERT_TRUE(waitFor([&] {
        return f.ini.readEntry(form->siteFiles().SiteFilePath(site), site, "inputField#3")
                   .value_or("") == values[2];
    }));
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
    form->valueStore().SetMeaningValue(QStringLiteral("email"), QStringLiteral("ann@example.org"));
    const QString site = server->url("/plant.html");
    auto page = open(site);
    ASSERT_TRUE(waitFor([&] { return evaluate(page, "!!window.planted").toBool(); }));
    ASSERT_TRUE(fieldValue(page, "email").contains(QStringLiteral("planted@evil.example")));
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
    EXPECT_EQ(byMeaning("email"), QStringLiteral("ann@example.org"));
    EXPECT_EQ(byMeaning("tel"), QString());
    expectNoErrorBox();
}
ON_BOTH_BROWSERS(TestContestForms);
} // namespace

// The editor: new shortcuts take the lowest free number, edits rewrite their eight keys, Cancel
// writes nothing, and the list is reloaded either way.
#include "ShortcutFixture.h"

using namespace Qt::StringLiterals;

namespace {
class TestShortcutEditor : public ShortcutFixture
{
protected:
    TestShortcutEditor() { f.form.Form_Load(); }
    // The user presses OK (or Cancel) after changing what the script does.
    void userPresses(bool ok, const std::function<void(frmShortcut&)>& edits = {})
    {
        f.editor.user = [ok, edits](frmShortcut& form) {
            if (edits)
                edits(form);
            (ok ? form.cmdOK : form.cmdCancel).click();
        };
    }
    void addActivePage(const QString& title, const QString& url)
    {
        f.form.txtURL.setText(url);
        f.form.txtActive.setText(title);
        f.form.cmdAddShortcut.click();
    }
};

TEST_F(TestShortcutEditor, NewShortcutsTakeTheLowestFreeNumber)
{
    struct Case
    {
        const char* name;
        QList<std::pair<int, QString>> existing;
        int max;
        int expectedNumber;
        int expectedMax;
    } cases[] = {
        {"empty list", {}, 0, 1, 1},
        {"removed 2 is reused", {{1, "One"}, {2, ""}, {3, "Three"}}, 3, 2, 3},
        {"all used", {{1, "One"}, {2, "Two"}, {3, "Three"}}, 3, 4, 4},
        {"blank title counts as free", {{1, "  "}}, 1, 1, 1},
    };
    for (const Case& c : cases) {
        QFile::remove(file());
        for (const auto& [number, title] : c.existing)
            shortcut(number, title);
        if (c.max)
            setMax(c.max);
        userPresses(true);
        addActivePage("  Spring Sweepstakes  ", "http://spring.example/enter");
        EXPECT_EQ(key(c.expectedNumber, "Title"), u"Spring Sweepstakes"_s) << c.name;
        EXPECT_EQ(key(0, "Title"), u"<missing>"_s) << c.name;
        EXPECT_EQ(f.ini.readEntry(file(), "Shortcuts", "Max"), QString::number(c.expectedMax))
            << c.name;
        EXPECT_TRUE(tags().contains(c.expectedNumber)) << c.name;
    }
}

TEST_F(TestShortcutEditor, AddingFillsTheDialogFromTheActivePage)
{
    frmShortcut* seen = nullptr;
    QString name, url, last, total, remind;
    QDate starts, ends;
    userPresses(true, [&](frmShortcut& form) {
        seen = &form;
        name = form.txtTitle.text();
        url = form.txtURL.text();
        last = form.txtLastVisit.text();
        total = form.txtTotalEntries.text();
        remind = form.cboRemind.items().value(form.cboRemind.listIndex());
        starts = form.dtStartDate.value();
        ends = form.dtExpires.value();
    });
    addActivePage("  Win a Car ", "http://cars.example/win ");
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(name, u"Win a Car"_s);
    EXPECT_EQ(url, u"http://cars.example/win "_s);
    EXPECT_EQ(last, u"never"_s);
    EXPECT_EQ(total, u"0"_s);
    EXPECT_EQ(remind, u"Never"_s);
    EXPECT_EQ(starts, QDate(2005, 3, 10));
    EXPECT_EQ(ends, QDate(2006, 3, 10));
    const std::pair<const char*, const char*> written[] = {{"Title", "Win a Car"},
                                                           {"URL", "http://cars.example/win"},
                                                           {"Remind", "0"},
                                                           {"StartDate", "2005-03-10"},
                                                           {"Expires", "2006-03-10"},
                                                           {"LastVisit", "never"},
                                                           {"Source", ""},
                                                           {"Notes", ""}};
    for (const auto& [k, v] : written)
        EXPECT_EQ(key(1, k), QString::fromLatin1(v)) << k;
}

TEST_F(TestShortcutEditor, EditingRewritesTheEightKeysAndLeavesMax)
{
    setMax(9);
    shortcut(2, "Old title", "http://old.example/", 1, "2/1/2005");
    put(2, "Source", "Newspaper");
    f.form.shortcutList().RequeryShortcuts();
    f.form.lvShortcuts.setSelectedIndex(rowOf(2));
    QDate shownExpires;
    int shownRemind = -1;
    userPresses(true, [&](frmShortcut& form) {
        shownExpires = form.dtExpires.value();
        shownRemind = form.cboRemind.listIndex();
        form.txtTitle.setText("New title");
        form.cboRemind.setListIndex(3);
        form.dtStartDate.setValue(QDate(2005, 4, 1));
        form.txtNotes.setText("Enter daily");
    });
    f.form.mnuEditShortcut.click();
    EXPECT_EQ(shownRemind, 1);
    EXPECT_EQ(shownExpires, QDate(2006, 3, 10)); // missing "Expires": a year from today
    const std::pair<const char*, const char*> written[] = {
        {"Title", "New title"},      {"URL", "http://old.example/"}, {"Remind", "3"},
        {"StartDate", "2005-04-01"}, {"Expires", "2006-03-10"},      {"LastVisit", "never"},
        {"Source", "Newspaper"},     {"Notes", "Enter daily"}};
    for (const auto& [k, v] : written)
        EXPECT_EQ(key(2, k), QString::fromLatin1(v)) << k;
    EXPECT_EQ(f.ini.readEntry(file(), "Shortcuts", "Max"), u"9"_s);
    EXPECT_EQ(f.form.lvShortcuts.row(0).text, u"New title"_s);
}

TEST_F(TestShortcutEditor, CancelWritesNothingButTheListIsReloaded)
{
    setMax(1);
    shortcut(1, "Kept");
    const QByteArray before = fileBytes();
    userPresses(false, [](frmShortcut& form) { form.txtTitle.setText("Changed"); });
    addActivePage("Something", "http://x.example/");
    EXPECT_EQ(fileBytes(), before);
    shortcut(1, "Changed elsewhere");
    f.form.lvShortcuts.setSelectedIndex(0);
    f.form.mnuEditShortcut.click();
    EXPECT_EQ(f.form.lvShortcuts.row(0).text, u"Changed elsewhere"_s);
}

TEST_F(TestShortcutEditor, AnUnreadableReminderIsReportedAndTheDialogNotShown)
{
    setMax(1);
    shortcut(1, "Odd", {}, 7);
    f.form.shortcutList().RequeryShortcuts();
    f.form.lvShortcuts.setSelectedIndex(0);
    f.editor.shown = 0;
    f.form.mnuEditShortcut.click();
    EXPECT_EQ(f.editor.shown, 0);
    ASSERT_FALSE(f.boxes.shown.empty());
    EXPECT_EQ(f.boxes.shown.back().text,
              u"An error occured in procedure EditShortcut.\r\n\r\n380 Invalid property value"_s);
}

} // namespace

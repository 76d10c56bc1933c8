// The commands on the list: open, remove with confirmation, the pop-up menu, the add-button rule.
#include "ShortcutFixture.h"

using namespace Qt::StringLiterals;

namespace {
class TestListCommands : public ShortcutFixture
{
protected:
    TestListCommands()
    {
        setMax(4);
        shortcut(1, "Spring Sweepstakes", "http://spring.example/");
        shortcut(2, "Car Contest", " http://cars.example/ ");
        shortcut(3, "Spring Sweepstakes", "http://spring2.example/");
        shortcut(4, "Trip", "http://trip.example/");
        f.form.Form_Load();
    }
};

TEST_F(TestListCommands, NothingSelectedMeansNothingHappens)
{
    f.form.lvShortcuts.doubleClick();
    f.form.lvShortcuts.keyDown(13);
    f.form.mnuGotoShortcut.click();
    f.form.mnuRemoveShortcut.click();
    f.form.mnuEditShortcut.click();
    f.form.lvShortcuts.click();
    EXPECT_TRUE(f.shell.opened.isEmpty());
    EXPECT_TRUE(f.boxes.shown.empty());
    EXPECT_EQ(f.editor.shown, 0);
    EXPECT_EQ(f.form.lblEntries.text(), u"1"_s);
    EXPECT_EQ(f.form.lblLastEntry.text(), u"Last Entry"_s);
}

TEST_F(TestListCommands, OpeningTheSelectedShortcut)
{
    f.form.lvShortcuts.setSelectedIndex(rowOf(2));
    f.form.lvShortcuts.doubleClick();
    f.form.lvShortcuts.keyDown(13);
    f.form.lvShortcuts.keyDown(40);
    f.form.mnuGotoShortcut.click();
    EXPECT_EQ(f.shell.opened, QStringList(3, "http://cars.example/"));
    EXPECT_EQ(f.form.siteFiles().GetTotalVisits("http://cars.example/"), 0);
}

TEST_F(TestListCommands, RemoveAsksAndEmptiesOnlyTheTitleOfItsOwnNumber)
{
    f.form.lvShortcuts.setSelectedIndex(rowOf(3));
    f.boxes.nextAnswer = MsgAnswer::No;
    const QByteArray before = fileBytes();
    f.form.mnuRemoveShortcut.click();
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_EQ(f.boxes.shown[0].text, u"Remove shortcut Spring Sweepstakes?"_s);
    EXPECT_EQ(f.boxes.shown[0].buttons, MsgButtons::YesNo);
    EXPECT_EQ(f.boxes.shown[0].icon, MsgIcon::Question);
    EXPECT_EQ(fileBytes(), before);

    f.boxes.nextAnswer = MsgAnswer::Yes;
    f.form.mnuRemoveShortcut.click();
    EXPECT_EQ(tags(), (QList<int>{1, 2, 4}));
    EXPECT_EQ(key(3, "Title"), QString());
    EXPECT_EQ(key(3, "URL"), u"http://spring2.example/"_s);
    EXPECT_EQ(key(1, "Title"), u"Spring Sweepstakes"_s);
    EXPECT_EQ(f.ini.readEntry(file(), "Shortcuts", "Max"), u"4"_s);
    EXPECT_EQ(f.form.lvShortcuts.selectedIndex(), -1);
}

TEST_F(TestListCommands, RightClickSelectsTheRowAndShowsTheMenu)
{
    Control* defaultItem = nullptr;
    QStringList captions;
    f.shell.onPopup = [&](MenuControl& menu, Control* item) {
        defaultItem = item;
        for (Control* entry : menu.items())
            captions << entry->text();
        item->click();
    };
    f.form.lvShortcuts.mouseDown(2, rowOf(4));
    EXPECT_EQ(f.form.lvShortcuts.selectedIndex(), rowOf(4));
    EXPECT_EQ(f.form.lblLastEntry.text(), u"never"_s);
    EXPECT_EQ(f.form.lblEntries.text(), u"0"_s);
    f.form.lvShortcuts.mouseUp(2);
    EXPECT_EQ(defaultItem, &f.form.mnuGotoShortcut);
    EXPECT_EQ(captions, (QStringList{"&Goto Shortcut", "&Edit Shortcut", "&Remove Shortcut", "-",
                                     "&Copy to Profile"}));
    EXPECT_EQ(f.shell.opened, QStringList{"http://trip.example/"});

    // Over empty space: the selection stays, the menu still shows.
    f.form.lvShortcuts.mouseDown(2, -1);
    f.form.lvShortcuts.mouseUp(2);
    f.form.lvShortcuts.mouseDown(1, rowOf(1));
    EXPECT_EQ(f.form.lvShortcuts.selectedIndex(), rowOf(4));
    EXPECT_EQ(f.shell.popups, 2);
}

TEST_F(TestListCommands, TheAddButtonIsForPagesNotListedByTitle)
{
    struct Case
    {
        const char* title;
        bool enabled;
    } cases[] = {
        {"Brand New Contest", true},
        {"", false},
        {"   ", false},
        {"car contest", false},
        {"  CAR CONTEST  ", false},
        {"http://cars.example/", true},
        {"Trip ", false},
    };
    for (const Case& c : cases) {
        f.form.txtActive.setText(QString::fromLatin1(c.title));
        EXPECT_EQ(f.form.cmdAddShortcut.isEnabled(), c.enabled) << c.title;
        EXPECT_EQ(f.form.txtActive.toolTip(), QString::fromLatin1(c.title));
    }

    // Adding keeps the button as it was until the active page's title changes.
    f.form.txtActive.setText("Brand New Contest");
    f.editor.user = [](frmShortcut& form) { form.cmdOK.click(); };
    f.form.cmdAddShortcut.click();
    EXPECT_TRUE(f.form.cmdAddShortcut.isEnabled());
    f.form.txtActive.setText("brand new contest");
    EXPECT_FALSE(f.form.cmdAddShortcut.isEnabled());
}
} // namespace

// The list rebuilt from Shortcuts.ini: rows in number order, gaps skipped, state icons,
// column width, and the scroll position and selection kept by shortcut number.
#include "ReminderState.h"
#include "ShortcutFixture.h"

using namespace Qt::StringLiterals;

namespace {
using TestShortcutList = ShortcutFixture;

TEST_F(TestShortcutList, RowsComeInNumberOrderWithoutTheEmptyTitles)
{
    setMax(5);
    shortcut(1, "One");
    shortcut(2, "");
    shortcut(3, "Three");
    shortcut(4, "   ");
    shortcut(5, "  Five  ", "  http://five.example/  ");
    shortcut(6, "Beyond max");
    put(7, "Title", "No section for it"); // "Shortcut07" below is not "Shortcut7"
    f.ini.writeEntry(file(), "Shortcut05", "Title", "Leading zero");
    f.form.Form_Load();
    EXPECT_EQ(tags(), (QList<int>{1, 3, 5}));
    EXPECT_EQ(f.form.lvShortcuts.row(2).text, u"Five"_s);
    EXPECT_EQ(f.form.lvShortcuts.row(2).toolTip, u"http://five.example/"_s);
    EXPECT_TRUE(f.form.lvShortcuts.isVisible());
}

TEST_F(TestShortcutList, NoMaxOrNoFileIsAnEmptyList)
{
    f.form.Form_Load();
    EXPECT_EQ(f.form.lvShortcuts.count(), 0);
    shortcut(1, "One");
    f.form.shortcutList().RequeryShortcuts();
    EXPECT_EQ(f.form.lvShortcuts.count(), 0);
    setMax(1);
    f.form.shortcutList().RequeryShortcuts();
    EXPECT_EQ(f.form.lvShortcuts.count(), 1);
    EXPECT_TRUE(f.boxes.shown.empty());
}

TEST_F(TestShortcutList, IconsFollowRemindersVisitsAndEndDates)
{
    setMax(7);
    shortcut(1, "Never", {}, 0, "3/1/2005");
    shortcut(2, "Daily due", {}, 1, "3/1/2005");
    shortcut(3, "Weekly", {}, 2, "3/20/2005");
    shortcut(4, "Monthly", {}, 3, "3/1/2005");
    shortcut(5, "Expired", {}, 1, "3/1/2005", "3/9/2005");
    shortcut(6, "Soon", {}, 1, "soon", "later");
    shortcut(7, "Visited today", "http://visited.example/", 1, "3/1/2005");
    f.form.Form_Load();
    f.form.siteFiles().SetLastVisit("http://visited.example/");
    f.form.shortcutList().RequeryShortcuts();
    QList<int> icons;
    for (int i = 0; i < f.form.lvShortcuts.count(); ++i)
        icons << f.form.lvShortcuts.row(i).icon;
    EXPECT_EQ(icons, (QList<int>{1, 5, 3, 4, 6, 1, 2}));
    EXPECT_TRUE(f.boxes.shown.empty());
}

TEST_F(TestShortcutList, ARemindValueAboveThreeIsReportedAndTheRowStays)
{
    setMax(2);
    shortcut(1, "Odd", {}, 4, "3/1/2005");
    shortcut(2, "Fine", {}, 1, "3/1/2005");
    f.form.Form_Load();
    EXPECT_EQ(tags(), (QList<int>{1, 2}));
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_TRUE(f.boxes.shown[0].text.startsWith("An error occured in procedure DrawShortcut."));
    EXPECT_EQ(f.form.lvShortcuts.row(0).toolTip, u"http://site1.example/"_s);
    EXPECT_EQ(f.form.lvShortcuts.row(0).icon, 1);
}

TEST_F(TestShortcutList, ColumnIsHalfTheListOrTheWidestTitlePlusTwenty)
{
    f.form.lvShortcuts.setWidthTwips(2400);
    setMax(2);
    shortcut(1, "Short");
    f.form.Form_Load();
    EXPECT_EQ(f.form.lvShortcuts.columnWidthTwips(), 1200);
    shortcut(2, QString(15, 'W'));
    f.form.shortcutList().RequeryShortcuts();
    EXPECT_EQ(f.form.lvShortcuts.columnWidthTwips(), 1520);
}

TEST_F(TestShortcutList, ARebuildKeepsTheSelectionAndTopRowByNumber)
{
    setMax(40);
    for (int n = 1; n <= 40; ++n)
        shortcut(n, u"Contest %1"_s.arg(n));
    f.form.lvShortcuts.setVisibleRowCount(10);
    f.form.Form_Load();
    // Nothing selected: none after the rebuild, and the list ends at its last row.
    EXPECT_EQ(f.form.lvShortcuts.selectedIndex(), -1);
    EXPECT_EQ(f.form.lvShortcuts.topIndex(), 30);

    f.form.lvShortcuts.setTopIndex(rowOf(12));
    f.form.lvShortcuts.setSelectedIndex(rowOf(15));
    put(3, "Title", ""); // one row above goes away
    f.form.shortcutList().RequeryShortcuts();
    EXPECT_EQ(f.form.lvShortcuts.row(f.form.lvShortcuts.selectedIndex()).tag, 15);
    EXPECT_EQ(f.form.lvShortcuts.row(f.form.lvShortcuts.topIndex()).tag, 12);
    EXPECT_EQ(f.form.lblLastEntry.text(), u"never"_s);
    EXPECT_EQ(f.form.lblEntries.text(), u"0"_s);

    put(15, "Title", "");
    f.form.shortcutList().RequeryShortcuts();
    EXPECT_EQ(f.form.lvShortcuts.selectedIndex(), -1);
}

TEST_F(TestShortcutList, AVisitRedrawsTheFirstRowOfThatAddress)
{
    setMax(3);
    shortcut(1, "First", " http://PRIZES.example/enter.html ", 1, "3/1/2005");
    shortcut(2, "Twin", "http://prizes.example/enter.html", 1, "3/1/2005");
    shortcut(3, "Other", "http://other.example/", 1, "3/1/2005");
    f.form.Form_Load();
    ASSERT_EQ(f.form.lvShortcuts.row(0).icon, StateIcon::Due);
    f.form.lvShortcuts.setSelectedIndex(0);

    auto window = f.shellWindows.open();
    auto page = std::make_shared<ModelDocument>("http://prizes.example/enter.html");
    window->navigate(page);
    page->click();
    EXPECT_EQ(f.form.lvShortcuts.row(0).icon, StateIcon::Daily);
    EXPECT_EQ(f.form.lvShortcuts.row(1).icon, StateIcon::Due); // only the first is redrawn
    EXPECT_EQ(f.form.lblEntries.text(), u"1"_s);
    EXPECT_EQ(f.form.lblLastEntry.text(), u"3/10/2005 12:00 PM"_s);
}
} // namespace

namespace {
// In every locale a visit reads back as the day it was made, and the due icons come out the
// same: they are worked out from the stored visit, never from its display text.
TEST_F(TestShortcutList, VisitsAndDueIconsAreTheSameInEveryLocale)
{
    setMax(2);
    shortcut(1, "Daily", "http://daily.example/", 1, "3/1/2005");
    shortcut(2, "Weekly", "http://weekly.example/", 2, "3/1/2005");
    f.form.Form_Load();
    const auto icons = [&] {
        f.form.shortcutList().RequeryShortcuts();
        return QList<int>{f.form.lvShortcuts.row(0).icon, f.form.lvShortcuts.row(1).icon};
    };
    // US English, where month and day come in the stored order, is the reference.
    QMap<int, QList<int>> reference;
    for (const char* name : {"en_US", "en_GB", "fr_FR", "de_DE", "ja_JP"}) {
        QLocale::setDefault(QLocale(QString::fromLatin1(name)));
        for (int day = 1; day <= 12; ++day) {
            f.clock.current = QDateTime(QDate(2005, 3, day), QTime(9, 30));
            f.form.siteFiles().SetLastVisit("http://daily.example/");
            const auto visit = f.form.siteFiles().LastVisitDate("http://daily.example/");
            ASSERT_TRUE(visit) << name << " day " << day;
            EXPECT_EQ(visit->date(), QDate(2005, 3, day)) << name;
            // The day of the visit and the day after, as the list shows them.
            QList<int> shown = icons();
            f.clock.current = f.clock.current.addDays(1);
            shown += icons();
            if (!reference.contains(day))
                reference.insert(day, shown);
            EXPECT_EQ(shown, reference.value(day)) << name << " day " << day;
        }
    }
    // The reference itself: visited today is not due; a daily visit goes due the day after.
    EXPECT_EQ(reference.value(5), (QList<int>{2, 3, 5, 3}));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_TRUE(f.boxes.shown.empty());
}
} // namespace

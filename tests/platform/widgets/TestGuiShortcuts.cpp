// The shortcut list and editor as real widgets, offscreen: the dialog round trip, the list
// widget following the rebuilds, and a right click selecting the row under the pointer.
#include "FormFixture.h"
#include "MainWindow.h"
#include "ShortcutDialog.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
class TestGuiShortcuts : public ::testing::Test
{
protected:
    TestGuiShortcuts()
    {
        form.Form_Load();
        window.show();
        list = window.findChild<QTreeWidget*>("lvShortcuts");
    }
    // Does what the user does in the editor once it is up.
    void inEditor(const std::function<void(QDialog&)>& user)
    {
        QTimer::singleShot(0, [user] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            user(*dialog);
        });
    }
    static void type(QDialog& dialog, const char* box, const QString& text)
    {
        auto* edit = dialog.findChild<QLineEdit*>(box);
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    static void press(QDialog& dialog, const char* button)
    {
        QTest::mouseClick(dialog.findChild<QPushButton*>(button), Qt::LeftButton);
    }
    QString shortcutsKey(int number, const char* key)
    {
        return ini.readEntry(f.dataFile("zShortcuts.ini"), u"Shortcut%1"_s.arg(number), key)
            .value_or("<missing>");
    }

    SystemClock clock;
    ShortcutDialogDisplay editor;
    FormFixture f{&clock, &editor};
    FakeShell& shell = f.shell;
    IniFileStore& ini = f.ini;
    frmMain& form = f.form;
    MainWindow window{form};
    QTreeWidget* list = nullptr;
};

TEST_F(TestGuiShortcuts, AddAndEditThroughTheDialog)
{
    form.txtURL.setText("http://spring.example/");
    form.txtActive.setText(" Spring Sweepstakes ");
    QString shownTitle;
    inEditor([&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Add Shortcut"_s);
        EXPECT_TRUE(dialog.windowFlags() & Qt::WindowStaysOnTopHint);
        shownTitle = dialog.findChild<QLineEdit*>("txtTitle")->text();
        EXPECT_TRUE(dialog.findChild<QLineEdit*>("txtLastVisit")->isReadOnly());
        dialog.findChild<QComboBox*>("cboRemind")->setCurrentIndex(2);
        press(dialog, "cmdOK");
    });
    window.findChild<QPushButton*>("cmdAddShortcut")->click();
    EXPECT_EQ(shownTitle, u"Spring Sweepstakes"_s);
    ASSERT_EQ(list->topLevelItemCount(), 1);
    EXPECT_EQ(list->topLevelItem(0)->text(0), u"Spring Sweepstakes"_s);
    EXPECT_EQ(shortcutsKey(1, "Remind"), u"2"_s);
    EXPECT_FALSE(QApplication::activeModalWidget());

    // Edit through the menu: rename.
    list->setCurrentItem(list->topLevelItem(0));
    inEditor([&](QDialog& dialog) {
        type(dialog, "txtTitle", "Spring Sweeps 2");
        press(dialog, "cmdOK");
    });
    form.mnuEditShortcut.click();
    EXPECT_EQ(list->topLevelItem(0)->text(0), u"Spring Sweeps 2"_s);
    EXPECT_EQ(list->currentItem(), list->topLevelItem(0));
}

TEST_F(TestGuiShortcuts, TheListWidgetFollowsRebuildsAndRightClicks)
{
    const QString file = f.dataFile("zShortcuts.ini");
    ini.writeEntry(file, "Shortcuts", "Max", "30");
    for (int n = 1; n <= 30; ++n) {
        ini.writeEntry(file, u"Shortcut%1"_s.arg(n), "Title", u"Contest %1"_s.arg(n));
        ini.writeEntry(file, u"Shortcut%1"_s.arg(n), "URL", u"http://c%1.example/"_s.arg(n));
    }
    form.shortcutList().RequeryShortcuts();
    ASSERT_EQ(list->topLevelItemCount(), 30);
    EXPECT_EQ(list->topLevelItem(4)->toolTip(0), u"http://c5.example/"_s);
    EXPECT_FALSE(list->topLevelItem(0)->icon(0).isNull());

    // A right press selects the row under the pointer; the release shows the menu.
    list->scrollToItem(list->topLevelItem(0));
    const QRect row = list->visualItemRect(list->topLevelItem(2));
    QTest::mousePress(list->viewport(), Qt::RightButton, {}, row.center());
    QTest::mouseRelease(list->viewport(), Qt::RightButton, {}, row.center());
    EXPECT_EQ(list->currentItem(), list->topLevelItem(2));
    EXPECT_EQ(form.lvShortcuts.selectedIndex(), 2);
    EXPECT_EQ(shell.popups, 1);

    // Removing another row keeps the selection on shortcut 3.
    ini.writeEntry(file, "Shortcut1", "Title", "");
    form.shortcutList().RequeryShortcuts();
    ASSERT_EQ(list->topLevelItemCount(), 29);
    EXPECT_EQ(list->currentItem()->text(0), u"Contest 3"_s);

    // Enter on the selected row opens it; so does a double click on the empty part of the list.
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(shell.opened, QStringList{"http://c3.example/"});
    ini.writeEntry(file, "Shortcuts", "Max", "3");
    form.shortcutList().RequeryShortcuts();
    ASSERT_EQ(list->topLevelItemCount(), 2);
    list->setCurrentItem(list->topLevelItem(1));
    const QPoint empty(list->viewport()->width() / 2, list->viewport()->height() - 5);
    ASSERT_FALSE(list->indexAt(empty).isValid());
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, empty);
    EXPECT_EQ(shell.opened, (QStringList{"http://c3.example/", "http://c3.example/"}));
}
} // namespace

namespace {
// Typing into the middle of a text box leaves the cursor where the user is and keeps undo: the
// model's echo of what was typed is not written back into the box.
TEST_F(TestGuiShortcuts, TypingInTheMiddleOfATitleStaysThere)
{
    form.txtURL.setText("http://spring.example/");
    form.txtActive.setText("Spring Sweepstakes");
    QString typed;
    int cursor = -1;
    QString undone;
    QString dateForm;
    QLocale::setDefault(QLocale(u"en_GB"_s));
    inEditor([&](QDialog& dialog) {
        dateForm = dialog.findChild<QDateEdit*>("dtExpires")->displayFormat();
        auto* title = dialog.findChild<QLineEdit*>("txtTitle");
        title->setFocus();
        title->setCursorPosition(6); // "Spring| Sweepstakes"
        QTest::keyClicks(title, " Big");
        typed = title->text();
        cursor = title->cursorPosition();
        QTest::keyClick(title, Qt::Key_Z, Qt::ControlModifier);
        undone = title->text();
        press(dialog, "cmdCancel");
    });
    window.findChild<QPushButton*>("cmdAddShortcut")->click();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(dateForm, u"dd/MM/yyyy"_s); // the user's locale, not the files' form
    EXPECT_EQ(typed, u"Spring Big Sweepstakes"_s);
    EXPECT_EQ(cursor, 10);
    EXPECT_NE(undone, typed); // the typing can be taken back
    EXPECT_TRUE(u"Spring Big Sweepstakes"_s.startsWith(undone.left(6)));
}
} // namespace

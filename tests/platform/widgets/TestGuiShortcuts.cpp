// The shortcut list and editor as real widgets, offscreen: the dialog round trip, the list
// widget following the rebuilds, and a right click selecting the row under the pointer.
#include "FakeShell.h"
#include "IniFileStore.h"
#include "MainWindow.h"
#include "ModelBrowser.h"
#include "ShortcutDialog.h"
#include "frmMain.h"

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

namespace {
class TestGuiShortcuts : public ::testing::Test
{
protected:
    TestGuiShortcuts()
    {
        shell.appDataFolder = dir.path();
        shell.tempFolder = dir.path();
        shell.programFolder = dir.path();
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
        return ini
            .readEntry(dir.path() + "/Tolvane Data/zShortcuts.ini",
                       QStringLiteral("Shortcut%1").arg(number), key)
            .value_or("<missing>");
    }

    QTemporaryDir dir;
    FakeShell shell;
    FakeSettings settings;
    FakeMessageBoxes boxes;
    SystemClock clock;
    IniFileStore ini;
    ModelShell shellWindows;
    ImmediatePump pump;
    FakeTextMetrics metrics;
    ShortcutDialogDisplay editor;
    FakeProfilesDisplay profilesEditor;
    FakeDocking docking;
    frmMain form{{shell, settings, boxes, clock, ini, shellWindows, pump, metrics, editor,
                  profilesEditor, docking}};
    MainWindow window{form};
    QTreeWidget* list = nullptr;
};

TEST_F(TestGuiShortcuts, AddEditAndCancelThroughTheDialog)
{
    form.txtURL.setText("http://spring.example/");
    form.txtActive.setText(" Spring Sweepstakes ");
    QString shownTitle;
    inEditor([&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Add Shortcut"));
        EXPECT_TRUE(dialog.windowFlags() & Qt::WindowStaysOnTopHint);
        shownTitle = dialog.findChild<QLineEdit*>("txtTitle")->text();
        EXPECT_TRUE(dialog.findChild<QLineEdit*>("txtLastVisit")->isReadOnly());
        dialog.findChild<QComboBox*>("cboRemind")->setCurrentIndex(2);
        press(dialog, "cmdOK");
    });
    window.findChild<QPushButton*>("cmdAddShortcut")->click();
    EXPECT_EQ(shownTitle, QStringLiteral("Spring Sweepstakes"));
    ASSERT_EQ(list->topLevelItemCount(), 1);
    EXPECT_EQ(list->topLevelItem(0)->text(0), QStringLiteral("Spring Sweepstakes"));
    EXPECT_EQ(shortcutsKey(1, "Remind"), QStringLiteral("2"));
    EXPECT_FALSE(QApplication::activeModalWidget());

    // Edit through the menu: rename.
    list->setCurrentItem(list->topLevelItem(0));
    inEditor([&](QDialog& dialog) {
        type(dialog, "txtTitle", "Spring Sweeps 2");
        press(dialog, "cmdOK");
    });
    form.mnuEditShortcut.click();
    EXPECT_EQ(list->topLevelItem(0)->text(0), QStringLiteral("Spring Sweeps 2"));
    EXPECT_EQ(list->currentItem(), list->topLevelItem(0));

    // Cancel after typing writes nothing.
    inEditor([&](QDialog& dialog) {
        type(dialog, "txtTitle", "Never saved");
        press(dialog, "cmdCancel");
    });
    form.mnuEditShortcut.click();
    EXPECT_EQ(shortcutsKey(1, "Title"), QStringLiteral("Spring Sweeps 2"));
}

TEST_F(TestGuiShortcuts, TheListWidgetFollowsRebuildsAndRightClicks)
{
    const QString file = dir.path() + "/Tolvane Data/zShortcuts.ini";
    ini.writeEntry(file, "Shortcuts", "Max", "30");
    for (int n = 1; n <= 30; ++n) {
        ini.writeEntry(file, QStringLiteral("Shortcut%1").arg(n), "Title",
                       QStringLiteral("Contest %1").arg(n));
        ini.writeEntry(file, QStringLiteral("Shortcut%1").arg(n), "URL",
                       QStringLiteral("http://c%1.example/").arg(n));
    }
    form.shortcutList().RequeryShortcuts();
    ASSERT_EQ(list->topLevelItemCount(), 30);
    EXPECT_EQ(list->topLevelItem(4)->toolTip(0), QStringLiteral("http://c5.example/"));
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
    EXPECT_EQ(list->currentItem()->text(0), QStringLiteral("Contest 3"));

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
    QLocale::setDefault(QLocale(QStringLiteral("en_GB")));
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
    EXPECT_EQ(dateForm, QStringLiteral("dd/MM/yyyy")); // the user's locale, not the files' form
    EXPECT_EQ(typed, QStringLiteral("Spring Big Sweepstakes"));
    EXPECT_EQ(cursor, 10);
    EXPECT_NE(undone, typed); // the typing can be taken back
    EXPECT_TRUE(QStringLiteral("Spring Big Sweepstakes").startsWith(undone.left(6)));
}
} // namespace

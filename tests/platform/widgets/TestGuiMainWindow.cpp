// The bar as real widgets, offscreen: every control with its name, text and kind, and the
// user's clicks reaching the form.
#include "DateText.h"
#include "FormFixture.h"
#include "HelpWindow.h"
#include "MainWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace {
class TestGuiMainWindow : public ::testing::Test
{
protected:
    TestGuiMainWindow()
    {
        QFile help(f.shell.programFolder + QStringLiteral("/Tolvane.hlp"));
        help.open(QIODevice::WriteOnly);
        help.write("<html><body><h2>Tolvane</h2><p>Pause stops remembering.</p></body></html>");
    }
    template <typename T> T* widget(const char* name)
    {
        return window.findChild<T*>(QString::fromLatin1(name));
    }

    FormFixture f;
    MainWindow window{f.form};
};

TEST_F(TestGuiMainWindow, EveryControlIsThereWithItsTextAndKind)
{
    struct Case
    {
        const char* name;
        const char* text;
    } labels[] =
        {
            {"lblHelp", "Help - Press F1"}, {"Label(0)", "Active web page"},
            {"Label(1)", "&Shortcuts:"},    {"Label(2)", "Current Profile"},
            {"Label1", "Last Visit"},       {"lblLastEntry", "Last Entry"},
            {"Label3", "Visits"},           {"lblEntries", "1"},
        },
      buttons[] = {
          {"cmdProfiles", "Edit..."},
          {"cmdAddShortcut", "Add active page to shortcuts"},
          {"cmdPause", "&Pause"},
          {"cmdExit", "E&xit"},
      };
    for (const Case& c : labels) {
        auto* label = widget<QLabel>(c.name);
        ASSERT_NE(label, nullptr) << c.name;
        EXPECT_EQ(label->text(), QString::fromUtf8(c.text)) << c.name;
    }
    for (const Case& c : buttons) {
        auto* button = widget<QPushButton>(c.name);
        ASSERT_NE(button, nullptr) << c.name;
        EXPECT_EQ(button->text(), QString::fromUtf8(c.text)) << c.name;
    }
    EXPECT_FALSE(widget<QPushButton>("cmdAddShortcut")->isEnabled());
    EXPECT_NE(widget<QComboBox>("cboProfiles"), nullptr);
    EXPECT_NE(widget<QTreeWidget>("lvShortcuts"), nullptr);
    EXPECT_NE(widget<QLineEdit>("txtActive"), nullptr);
    EXPECT_TRUE(widget<QLineEdit>("txtURL")->isHidden());
    EXPECT_TRUE(widget<QLabel>("imgCookie")->isHidden());
    for (const char* frame : {"Frame(0)", "Frame(1)", "Frame(2)", "Frame(3)"})
        EXPECT_NE(widget<QFrame>(frame), nullptr) << frame;
    auto* autoJump = widget<QCheckBox>("chkAutoJump");
    ASSERT_NE(autoJump, nullptr);
    EXPECT_EQ(autoJump->text(), QStringLiteral("Auto-jump to first field"));
    EXPECT_EQ(
        autoJump->toolTip(),
        QStringLiteral("When checked, web pages will automatically show the first input box."));
    EXPECT_TRUE(widget<QLabel>("lblHelp")->font().bold());
}

// Tahoma is seldom installed; the font standing in for it is wider. Every caption must still be
// whole, and the values below the list must show a whole date in any locale.
TEST_F(TestGuiMainWindow, EveryCaptionAndValueShowsWhole)
{
    window.show();
    const auto shownWidth = [](const QAbstractButton* button) {
        return button->fontMetrics().horizontalAdvance(
            QString(button->text()).remove(QLatin1Char('&')));
    };
    const auto checkAll = [&](const std::string& when) {
        for (QLabel* label : window.findChildren<QLabel*>()) {
            if (label->text().isEmpty())
                continue;
            EXPECT_LE(label->sizeHint().width(), label->width())
                << label->objectName().toStdString() << when;
            EXPECT_LE(label->fontMetrics().height(), label->height())
                << label->objectName().toStdString();
        }
        for (QPushButton* button : window.findChildren<QPushButton*>())
            EXPECT_LT(shownWidth(button), button->width())
                << button->objectName().toStdString() << when;
        auto* autoJump = widget<QCheckBox>("chkAutoJump");
        EXPECT_LE(autoJump->sizeHint().width(), autoJump->width()) << when;
    };
    checkAll(" at start");
    const QDateTime late(QDate(2026, 12, 28), QTime(12, 59));
    for (const char* locale : {"en_US", "en_GB", "de_DE", "ja_JP"}) {
        QLocale::setDefault(QLocale(QString::fromLatin1(locale)));
        f.form.lblLastEntry.setText(DateText::display(late));
        f.form.lblEntries.setText(QStringLiteral("12345"));
        checkAll(std::string(" with a visit shown in ") + locale);
    }
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    // Shrinking stops where the text would no longer be readable.
    EXPECT_GE(window.font().pointSizeF(), 6.5);
}

TEST_F(TestGuiMainWindow, LoadShowsCaptionSettingAndStatus)
{
    f.settings.values.insert(QStringLiteral("Settings/Autojump"), QStringLiteral("0"));
    ASSERT_EQ(f.form.Form_Load(), frmMain::LoadResult::Show);
    window.show();
    EXPECT_TRUE(window.windowTitle().startsWith(QStringLiteral("Tolvane v")));
    EXPECT_FALSE(widget<QCheckBox>("chkAutoJump")->isChecked());
    EXPECT_EQ(widget<QLabel>("StatusBar")->text(), QStringLiteral(" updating windows"));
    QTest::mouseClick(widget<QCheckBox>("chkAutoJump"), Qt::LeftButton);
    EXPECT_EQ(f.form.chkAutoJump.value(), 1);
}

TEST_F(TestGuiMainWindow, StatusLineClearsItselfOnTheRealTimer)
{
    SystemClock realClock;
    FakeShell shell;
    FakeSettings settings;
    FakeMessageBoxes boxes;
    IniFileStore ini;
    ModelShell shellWindows;
    ImmediatePump pump;
    FakeTextMetrics metrics;
    FakeEditorDisplay editor;
    FakeProfilesDisplay profilesEditor;
    FakeDocking docking;
    frmMain form({shell, settings, boxes, realClock, ini, shellWindows, pump, metrics, editor,
                  profilesEditor, docking});
    MainWindow live(form);
    form.ShowStatus(QStringLiteral("Filling"));
    auto* status = live.findChild<QLabel*>(QStringLiteral("StatusBar"));
    EXPECT_EQ(status->text(), QStringLiteral(" Filling"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return status->text().isEmpty(); }, 3000));
}

TEST_F(TestGuiMainWindow, ClicksReachTheFormAndHelpOpens)
{
    f.form.Form_Load();
    window.show();
    QTest::mouseClick(widget<QPushButton>("cmdPause"), Qt::LeftButton);
    EXPECT_TRUE(f.form.isPaused());
    EXPECT_EQ(widget<QPushButton>("cmdPause")->text(), QStringLiteral("&Resume"));

    // The label sends F1 to the program (through the shell double here, by hand).
    QTest::mouseClick(widget<QLabel>("lblHelp"), Qt::LeftButton);
    EXPECT_EQ(f.shell.keysSent, QStringList{QStringLiteral("{F1}")});
    QTest::keyClick(&window, Qt::Key_F1);
    ASSERT_NE(window.helpWindow(), nullptr);
    EXPECT_TRUE(window.helpWindow()->isVisible());
    EXPECT_TRUE(
        window.helpWindow()->toPlainText().contains(QStringLiteral("Pause stops remembering")));

    QTest::mouseClick(widget<QPushButton>("cmdExit"), Qt::LeftButton);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(f.settings.values.value(QStringLiteral("Settings/Autojump")), QStringLiteral("1"));
}

TEST_F(TestGuiMainWindow, MissingHelpFileIsSaidInTheHelpWindow)
{
    QFile::remove(f.shell.programFolder + QStringLiteral("/Tolvane.hlp"));
    f.form.Form_Load();
    window.openHelp();
    EXPECT_TRUE(window.helpWindow()->toPlainText().contains(QStringLiteral("could not be opened")));
}
} // namespace

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

using namespace Qt::StringLiterals;

namespace {
class TestGuiMainWindow : public ::testing::Test
{
protected:
    TestGuiMainWindow()
    {
        QFile help(f.shell.programFolder + u"/Tolvane.hlp"_s);
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
        f.form.lblEntries.setText(u"12345"_s);
        checkAll(std::string(" with a visit shown in ") + locale);
    }
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    // Shrinking stops where the text would no longer be readable.
    EXPECT_GE(window.font().pointSizeF(), 6.5);
}

TEST_F(TestGuiMainWindow, StatusLineClearsItselfOnTheRealTimer)
{
    SystemClock realClock;
    FormFixture real(&realClock);
    frmMain& form = real.form;
    MainWindow live(form);
    form.ShowStatus(u"Filling"_s);
    auto* status = live.findChild<QLabel*>(u"StatusBar"_s);
    EXPECT_EQ(status->text(), u" Filling"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return status->text().isEmpty(); }, 3000));
}

TEST_F(TestGuiMainWindow, ClicksReachTheFormAndHelpOpens)
{
    f.settings.values.insert(u"Settings/Autojump"_s, u"0"_s);
    f.form.Form_Load();
    window.show();
    EXPECT_EQ(widget<QLabel>("StatusBar")->text(), u" updating windows"_s);
    QTest::mouseClick(widget<QCheckBox>("chkAutoJump"), Qt::LeftButton);
    EXPECT_EQ(f.form.chkAutoJump.value(), 1);
    for (const char* caption : {"&Resume", "&Pause"}) {
        QTest::mouseClick(widget<QPushButton>("cmdPause"), Qt::LeftButton);
        EXPECT_EQ(f.form.isPaused(), caption == std::string("&Resume"));
        EXPECT_EQ(widget<QPushButton>("cmdPause")->text(), QLatin1String(caption));
    }

    // The label sends F1 to the program (through the shell double here, by hand).
    QTest::mouseClick(widget<QLabel>("lblHelp"), Qt::LeftButton);
    EXPECT_EQ(f.shell.keysSent, QStringList{u"{F1}"_s});
    EXPECT_EQ(f.form.HelpFile(), f.shell.programFolder + u"/Tolvane.hlp"_s);
    QTest::keyClick(&window, Qt::Key_F1);
    ASSERT_NE(window.helpWindow(), nullptr);
    EXPECT_TRUE(window.helpWindow()->isVisible());
    EXPECT_TRUE(window.helpWindow()->toPlainText().contains(u"Pause stops remembering"_s));

    QTest::mouseClick(widget<QPushButton>("cmdExit"), Qt::LeftButton);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(f.settings.values.value(u"Settings/Autojump"_s), u"1"_s);
}

TEST_F(TestGuiMainWindow, MissingHelpFileIsSaidInTheHelpWindow)
{
    QFile::remove(f.shell.programFolder + u"/Tolvane.hlp"_s);
    f.form.Form_Load();
    window.openHelp();
    EXPECT_TRUE(window.helpWindow()->toPlainText().contains(u"could not be opened"_s));
}
} // namespace

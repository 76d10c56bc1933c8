// The main bar's own behaviour: status line timing, error report, pause, settings, exit, help.
#include "FormFixture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {
TEST(StatusLine, ShowsOneBlankAndTheTextTrimmedOfSpaces)
{
    const std::pair<QString, QString> cases[] = {
        {QStringLiteral("  x "), QStringLiteral(" x")},
        {QString(), QStringLiteral(" ")},
        {QStringLiteral("Loading page"), QStringLiteral(" Loading page")},
        {QStringLiteral("\tTab "), QStringLiteral(" \tTab")},
    };
    FormFixture f;
    for (const auto& [text, shown] : cases) {
        f.form.ShowStatus(text);
        EXPECT_EQ(f.form.StatusBar.text(), shown);
        EXPECT_TRUE(f.form.TimerClearStatus.isEnabled());
    }
}

// Ticks every 500 ms from the moment a status text is set; the clearing tick must come between
// 1.0 and 1.5 seconds after the last text.
TEST(StatusLine, ClearsBetweenOneAndOneAndAHalfSecondsAfterTheLastText)
{
    struct Case
    {
        const char* name;
        QTime start;
        qint64 tickPhaseMs;    // first tick after the text
        qint64 secondTextAtMs; // -1: no second text
    } cases[] = {
        {"single text", QTime(12, 0, 0), 500, -1},
        {"tick soon after", QTime(12, 0, 0), 10, -1},
        {"second text 0.8 s later", QTime(9, 30, 0), 500, 800},
        {"just before midnight", QTime(23, 59, 59, 600), 500, -1},
        {"second text across midnight", QTime(23, 59, 59), 250, 800},
    };
    for (const Case& c : cases) {
        FormFixture f;
        f.clock.current = QDateTime(QDate(2026, 11, 23), c.start);
        f.form.ShowStatus(QStringLiteral("first"));
        qint64 now = 0;
        qint64 lastText = 0;
        qint64 nextTick = c.tickPhaseMs;
        qint64 clearedAt = -1;
        while (now < 5000 && clearedAt < 0) {
            const qint64 next =
                (c.secondTextAtMs > now) ? std::min(nextTick, c.secondTextAtMs) : nextTick;
            f.clock.advanceMs(next - now);
            now = next;
            if (now == c.secondTextAtMs) {
                f.form.ShowStatus(QStringLiteral("second"));
                lastText = now;
                continue;
            }
            nextTick += 500;
            if (f.form.TimerClearStatus.isEnabled())
                f.form.TimerClearStatus_Timer();
            if (f.form.StatusBar.text().isEmpty())
                clearedAt = now;
        }
        ASSERT_GE(clearedAt, 0) << c.name;
        EXPECT_GE(clearedAt - lastText, 1000) << c.name;
        EXPECT_LE(clearedAt - lastText, 1500) << c.name;
        EXPECT_FALSE(f.form.TimerClearStatus.isEnabled()) << c.name;
    }
}

TEST(ErrorReport, ShowsTheFixedMessageWithoutIcon)
{
    FormFixture f;
    f.form.ReportError(AppError(5, QStringLiteral("Invalid procedure call or argument")),
                       QStringLiteral("GetValue"));
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_EQ(
        f.boxes.shown[0].text,
        QStringLiteral("An error occured in procedure GetValue.\r\n\r\n5 Invalid procedure call "
                       "or argument"));
    EXPECT_EQ(f.boxes.shown[0].icon, MsgIcon::None);
    EXPECT_EQ(f.boxes.shown[0].buttons, MsgButtons::Ok);
    EXPECT_EQ(f.boxes.shown[0].title, QStringLiteral("Tolvane"));
}

TEST(Pause, TogglesTheFlagAndTheCaption)
{
    FormFixture f;
    EXPECT_FALSE(f.form.isPaused());
    f.form.cmdPause.click();
    EXPECT_TRUE(f.form.isPaused());
    EXPECT_EQ(f.form.cmdPause.text(), QStringLiteral("&Resume"));
    f.form.cmdPause.click();
    EXPECT_FALSE(f.form.isPaused());
    EXPECT_EQ(f.form.cmdPause.text(), QStringLiteral("&Pause"));
}

TEST(Settings, AutojumpIsReadAsANumberAndBothAreSavedAtUnload)
{
    struct Case
    {
        std::optional<QString> stored;
        int checked;
    } cases[] = {
        {std::nullopt, 1},          {QStringLiteral("1"), 1},   {QStringLiteral("0"), 0},
        {QStringLiteral("abc"), 0}, {QStringLiteral(" 1x"), 1}, {QString(), 0},
    };
    for (const Case& c : cases) {
        FormFixture f;
        if (c.stored)
            f.settings.values.insert(QStringLiteral("Settings/Autojump"), *c.stored);
        f.form.Form_Load();
        EXPECT_EQ(f.form.chkAutoJump.value(), c.checked)
            << c.stored.value_or("<none>").toStdString();
        f.form.Form_Unload();
        EXPECT_EQ(f.settings.values.value(QStringLiteral("Settings/Autojump")),
                  QString::number(c.checked));
        EXPECT_EQ(f.settings.values.value(QStringLiteral("Settings/Profile")), QStringLiteral("0"));
    }
}

TEST(Settings, UnloadGoesOnWhenTheStoreFails)
{
    FormFixture f;
    f.form.Form_Load();
    f.settings.failingKeys = {QStringLiteral("Autojump")};
    f.form.Form_Unload();
    EXPECT_TRUE(f.boxes.shown.empty());
    EXPECT_FALSE(f.settings.values.contains(QStringLiteral("Settings/Autojump")));
    EXPECT_EQ(f.settings.values.value(QStringLiteral("Settings/Profile")), QStringLiteral("0"));

    // With no profile selected, -1 is saved.
    f.form.cboProfiles.setListIndex(-1);
    f.form.Form_Unload();
    EXPECT_EQ(f.settings.values.value(QStringLiteral("Settings/Profile")), QStringLiteral("-1"));
}

TEST(Commands, ExitAsksToUnloadAndHelpSendsF1)
{
    FormFixture f;
    f.form.Form_Load();
    QSignalSpy unload(&f.form, &frmMain::unloadRequested);
    f.form.cmdExit.click();
    EXPECT_EQ(unload.count(), 1);
    f.form.lblHelp.click();
    EXPECT_EQ(f.shell.keysSent, QStringList{QStringLiteral("{F1}")});
    EXPECT_EQ(f.form.HelpFile(), f.shell.programFolder + QStringLiteral("/Tolvane.hlp"));
}

TEST(Caption, IsTheNameAndThreePartVersion)
{
    FormFixture f;
    f.form.Form_Load();
    EXPECT_TRUE(f.form.window.text().contains(
        QRegularExpression(QStringLiteral("^Tolvane v\\d+\\.\\d+\\.\\d+$"))))
        << f.form.window.text().toStdString();
}

TEST(GetProfilePrefix, FollowsTheSelectedProfileUnlessAnIndexIsGiven)
{
    FormFixture f;
    EXPECT_EQ(f.form.GetProfilePrefix(), QStringLiteral("z"));
    f.form.cboProfiles.setItems({"A", "B", "C", "D", "E"});
    f.form.cboProfiles.setListIndex(2);
    EXPECT_EQ(f.form.GetProfilePrefix(-1), QStringLiteral("w"));
    EXPECT_EQ(f.form.GetProfilePrefix(4), QStringLiteral("y"));
    EXPECT_EQ(f.form.GetProfilePrefix(5), QString());
}
} // namespace

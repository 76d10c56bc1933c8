// The main bar's own behaviour: status line timing, error report, pause, settings, exit, help.
#include "FormFixture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
TEST(StatusLine, ShowsOneBlankAndTheTextTrimmedOfSpaces)
{
    const std::pair<QString, QString> cases[] = {
        {u"  x "_s, u" x"_s},
        {QString(), u" "_s},
        {u"Loading page"_s, u" Loading page"_s},
        {u"\tTab "_s, u" \tTab"_s},
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
        f.form.ShowStatus(u"first"_s);
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
                f.form.ShowStatus(u"second"_s);
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

TEST(Settings, AutojumpIsReadAsANumberAndBothAreSavedAtUnload)
{
    struct Case
    {
        std::optional<QString> stored;
        int checked;
    } cases[] = {
        {std::nullopt, 1}, {u"1"_s, 1}, {u"0"_s, 0}, {u"abc"_s, 0}, {u" 1x"_s, 1}, {QString(), 0},
    };
    for (const Case& c : cases) {
        FormFixture f;
        if (c.stored)
            f.settings.values.insert(u"Settings/Autojump"_s, *c.stored);
        f.form.Form_Load();
        EXPECT_EQ(f.form.chkAutoJump.value(), c.checked)
            << c.stored.value_or("<none>").toStdString();
        f.form.Form_Unload();
        EXPECT_EQ(f.settings.values.value(u"Settings/Autojump"_s), QString::number(c.checked));
        EXPECT_EQ(f.settings.values.value(u"Settings/Profile"_s), u"0"_s);
    }
}

TEST(Settings, UnloadGoesOnWhenTheStoreFails)
{
    FormFixture f;
    f.form.Form_Load();
    f.settings.failingKeys = {u"Autojump"_s};
    f.form.Form_Unload();
    EXPECT_TRUE(f.boxes.shown.empty());
    EXPECT_FALSE(f.settings.values.contains(u"Settings/Autojump"_s));
    EXPECT_EQ(f.settings.values.value(u"Settings/Profile"_s), u"0"_s);

    // With no profile selected, -1 is saved.
    f.form.cboProfiles.setListIndex(-1);
    f.form.Form_Unload();
    EXPECT_EQ(f.settings.values.value(u"Settings/Profile"_s), u"-1"_s);
}

TEST(GetProfilePrefix, FollowsTheSelectedProfileUnlessAnIndexIsGiven)
{
    FormFixture f;
    EXPECT_EQ(f.form.GetProfilePrefix(), u"z"_s);
    f.form.cboProfiles.setItems({"A", "B", "C", "D", "E"});
    f.form.cboProfiles.setListIndex(2);
    EXPECT_EQ(f.form.GetProfilePrefix(-1), u"w"_s);
    EXPECT_EQ(f.form.GetProfilePrefix(4), u"y"_s);
    EXPECT_EQ(f.form.GetProfilePrefix(5), QString());
}
} // namespace

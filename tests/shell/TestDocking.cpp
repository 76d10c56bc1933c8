// The bar docks at the right edge when first shown and after a restore, gives the strip back
// when minimized or unloaded, and stretches its list to the window's height.
#include "FormFixture.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
class TestDocking : public ::testing::Test
{
protected:
    TestDocking() { f.form.Form_Load(); }
    FormFixture f;
    FakeDocking& dock = f.docking;
};

TEST_F(TestDocking, FirstShowTakesTheRightEdgeAtTheBarsWidth)
{
    f.form.Form_Resize();
    EXPECT_EQ(dock.calls,
              (QStringList{"hide", "SHAppBarMessage 1", "SHAppBarMessage 0", "SHAppBarMessage 3",
                           "SetWindowPos 1105,0 175x760", "show"}));
    EXPECT_EQ(dock.windowTwips, QRect(1105 * 15, 0, 175 * 15, 760 * 15));
    EXPECT_EQ(dock.SystemWorkArea().right, 1105);
    EXPECT_TRUE(f.form.isDocked());

    // A plain resize afterwards docks nothing again.
    dock.calls.clear();
    f.form.Form_Resize();
    EXPECT_TRUE(dock.calls.isEmpty());
}

TEST_F(TestDocking, MinimizeGivesTheStripBackAndRestoreDocksAgain)
{
    f.form.Form_Resize();
    dock.minimized = true;
    dock.calls.clear();
    f.form.Form_Resize();
    EXPECT_EQ(dock.calls, QStringList{"SHAppBarMessage 1"});
    EXPECT_EQ(dock.SystemWorkArea().right, 1280);
    EXPECT_FALSE(f.form.isDocked());

    dock.minimized = false;
    f.form.Form_Resize();
    EXPECT_EQ(dock.SystemWorkArea().right, 1105);
    EXPECT_TRUE(f.form.isDocked());

    f.form.Form_Unload();
    EXPECT_EQ(dock.SystemWorkArea().right, 1280);
}

TEST_F(TestDocking, TheListFillsTheInnerHeight)
{
    const std::pair<int, int> cases[] = {
        {6420, 2040}, {7000, 2620}, {4380, 0}, {4379, 0}, {3000, 0}, {12000, 7620},
    };
    for (const auto& [inner, listHeight] : cases) {
        dock.innerHeight = inner;
        f.form.Form_Resize();
        EXPECT_EQ(f.form.lvShortcuts.geometry().height(), listHeight) << inner;
        EXPECT_EQ(f.form.lvShortcuts.geometry().top(), 2760);
    }
}

TEST_F(TestDocking, AFailedDockIsReportedAndNotRetried)
{
    dock.failNext = true;
    f.form.Form_Resize();
    ASSERT_EQ(f.boxes.shown.size(), 1u);
    EXPECT_TRUE(
        f.boxes.shown[0].text.startsWith("An error occured in procedure frmMain.Form_Resize."));
    dock.calls.clear();
    f.form.Form_Resize();
    EXPECT_TRUE(dock.calls.isEmpty());
}

TEST_F(TestDocking, ADesktopThatNeverReservesStillGetsTheBarPlacedAndSaysSoOnce)
{
    dock.reserves = false;
    dock.note = u"no strip"_s;
    f.form.Form_Resize();
    EXPECT_TRUE(dock.calls.contains("SetWindowPos 1105,0 175x800"));
    EXPECT_EQ(dock.calls.last(), u"show"_s);
    EXPECT_EQ(f.form.StatusBar.text(), u" no strip"_s);
    f.form.ShowStatus({});
    dock.minimized = true;
    f.form.Form_Resize();
    dock.minimized = false;
    f.form.Form_Resize();
    EXPECT_EQ(f.form.StatusBar.text(), u" "_s);
}

// Resize events that arrive while docking lets events run return at once.
TEST_F(TestDocking, ResizesDuringDockingDoNotReenter)
{
    dock.onDoEvents = [this] { f.form.Form_Resize(); };
    f.form.Form_Resize();
    EXPECT_EQ(dock.calls.count("SHAppBarMessage 0"), 1);
    EXPECT_EQ(dock.calls.count("hide"), 1);
}
} // namespace

// The real settings store keeps values across instances and gives defaults for absent keys.
#include "AppError.h"
#include "QtSettingsStore.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
TEST(QtSettingsStore, RoundTripsThroughTheFile)
{
    QTemporaryDir dir;
    const QString file = dir.path() + u"/Tolvane.conf"_s;
    {
        QtSettingsStore store(file);
        EXPECT_EQ(store.GetSetting(u"Settings"_s, u"Autojump"_s, u"1"_s), u"1"_s);
        store.SaveSetting(u"Settings"_s, u"Autojump"_s, u"0"_s);
        store.SaveSetting(u"Settings"_s, u"Profile"_s, u"-1"_s);
    }
    QtSettingsStore again(file);
    EXPECT_EQ(again.GetSetting(u"Settings"_s, u"Autojump"_s, u"1"_s), u"0"_s);
    EXPECT_EQ(again.GetSetting(u"Settings"_s, u"Profile"_s, u"0"_s), u"-1"_s);
}

TEST(QtSettingsStore, UnwritableStoreIsAnError)
{
    QTemporaryDir dir;
    QtSettingsStore store(dir.path() + u"/missing/folder/"_s + QString(300, QLatin1Char('x')));
    EXPECT_THROW(store.SaveSetting(u"Settings"_s, u"Profile"_s, u"2"_s), AppError);
}
} // namespace

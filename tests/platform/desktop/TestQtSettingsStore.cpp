// The real settings store keeps values across instances and gives defaults for absent keys.
#include "AppError.h"
#include "QtSettingsStore.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
TEST(QtSettingsStore, RoundTripsThroughTheFile)
{
    QTemporaryDir dir;
    const QString file = dir.path() + QStringLiteral("/Tolvane.conf");
    {
        QtSettingsStore store(file);
        EXPECT_EQ(store.GetSetting(QStringLiteral("Settings"), QStringLiteral("Autojump"),
                                   QStringLiteral("1")),
                  QStringLiteral("1"));
        store.SaveSetting(QStringLiteral("Settings"), QStringLiteral("Autojump"),
                          QStringLiteral("0"));
        store.SaveSetting(QStringLiteral("Settings"), QStringLiteral("Profile"),
                          QStringLiteral("-1"));
    }
    QtSettingsStore again(file);
    EXPECT_EQ(again.GetSetting(QStringLiteral("Settings"), QStringLiteral("Autojump"),
                               QStringLiteral("1")),
              QStringLiteral("0"));
    EXPECT_EQ(again.GetSetting(QStringLiteral("Settings"), QStringLiteral("Profile"),
                               QStringLiteral("0")),
              QStringLiteral("-1"));
}

TEST(QtSettingsStore, UnwritableStoreIsAnError)
{
    QTemporaryDir dir;
    QtSettingsStore store(dir.path() + QStringLiteral("/missing/folder/") +
                          QString(300, QLatin1Char('x')));
    EXPECT_THROW(store.SaveSetting(QStringLiteral("Settings"), QStringLiteral("Profile"),
                                   QStringLiteral("2")),
                 AppError);
}
} // namespace

// Firefox started as Tolvane starts it: a profile of its own that starts quietly, BiDi on a port
// the browser chooses, closed as its own Quit closes it; and browsers that cannot run.
#include "AppError.h"
#include "FirefoxProcess.h"
#include "RemoteConnection.h"

#include <QFile>
#include <QJsonArray>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
TEST(FirefoxProcess, StartsWithItsOwnProfileAnswersAndIsGoneForTheNextStart)
{
    const QString firefox = QStandardPaths::findExecutable(QStringLiteral("firefox-esr"));
    if (firefox.isEmpty())
        GTEST_SKIP() << "firefox-esr is not installed";
    QTemporaryDir profile;
    // A port name left behind by a crashed browser is not taken for the new one's.
    QFile stale(profile.path() + QStringLiteral("/WebDriverBiDiServer.json"));
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write(R"({"ws_host": "127.0.0.1", "ws_port": 1})");
    stale.close();
    // The second start finds the profile free: the first browser has ended.
    for (int start = 0; start < 2; ++start) {
        auto browser = FirefoxProcess::start(firefox, profile.path(), {QStringLiteral("--headless")});
        const QJsonArray contexts = browser->connection().call(QStringLiteral("browsingContext.getTree")).value("contexts").toArray();
        EXPECT_FALSE(contexts.isEmpty()) << start;
        browser->close();
    }
    QFile prefs(profile.path() + QStringLiteral("/user.js"));
    ASSERT_TRUE(prefs.open(QIODevice::ReadOnly));
    EXPECT_TRUE(prefs.readAll().contains(R"(user_pref("browser.startup.page", 3);)"));
}

TEST(FirefoxProcess, ABrowserThatCannotRunSaysWhy)
{
    QTemporaryDir bin;
    const QString endsAtOnce = bin.path() + QStringLiteral("/firefox");
    QFile script(endsAtOnce);
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nexit 4\n");
    script.close();
    script.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    QTemporaryDir profile;
    const std::pair<QString, const char*> cases[] = {
        {bin.path() + QStringLiteral("/no-such-firefox"), "could not be started"},
        {endsAtOnce, "ended as soon as it started (exit code 4)"},
    };
    for (const auto& [executable, says] : cases) {
        try {
            FirefoxProcess::start(executable, profile.path());
            ADD_FAILURE() << "started " << executable.toStdString();
        } catch (const AppError& error) {
            EXPECT_TRUE(error.description().contains(QLatin1String(says))) << error.description().toStdString();
        }
    }
    EXPECT_THROW(FirefoxProcess::attach(QStringLiteral("ws://127.0.0.1:1")), AppError);
}
} // namespace

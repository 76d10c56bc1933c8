// The real program started while another copy holds the instance lock: it ends at once,
// showing nothing and touching no file or setting.
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
TEST(SecondInstance, EndsSilentlyTouchingNothing)
{
    QTemporaryDir root;
    for (const char* sub : {"tmp", "data", "config", "runtime"})
        QDir(root.path()).mkdir(QString::fromLatin1(sub));
    // Qt makes its own runtime folder in the temporary folder unless it is given a private one.
    QFile::setPermissions(root.path() + QStringLiteral("/runtime"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    // The lock is the user's own: in their runtime folder.
    QLockFile running(root.path() + QStringLiteral("/runtime/Tolvane.lock"));
    ASSERT_TRUE(running.tryLock(0));

    QProcess second;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TMPDIR"), root.path() + QStringLiteral("/tmp"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), root.path() + QStringLiteral("/data"));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), root.path() + QStringLiteral("/config"));
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), root.path() + QStringLiteral("/runtime"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    second.setProcessEnvironment(env);
    second.start(QStringLiteral(TOLVANE_EXE), {});
    ASSERT_TRUE(second.waitForFinished(20000)) << "the second copy did not end";
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 0);

    const auto entries = [&](const char* sub) {
        return QDir(root.path() + QLatin1Char('/') + QString::fromLatin1(sub))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    };
    EXPECT_TRUE(entries("data").isEmpty());
    EXPECT_TRUE(entries("config").isEmpty());
    EXPECT_TRUE(entries("tmp").isEmpty());
    EXPECT_EQ(entries("runtime"), QStringList{QStringLiteral("Tolvane.lock")});
}
} // namespace

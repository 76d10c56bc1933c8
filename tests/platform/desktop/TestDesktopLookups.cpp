// What the desktop tells the start-up: browser name and version, the default browser, the
// single-instance lock.
#include "AppError.h"
#include "BrowserLocator.h"
#include "DefaultApplication.h"
#include "DesktopShell.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
void writeFile(const QString& path, const QByteArray& bytes, bool executable = false)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
    file.close();
    if (executable)
        file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
}

// Points the freedesktop lookups and the temporary folder at a fresh folder for one test.
class Desktop
{
public:
    Desktop()
    {
        for (const auto& [name, sub] : {std::pair{"XDG_CONFIG_HOME", "config"},
                                        {"XDG_CONFIG_DIRS", "etc"},
                                        {"XDG_DATA_HOME", "data"},
                                        {"XDG_DATA_DIRS", "share"},
                                        {"TMPDIR", "tmp"},
                                        {"XDG_RUNTIME_DIR", "run"}}) {
            m_saved.emplace_back(name, qgetenv(name));
            QDir().mkpath(path(QString::fromLatin1(sub)));
            // A runtime folder is the user's alone, or it is not taken for one.
            QFile::setPermissions(path(QString::fromLatin1(sub)), QFileDevice::ReadOwner |
                                                                      QFileDevice::WriteOwner |
                                                                      QFileDevice::ExeOwner);
            qputenv(name, QFile::encodeName(path(QString::fromLatin1(sub))));
        }
    }
    ~Desktop()
    {
        for (const auto& [name, value] : m_saved)
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }
    QString path(const QString& sub) const { return m_root.path() + QLatin1Char('/') + sub; }

private:
    QTemporaryDir m_root;
    std::vector<std::pair<const char*, QByteArray>> m_saved;
};

TEST(BrowserLocator, ReadsNameAndVersionFromVersionOutput)
{
    struct Case
    {
        const char* output;
        const char* name; // nullptr: no version
        int major;
        int minor;
    } cases[] = {
        {"Chromium 156.0.8078.73 built on Debian GNU/Linux 12 (bookworm)\n", "Chromium", 156, 0},
        {"Google Chrome 120.1.6099.71 \n", "Google Chrome", 120, 1},
        {"Microsoft Edge 119.0.2151.97", "Microsoft Edge", 119, 0},
        {"Brave Browser 1.60.118 Chromium: 119.0.6045.199", "Brave Browser", 1, 60},
        {"Mozilla Firefox 153.0esr\n", "Mozilla Firefox", 153, 0},
        {"Mozilla Firefox 157.0.2", "Mozilla Firefox", 157, 0},
        {"Mozilla Firefox 158.0b3", "Mozilla Firefox", 158, 0},
        {"", nullptr, 0, 0},
        {"segmentation fault", nullptr, 0, 0},
    };
    for (const Case& c : cases) {
        const auto info = BrowserLocator::parseVersionOutput(QString::fromUtf8(c.output));
        ASSERT_EQ(info.has_value(), c.name != nullptr) << c.output;
        if (!info)
            continue;
        EXPECT_EQ(info->productName, QString::fromUtf8(c.name));
        EXPECT_EQ(info->major, c.major);
        EXPECT_EQ(info->minor, c.minor);
    }
}

// Without TOLVANE_BROWSER: the user's default web browser when Tolvane can follow it, else the
// first followable one on PATH.
TEST(BrowserLocator, PrefersTheDefaultBrowserWhenItCanBeFollowed)
{
    Desktop desktop;
    const QByteArray savedPath = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(desktop.path(u"bin"_s)));
    const QString chromium = desktop.path(u"bin/chromium"_s);
    const QString firefox = desktop.path(u"opt/firefox-esr"_s);
    const QString other = desktop.path(u"opt/netsurf"_s);
    for (const QString& program : {chromium, firefox, other})
        writeFile(program, "#!/bin/sh\necho 'Mozilla Firefox 153.0esr'\n", true);
    writeFile(desktop.path(u"share/applications/firefox-esr.desktop"_s),
              "[Desktop Entry]\nExec=" + QFile::encodeName(firefox) + " %u\n");
    writeFile(desktop.path(u"share/applications/netsurf.desktop"_s),
              "[Desktop Entry]\nExec=" + QFile::encodeName(other) + " %u\n");
    struct Case
    {
        const char* defaultEntry; // nullptr: no default browser set
        QString chosen;
    } cases[] = {
        {nullptr, chromium},
        {"firefox-esr.desktop", firefox},
        {"netsurf.desktop", chromium}, // not one Tolvane can follow
        {"gone.desktop", chromium},
    };
    for (const Case& c : cases) {
        const QString list = desktop.path(u"config/mimeapps.list"_s);
        QFile::remove(list);
        if (c.defaultEntry)
            writeFile(list, QByteArray("[Default Applications]\nx-scheme-handler/http=") +
                                c.defaultEntry + "\n");
        EXPECT_EQ(BrowserLocator::executable(), c.chosen)
            << (c.defaultEntry ? c.defaultEntry : "no default");
    }

    // Firefox's identity for the start-up checks.
    writeFile(desktop.path(u"config/mimeapps.list"_s),
              "[Default Applications]\nx-scheme-handler/http=firefox-esr.desktop\n");
    DesktopShell shell;
    const BrowserIdentity identity = shell.browserIdentity();
    EXPECT_EQ(identity.productName, u"Mozilla Firefox"_s);
    EXPECT_EQ(identity.shortName, u"Firefox"_s);
    EXPECT_EQ(identity.executableToken, u"firefox-esr"_s);
    EXPECT_EQ(shell.DllGetVersion().major, 153);
    qputenv("PATH", savedPath);
}

TEST(DefaultApplication, FollowsMimeappsListToTheDesktopEntrysProgram)
{
    Desktop desktop;
    const QString html = desktop.path(u"tmp/Test120000.html"_s);
    writeFile(html, "\r\n");
    EXPECT_EQ(DefaultApplication::forFile(html), QString());

    writeFile(desktop.path(u"share/applications/chromium.desktop"_s),
              "[Desktop Entry]\nName=Chromium\nExec=/usr/bin/chromium %U\n");
    writeFile(desktop.path(u"share/applications/other.desktop"_s),
              "[Desktop Entry]\nExec=\"/opt/other browser/run\" --new %u\n");
    writeFile(desktop.path(u"share/applications/defaults.list"_s),
              "[Default Applications]\ntext/html=chromium.desktop\n");
    EXPECT_EQ(DefaultApplication::forFile(html), u"/usr/bin/chromium"_s);

    // The user's own choice comes first; a listed entry that does not exist is passed over.
    writeFile(desktop.path(u"config/mimeapps.list"_s),
              "[Added Associations]\ntext/html=chromium.desktop\n"
              "[Default Applications]\ntext/html=gone.desktop;other.desktop;\n");
    EXPECT_EQ(DefaultApplication::forFile(html), u"/opt/other browser/run"_s);
}

// One copy per user holds the lock; another user (another runtime folder) runs a Tolvane of their
// own; a lock left by a copy that was killed does not stop the next start.
TEST(DesktopShell, TheInstanceLockIsTheUsersOwnAndOutlivesNoProcess)
{
    Desktop desktop;
    DesktopShell mine;
    DesktopShell second;
    ASSERT_FALSE(mine.IsAnotherInstanceRunning());
    EXPECT_TRUE(second.IsAnotherInstanceRunning());
    EXPECT_FALSE(mine.IsAnotherInstanceRunning());
    EXPECT_TRUE(QFile::exists(desktop.path(u"run/Tolvane.lock"_s)));
    EXPECT_EQ(mine.TempFolder(), desktop.path(u"tmp"_s));
    EXPECT_EQ(mine.AppDataFolder(), desktop.path(u"data"_s));
    QTemporaryDir otherUser;
    QFile::setPermissions(otherUser.path(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(otherUser.path()));
    DesktopShell theirs;
    EXPECT_FALSE(theirs.IsAnotherInstanceRunning());

    // A copy killed while it held the lock: its file stays, naming a process that is gone.
    QTemporaryDir crashed;
    QFile::setPermissions(crashed.path(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    const QString lockFile = crashed.path() + u"/Tolvane.lock"_s;
    const pid_t child = ::fork();
    if (child == 0) {
        QLockFile held(lockFile);
        held.lock();
        ::_exit(0); // no unlock: the file is left behind
    }
    ::waitpid(child, nullptr, 0);
    ASSERT_TRUE(QFile::exists(lockFile));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(crashed.path()));
    DesktopShell next;
    EXPECT_FALSE(next.IsAnotherInstanceRunning());
}
} // namespace

namespace {
// The help is found beside the program in the build tree and in share/tolvane once installed,
// whatever the current folder.
TEST(DesktopShell, TheProgramsFilesAreFoundWhereverItIsInstalled)
{
    QTemporaryDir root;
    const QString base = root.path();
    for (const char* folder : {"build/src/app", "prefix/bin", "prefix/share/tolvane", "bare/bin"})
        QDir(base).mkpath(QString::fromLatin1(folder));
    QFile(base + u"/build/src/app/Tolvane.hlp"_s).open(QIODevice::WriteOnly);
    QFile(base + u"/prefix/share/tolvane/Tolvane.hlp"_s).open(QIODevice::WriteOnly);
    QDir::setCurrent(QDir::tempPath());
    EXPECT_EQ(DesktopShell::programFilesFolder(base + u"/build/src/app"_s),
              base + u"/build/src/app"_s);
    EXPECT_EQ(DesktopShell::programFilesFolder(base + u"/prefix/bin"_s),
              base + u"/prefix/share/tolvane"_s);
    // Nothing installed beside it: the program's own folder, as before.
    EXPECT_EQ(DesktopShell::programFilesFolder(base + u"/bare/bin"_s), base + u"/bare/bin"_s);
}
} // namespace

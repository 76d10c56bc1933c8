// Tolvane's storage killed outright at random moments while it writes: afterwards every data
// file must read cleanly and hold every write that had returned before the kill.
#include "CrashWrites.h"
#include "StorageFixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>
#include <random>
#include <signal.h>

using namespace Qt::StringLiterals;

namespace {
class TestCrashSafety : public StorageFixture
{
protected:
    TestCrashSafety() { location.profile = 0; } // the writer's profile
    // Runs the writer from `first` on and kills it after `afterMs` of writing; the number of
    // the last write it reported done, or first - 1.
    int runAndKill(int first, int afterMs)
    {
        QProcess writer;
        writer.setProgram(QStringLiteral(TOLVANE_CRASH_WRITER));
        writer.setArguments({dir.path(), QString::number(first)});
        writer.start();
        EXPECT_TRUE(writer.waitForStarted());
        // Killed only once it writes, so that the kills fall among the writes.
        writer.waitForReadyRead(10000);
        QThread::msleep(afterMs);
        ::kill(static_cast<pid_t>(writer.processId()), SIGKILL);
        writer.waitForFinished();
        EXPECT_TRUE(writer.readAllStandardError().isEmpty());
        const QList<QByteArray> done = writer.readAllStandardOutput().trimmed().split('\n');
        return done.last().isEmpty() ? first - 1 : done.last().toInt();
    }

    // Every line of every data file is a section, an entry or blank: no torn file.
    void expectWholeFiles()
    {
        static const QRegularExpression line(
            QStringLiteral(R"(^(\[[^\r\n]*\]|[^\r\n=\[]*=[^\r\n]*|)$)"));
        for (const QString& name : QDir(dir.path()).entryList({u"*.ini"_s}, QDir::Files)) {
            for (const QByteArray& text : fileBytes(name).split('\n')) {
                const QString content =
                    QString::fromLatin1(text.endsWith('\r') ? text.chopped(1) : text);
                EXPECT_TRUE(line.match(content).hasMatch())
                    << name.toStdString() << ": " << content.toStdString();
            }
        }
    }

    // Each entry holds the value of the last write to it that returned, or of the one the kill
    // interrupted (`next`), which may have reached the disk without being reported.
    void expectCompletedWrites(int next)
    {
        IniFileStore freshStore;
        Ini freshIni{freshStore};
        SiteFiles freshSites{freshIni, location, errors, clock};
        ValueStore freshValues{freshIni, location, errors, freshSites};
        QMap<QString, int> last; // by file, section and key
        const auto slot = [&](const CrashWrites::Write& write, bool anySite) {
            if (write.site.isEmpty())
                return u"S|%1|%2"_s.arg(write.section, write.key);
            return anySite ? u"A|%1"_s.arg(write.key) : u"V|%1|%2"_s.arg(write.site, write.key);
        };
        for (int number = 0; number < next; ++number) {
            const CrashWrites::Write write = CrashWrites::write(number);
            last[slot(write, false)] = number;
            if (!write.site.isEmpty())
                last[slot(write, true)] = number;
        }
        const CrashWrites::Write interrupted = CrashWrites::write(next);
        for (auto entry = last.cbegin(); entry != last.cend(); ++entry) {
            const CrashWrites::Write write = CrashWrites::write(entry.value());
            const bool anySite = entry.key().startsWith(QLatin1Char('A'));
            QString stored;
            if (write.site.isEmpty())
                stored = freshIni.ReadINI(write.section, write.key, u"<missing>"_s,
                                          DataFilePath(location, CrashWrites::ShortcutsFile));
            else if (anySite)
                stored =
                    freshValues.GetValue(u"http://never.example/"_s, write.key, u"<missing>"_s);
            else
                stored = freshIni.ReadINI(write.site, write.key, u"<missing>"_s,
                                          freshSites.SiteFilePath(write.site));
            const bool interruptedHere =
                next < CrashWrites::Count && slot(interrupted, anySite) == entry.key();
            if (stored != write.value && !(interruptedHere && stored == interrupted.value))
                ADD_FAILURE() << entry.key().toStdString() << " holds " << stored.toStdString()
                              << ", not " << write.value.toStdString();
        }
    }
};

TEST_F(TestCrashSafety, EveryWriteThatReturnedSurvivesAKillAtAnyMoment)
{
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> pause(0, 150);
    int next = 0;
    int kills = 0;
    // The test command runs it for about 25 s (some hundreds of kills); TOLVANE_CRASH_FULL=1
    // runs the whole sequence of writes.
    const bool full = qEnvironmentVariableIsSet("TOLVANE_CRASH_FULL");
    QElapsedTimer running;
    running.start();
    while (next < CrashWrites::Count && (full || running.elapsed() < 25000)) {
        const int done = runAndKill(next, pause(random));
        ASSERT_GE(done, next - 1);
        next = done + 1;
        ++kills;
        expectWholeFiles();
        expectCompletedWrites(next);
        if (HasFailure())
            break;
    }
    EXPECT_GT(kills, 5);
    RecordProperty("kills", kills);
}
} // namespace

// A storage of its own for the crash test: writes its share of a fixed sequence of writes
// through WriteINI and SetValue into a data folder and prints each write's number once the
// write has returned. The test kills it at random moments.
#include "AppError.h"
#include "Clock.h"
#include "CrashWrites.h"
#include "DataLocation.h"
#include "ErrorReport.h"
#include "Ini.h"
#include "IniFileStore.h"
#include "SiteFiles.h"
#include "ValueStore.h"

#include <QCoreApplication>
#include <cstdio>

namespace {
class Folder : public DataLocation
{
public:
    explicit Folder(QString folder) : m_folder(std::move(folder)) {}
    QString DataFolder() const override { return m_folder; }
    QString GetProfilePrefix(int index) const override
    {
        return ProfilePrefixOf(index < 0 ? 0 : index);
    }

private:
    QString m_folder;
};

class FailingReport : public ErrorReport
{
public:
    void ReportError(const AppError& error, const QString& procedure) override
    {
        std::fprintf(stderr, "%s\n", qPrintable(ErrorReportText(error, procedure)));
        std::exit(3);
    }
};
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3)
        return 2;
    const Folder folder(QString::fromLocal8Bit(argv[1]));
    const int first = std::atoi(argv[2]);
    FailingReport errors;
    SystemClock clock;
    IniFileStore store;
    Ini ini(store);
    SiteFiles sites(ini, folder, errors, clock);
    ValueStore values(ini, folder, errors, sites);
    for (int number = first; number < CrashWrites::Count; ++number) {
        const CrashWrites::Write write = CrashWrites::write(number);
        if (write.site.isEmpty())
            ini.WriteINI(write.section, write.key, write.value,
                         DataFilePath(folder, CrashWrites::ShortcutsFile));
        else
            values.SetValue(write.site, write.key, write.value);
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
    return 0;
}

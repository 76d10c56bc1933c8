// Every input the fuzzers started from or found a fault with, checked again as they check it.
#include "FuzzChecks.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {
using Check = std::optional<std::string> (*)(const QByteArray&);

void replay(const QString& target, Check check)
{
    int inputs = 0;
    for (const char* kind : {"corpus", "regressions"}) {
        const QDir folder(
            QStringLiteral(TOLVANE_FUZZ_INPUTS "/%1/%2").arg(QLatin1String(kind), target));
        for (const QFileInfo& file : folder.entryInfoList(QDir::Files)) {
            QFile input(file.filePath());
            ASSERT_TRUE(input.open(QIODevice::ReadOnly)) << file.filePath().toStdString();
            const auto fault = check(input.readAll());
            EXPECT_FALSE(fault) << file.filePath().toStdString() << ": " << fault.value_or("");
            ++inputs;
        }
    }
    EXPECT_GT(inputs, 0);
}
} // namespace

TEST(TestFuzzRegressions, IniReadAndWrite)
{
    replay(QStringLiteral("ini"), FuzzChecks::iniReadWrite);
}

TEST(TestFuzzRegressions, IniFileEncodings)
{
    replay(QStringLiteral("ini_file"), FuzzChecks::iniFile);
}

TEST(TestFuzzRegressions, SiteFileName)
{
    replay(QStringLiteral("site_file_name"), FuzzChecks::siteFileName);
}

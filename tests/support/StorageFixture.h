#pragma once

// Site files and value store on real INI files in a temporary data folder, with a settable
// clock, profile and error report.

#include "AppError.h"
#include "DataLocation.h"
#include "ErrorReport.h"
#include "FakeCore.h"
#include "Ini.h"
#include "IniFileStore.h"
#include "SiteFiles.h"
#include "ValueStore.h"

#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <gtest/gtest.h>

class FakeLocation : public DataLocation
{
public:
    QString folder;
    int profile = -1;
    QString DataFolder() const override { return folder; }
    QString GetProfilePrefix(int a_iIndex = -1) const override
    {
        return ProfilePrefixOf(a_iIndex < 0 ? profile : a_iIndex);
    }
};

class RecordedErrors : public ErrorReport
{
public:
    struct Report
    {
        int number;
        QString procedure;
    };
    std::vector<Report> reports;
    void ReportError(const AppError& error, const QString& procedure) override
    {
        reports.push_back({error.number(), procedure});
    }
};

class StorageFixture : public ::testing::Test
{
protected:
    StorageFixture()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        location.folder = dir.path();
    }
    ~StorageFixture() override { QLocale::setDefault(QLocale::system()); }

    QByteArray fileBytes(const QString& name) const
    {
        QFile file(dir.path() + QLatin1Char('/') + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString raw(const QString& name, const QString& section, const QString& key)
    {
        return store.readEntry(dir.path() + QLatin1Char('/') + name, section, key)
            .value_or(QStringLiteral("<missing>"));
    }

    QTemporaryDir dir;
    FakeLocation location;
    RecordedErrors errors;
    FakeClock clock;
    IniFileStore store;
    Ini ini{store};
    SiteFiles sites{ini, location, errors, clock};
    ValueStore values{ini, location, errors, sites};
};

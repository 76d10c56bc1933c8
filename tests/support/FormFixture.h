#pragma once

// A main bar on test doubles and real INI files in a temporary folder.

#include "FakeShell.h"
#include "IniFileStore.h"
#include "ModelBrowser.h"
#include "frmMain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

struct FormFixture
{
    // The bar runs on the fake clock and scripted shortcut dialogs unless given others.
    explicit FormFixture(const Clock* barClock = nullptr,
                         ModalDisplay<frmShortcut>* shortcutDialogs = nullptr)
        : barClock(barClock ? *barClock : clock),
          shortcutDialogs(shortcutDialogs ? *shortcutDialogs : editor)
    {
        QDir(root.path()).mkpath(QStringLiteral("appdata"));
        QDir(root.path()).mkpath(QStringLiteral("temp"));
        QDir(root.path()).mkpath(QStringLiteral("program"));
        shell.appDataFolder = root.path() + QStringLiteral("/appdata");
        shell.tempFolder = root.path() + QStringLiteral("/temp");
        shell.programFolder = root.path() + QStringLiteral("/program");
    }

    QString dataFolder() const { return root.path() + QStringLiteral("/appdata/Tolvane Data"); }
    QString dataFile(const QString& name) const { return dataFolder() + QLatin1Char('/') + name; }
    void writeDataFile(const QString& name, const QByteArray& bytes) const
    {
        QDir().mkpath(dataFolder());
        QFile file(dataFile(name));
        file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        file.write(bytes);
    }
    QByteArray readDataFile(const QString& name) const
    {
        QFile file(dataFile(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir root;
    FakeShell shell;
    FakeSettings settings;
    FakeMessageBoxes boxes;
    FakeClock clock;
    IniFileStore ini;
    ModelShell shellWindows;
    ImmediatePump pump;
    FakeTextMetrics metrics;
    FakeEditorDisplay editor;
    FakeProfilesDisplay profilesEditor;
    FakeDocking docking;
    const Clock& barClock;
    ModalDisplay<frmShortcut>& shortcutDialogs;
    frmMain form{{shell, settings, boxes, barClock, ini, shellWindows, pump, metrics,
                  shortcutDialogs, profilesEditor, docking}};
};

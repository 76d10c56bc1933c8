#pragma once

// The bar with a Shortcuts.ini written by the test, and helpers to read what the list shows.

#include "DateText.h"
#include "FormFixture.h"
#include "ShortcutFile.h"

#include <QLocale>
#include <gtest/gtest.h>

class ShortcutFixture : public ::testing::Test
{
protected:
    ShortcutFixture()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        f.clock.current = QDateTime(QDate(2005, 3, 10), QTime(12, 0));
        QDir().mkpath(f.dataFolder());
    }
    QString file() const { return f.dataFile(QStringLiteral("zShortcuts.ini")); }
    void put(int number, const QString& key, const QString& value)
    {
        f.ini.writeEntry(file(), ShortcutFile::Section(number), key, value);
    }
    void setMax(int max) { f.ini.writeEntry(file(), "Shortcuts", "Max", QString::number(max)); }
    void shortcut(int number, const QString& title, const QString& url = {}, int remind = 0,
                  const QString& start = {}, const QString& expires = {})
    {
        put(number, "Title", title);
        put(number, "URL",
            url.isEmpty() ? QStringLiteral("http://site%1.example/").arg(number) : url);
        put(number, "Remind", QString::number(remind));
        if (!start.isEmpty())
            put(number, "StartDate", start);
        if (!expires.isEmpty())
            put(number, "Expires", expires);
    }
    QString key(int number, const QString& key)
    {
        return f.ini.readEntry(file(), ShortcutFile::Section(number), key).value_or("<missing>");
    }
    QList<int> tags() const
    {
        QList<int> shown;
        for (int i = 0; i < f.form.lvShortcuts.count(); ++i)
            shown << f.form.lvShortcuts.row(i).tag;
        return shown;
    }
    int rowOf(int tag) const { return tags().indexOf(tag); }
    QByteArray fileBytes() const { return f.readDataFile(QStringLiteral("zShortcuts.ini")); }

    FormFixture f;
};

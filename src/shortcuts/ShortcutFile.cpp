#include "ShortcutFile.h"

#include "Ini.h"
#include "SiteFiles.h"
#include "VbText.h"

#include <QRegularExpression>
#include <algorithm>
#include <limits>

QString ShortcutFile::Section(int number)
{
    return QStringLiteral("Shortcut%1").arg(number);
}

int ShortcutFile::ReadMax(const Ini& ini, const QString& file)
{
    return WholeNumber(ini.ReadINI(ShortcutsSection, MaxKey, QStringLiteral("0"), file));
}

void ShortcutFile::RaiseMax(const Ini& ini, const QString& file, int number)
{
    if (ReadMax(ini, file) < number)
        ini.WriteINI(ShortcutsSection, MaxKey, QString::number(number), file);
}

QList<int> ShortcutFile::NumberedSections(const Ini& ini, const QString& file, int max)
{
    // Only the canonical spelling counts: the walk asks for "Shortcut" + N, never "Shortcut01".
    static const QRegularExpression numbered(QStringLiteral("^shortcut([1-9][0-9]{0,9})$"),
                                             QRegularExpression::CaseInsensitiveOption);
    QList<int> numbers;
    for (const QString& name : ini.SectionNames(file)) {
        const auto match = numbered.match(name);
        if (!match.hasMatch())
            continue;
        const qint64 number = match.captured(1).toLongLong();
        if (number <= max)
            numbers.append(static_cast<int>(number));
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

QString ShortcutFile::Title(const Ini& ini, const QString& file, int number)
{
    return TrimSpaces(ini.ReadINI(Section(number), TitleKey, QString(), file));
}

int ShortcutFile::LowestFreeNumber(const Ini& ini, const QString& file)
{
    int candidate = 1;
    for (int number : NumberedSections(ini, file, std::numeric_limits<int>::max())) {
        if (number > candidate)
            break;
        if (number == candidate && !Title(ini, file, number).isEmpty())
            ++candidate;
    }
    return candidate;
}

int ShortcutFile::NumberTitled(const Ini& ini, const QString& file, const QString& title)
{
    for (int number : NumberedSections(ini, file, ReadMax(ini, file))) {
        if (SameText(Title(ini, file, number), TrimSpaces(title)))
            return number;
    }
    return 0;
}

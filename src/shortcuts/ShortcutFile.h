#pragma once

#include <QList>
#include <QString>

class Ini;

// The layout of Shortcuts.ini: section "Shortcuts" with "Max", and one section "Shortcut" + N
// per shortcut. Removing a shortcut only empties its title; numbers are never renumbered.
namespace ShortcutFile {

inline const QString ShortcutsSection = QStringLiteral("Shortcuts");
inline const QString MaxKey = QStringLiteral("Max");
inline const QString TitleKey = QStringLiteral("Title");
inline const QString UrlKey = QStringLiteral("URL");
inline const QString RemindKey = QStringLiteral("Remind");
inline const QString StartDateKey = QStringLiteral("StartDate");
inline const QString ExpiresKey = QStringLiteral("Expires");
inline const QString LastVisitKey = QStringLiteral("LastVisit");
inline const QString SourceKey = QStringLiteral("Source");
inline const QString NotesKey = QStringLiteral("Notes");

QString Section(int number);
// "Max" read as a whole number (0 when missing); throws on overflow.
int ReadMax(const Ini& ini, const QString& file);
// Raises "Max" to the number when it is lower.
void RaiseMax(const Ini& ini, const QString& file, int number);
// The numbers from 1 to max that have a section, ascending: the same rows a walk of every
// number from 1 to max finds, without reading the numbers that have none.
QList<int> NumberedSections(const Ini& ini, const QString& file, int max);
// The lowest number from 1 up whose title, trimmed, is empty.
int LowestFreeNumber(const Ini& ini, const QString& file);
QString Title(const Ini& ini, const QString& file, int number);
// The number of the shortcut of that title (letter case aside, blanks trimmed), or 0.
int NumberTitled(const Ini& ini, const QString& file, const QString& title);

} // namespace ShortcutFile

#include "CopyToProfile.h"

#include "AppError.h"
#include "Controls.h"
#include "DataLocation.h"
#include "Ini.h"
#include "ShortcutFile.h"
#include "VbText.h"

#include <limits>

using namespace ShortcutFile;

void CopyToProfile::mnuProfile_Click(int Index)
{
    const int selected = m_list.selectedIndex();
    if (selected < 0)
        return;
    const ListRow source = m_list.row(selected);
    const QString target = DataFilePath(m_location, m_location.GetProfilePrefix(Index) +
                                                        QStringLiteral("Shortcuts.ini"));
    try {
        const int max = ReadMax(m_ini, target);
        if (max == std::numeric_limits<int>::max())
            return;
        const int bound = max + 1;
        // Numbers without a section have an empty title: the lowest of them, or of the empty
        // titles, is the free number.
        int free = 0;
        int expected = 1;
        for (int number : NumberedSections(m_ini, target, bound)) {
            const QString title = Title(m_ini, target, number);
            if (free < 1 && number > expected)
                free = expected;
            if (free < 1 && title.isEmpty())
                free = number;
            if (SameText(source.text, title))
                return;
            expected = number + 1;
        }
        if (free < 1)
            free = expected;

        const QString from = Section(source.tag);
        const QString to = Section(free);
        for (const QString& key : {TitleKey, UrlKey, RemindKey, StartDateKey, ExpiresKey})
            m_ini.WriteINI(to, key, m_ini.ReadINI(from, key, QString(), m_shortcutsFile()), target);
        RaiseMax(m_ini, target, free);
    } catch (const AppError&) {
        // The copy reports nothing, whatever happens.
    }
}

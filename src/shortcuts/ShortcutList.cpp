#include "ShortcutList.h"

#include "AppError.h"
#include "Clock.h"
#include "Controls.h"
#include "DateText.h"
#include "ErrorReport.h"
#include "Ini.h"
#include "ReminderState.h"
#include "ShortcutFile.h"
#include "SiteFiles.h"
#include "TextMetrics.h"
#include "VbText.h"

using namespace ShortcutFile;

namespace {
constexpr int ColumnMarginTwips = 20;
constexpr double MeasuringFontSize = 7.0;

QDate dateOf(const QString& text)
{
    const auto value = DateText::toDateTime(text);
    return value ? value->date() : QDate();
}
} // namespace

ShortcutList::ShortcutList(ListViewControl& list, const Services& services)
    : m_list(list), m_services(services)
{
}

void ShortcutList::RequeryShortcuts()
{
    // Every step reports its own error and the rebuild goes on, so the list is shown again.
    const auto step = [this](const auto& action) {
        try {
            action();
        } catch (const AppError& error) {
            m_services.errors.ReportError(error, QStringLiteral("RequeryShortcuts"));
        }
    };
    int firstVisible = 0;
    int selected = 0;
    if (m_list.selectedIndex() >= 0) {
        if (m_list.topIndex() >= 0 && m_list.topIndex() < m_list.count())
            firstVisible = m_list.row(m_list.topIndex()).tag;
        selected = m_list.row(m_list.selectedIndex()).tag;
    }
    m_list.setVisible(false);
    int max = 0;
    step([&] { max = ReadMax(m_services.ini, m_services.shortcutsFile()); });
    m_list.setColumnWidthTwips(m_list.widthTwips() / 2);
    m_list.clear();
    m_fontSize = MeasuringFontSize;
    step([&] { addRows(max); });
    if (m_list.count() > 0)
        m_list.ensureVisible(m_list.count() - 1);
    for (int i = 0; i < m_list.count(); ++i) {
        if (m_list.row(i).tag == firstVisible) {
            m_list.ensureVisible(i);
            break;
        }
    }
    for (int i = 0; i < m_list.count(); ++i) {
        if (m_list.row(i).tag == selected) {
            m_list.setSelectedIndex(i);
            m_list.ensureVisible(i);
            break;
        }
    }
    m_list.setVisible(true);
    if (m_services.clickHandling)
        m_services.clickHandling();
}

void ShortcutList::addRows(int max)
{
    const QString file = m_services.shortcutsFile();
    for (int number : NumberedSections(m_services.ini, file, max)) {
        const QString title = Title(m_services.ini, file, number);
        if (title.isEmpty())
            continue;
        const int row = m_list.addRow({title, number, QString(), StateIcon::NoReminder});
        DrawShortcut(row);
    }
}

void ShortcutList::DrawShortcut(int row)
{
    try {
        const QString file = m_services.shortcutsFile();
        const QString section = Section(m_list.row(row).tag);
        const int width = m_services.metrics.TextWidth(m_list.row(row).text, m_fontSize);
        if (width + ColumnMarginTwips > m_list.columnWidthTwips())
            m_list.setColumnWidthTwips(width + ColumnMarginTwips);
        m_list.setRowToolTip(row,
                             TrimSpaces(m_services.ini.ReadINI(section, UrlKey, QString(), file)));

        const Ini& ini = m_services.ini;
        const QDate start = dateOf(ini.ReadINI(section, StartDateKey, QString(), file));
        // The stored visit, not its display text: that is the locale's and would read back as
        // another day where days come first.
        const auto visit =
            m_services.sites.LastVisitDate(ini.ReadINI(section, UrlKey, QString(), file));
        const QDate last = visit ? visit->date() : QDate();
        const QDate end = dateOf(ini.ReadINI(section, ExpiresKey, QString(), file));
        const int reminder = WholeNumber(ini.ReadINI(section, RemindKey, QString(), file));
        const QDate today = m_services.clock.now().date();
        if (const auto icon = ShortcutState(start, reminder, last, end, today))
            m_list.setRowIcon(row, *icon);
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("DrawShortcut"));
    }
}

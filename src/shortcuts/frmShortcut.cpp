#include "frmShortcut.h"

#include "AppError.h"
#include "Clock.h"
#include "DateText.h"
#include "ErrorReport.h"
#include "Ini.h"
#include "ShortcutFile.h"
#include "SiteFiles.h"
#include "VbText.h"

using namespace ShortcutFile;

namespace {
constexpr int InvalidPropertyValue = 380;
}

frmShortcut::frmShortcut(const Services& services, QObject* parent)
    : QObject(parent), m_services(services)
{
    connect(&cmdOK, &Control::clicked, this, &frmShortcut::cmdOK_Click);
    connect(&cmdCancel, &Control::clicked, this, &frmShortcut::cmdCancel_Click);
    connect(&lblHelp, &Control::clicked, this, &frmShortcut::lblHelp_Click);
}

void frmShortcut::Form_Load()
{
    cboRemind.setItems({QStringLiteral("Never"), QStringLiteral("Every Day"),
                        QStringLiteral("Every Week"), QStringLiteral("Every Month")});
    cboRemind.setListIndex(0);
}

void frmShortcut::EditShortcut(int number, const QString& title, const QString& address)
{
    try {
        Form_Load();
        if (number < 1)
            fillNew(title, address);
        else
            fillExisting(number);
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("EditShortcut"));
        return;
    }
    m_services.display.ShowModal(*this);
}

void frmShortcut::fillNew(const QString& title, const QString& address)
{
    m_number = 0;
    txtTitle.setText(TrimSpaces(title));
    txtURL.setText(address);
    cboRemind.setListIndex(0);
    const QDate today = m_services.clock.now().date();
    dtStartDate.setValue(today);
    dtExpires.setValue(today.addMonths(12));
    showVisits(address);
    txtSource.setText(QString());
    txtNotes.setText(QString());
}

void frmShortcut::fillExisting(int number)
{
    const Ini& ini = m_services.ini;
    const QString file = m_services.shortcutsFile();
    const QString section = Section(number);
    m_number = number;
    txtTitle.setText(ini.ReadINI(section, TitleKey, QString(), file));
    txtURL.setText(ini.ReadINI(section, UrlKey, QString(), file));
    const int remind = WholeNumber(ini.ReadINI(section, RemindKey, QStringLiteral("0"), file));
    if (remind < 0 || remind >= cboRemind.items().size())
        throw AppError(InvalidPropertyValue, QStringLiteral("Invalid property value"));
    cboRemind.setListIndex(remind);
    dtStartDate.setValue(
        m_services.sites.SafeDate(ini.ReadINI(section, StartDateKey, QString(), file)).date());
    const QString inAYear = DateText::fromDate(m_services.clock.now().date().addMonths(12));
    dtExpires.setValue(
        m_services.sites.SafeDate(ini.ReadINI(section, ExpiresKey, inAYear, file)).date());
    showVisits(txtURL.text());
    txtSource.setText(ini.ReadINI(section, SourceKey, QString(), file));
    txtNotes.setText(ini.ReadINI(section, NotesKey, QString(), file));
}

void frmShortcut::showVisits(const QString& address)
{
    txtLastVisit.setText(m_services.sites.GetLastVisit(address));
    txtTotalEntries.setText(QString::number(m_services.sites.GetTotalVisits(address)));
}

void frmShortcut::cmdOK_Click()
{
    try {
        const Ini& ini = m_services.ini;
        const QString file = m_services.shortcutsFile();
        if (m_number < 1)
            m_number = LowestFreeNumber(ini, file);
        const QString section = Section(m_number);
        ini.WriteINI(section, TitleKey, txtTitle.text(), file);
        ini.WriteINI(section, UrlKey, txtURL.text(), file);
        ini.WriteINI(section, RemindKey, QString::number(cboRemind.listIndex()), file);
        ini.WriteINI(section, StartDateKey, DateText::fromDate(dtStartDate.value()), file);
        ini.WriteINI(section, ExpiresKey, DateText::fromDate(dtExpires.value()), file);
        ini.WriteINI(section, LastVisitKey, txtLastVisit.text(), file);
        ini.WriteINI(section, SourceKey, txtSource.text(), file);
        ini.WriteINI(section, NotesKey, txtNotes.text(), file);
        RaiseMax(ini, file, m_number);
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("cmdOK_Click"));
        return;
    }
    Q_EMIT closeRequested();
}

void frmShortcut::cmdCancel_Click()
{
    Q_EMIT closeRequested();
}

void frmShortcut::lblHelp_Click()
{
    if (m_services.sendKeys)
        m_services.sendKeys(QStringLiteral("{F1}"));
}

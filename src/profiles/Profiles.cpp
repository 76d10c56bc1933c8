#include "Profiles.h"

#include "AppError.h"
#include "Controls.h"
#include "ErrorReport.h"
#include "Ini.h"
#include "SettingsStore.h"
#include "ShellWindowList.h"
#include "ShortcutList.h"
#include "frmProfiles.h"

#include <cmath>

namespace {
constexpr int ProfileCount = 5;
const QString ProfilesSection = QStringLiteral("Profiles");

QString profileKey(int number)
{
    return QStringLiteral("Profile%1").arg(number);
}

// The saved setting as a whole number; text that is no number is a type mismatch.
int wholeNumberSetting(const QString& text)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || std::abs(value) > 32767)
        throw AppError(ErrorNumber::TypeMismatch, QStringLiteral("Type mismatch"));
    return static_cast<int>(std::nearbyint(value));
}
} // namespace

QString DefaultProfileName(int number)
{
    return QStringLiteral("Profile %1").arg(number);
}

Profiles::Profiles(const Controls& controls, const Services& services, QObject* parent)
    : QObject(parent), m_c(controls), m_services(services)
{
    connect(&m_c.cboProfiles, &Control::clicked, this, &Profiles::cboProfiles_Click);
    connect(&m_c.cmdProfiles, &Control::clicked, this, &Profiles::cmdProfiles_Click);
}

QString Profiles::profileName(int number) const
{
    return m_services.ini.ReadINI(ProfilesSection, profileKey(number), DefaultProfileName(number),
                                  m_services.profilesFile());
}

void Profiles::RequeryProfiles()
{
    try {
        int noted = m_c.cboProfiles.listIndex();
        if (noted < 0)
            noted = wholeNumberSetting(m_services.settings.GetSetting(
                QStringLiteral("Settings"), QStringLiteral("Profile"), QStringLiteral("0")));
        m_c.cboProfiles.setItems({});
        for (int i = 1; i <= ProfileCount; ++i) {
            const QString name = profileName(i);
            m_c.cboProfiles.addItem(name);
            m_c.mnuProfile[i - 1]->setText(name);
            if (i - 1 == noted)
                m_c.cboProfiles.setListIndex(i - 1);
        }
        if (m_c.cboProfiles.listIndex() < 0)
            m_c.cboProfiles.setListIndex(0);
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("RequeryProfiles"));
    }
}

void Profiles::cboProfiles_Click()
{
    try {
        m_services.resetShortcutsFile();
        const int selected = m_c.cboProfiles.listIndex();
        if (selected >= 0) {
            for (int i = 0; i < ProfileCount; ++i)
                m_c.mnuProfile[i]->setEnabled(i != selected);
        }
        if (!m_services.isShown())
            return;
        m_services.shortcuts.RequeryShortcuts();
        for (const BrowserPtr& window : m_services.SW.items()) {
            try {
                window->Refresh();
            } catch (const AppError&) {
            }
        }
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("cboProfiles_Click"));
    }
}

void Profiles::cmdProfiles_Click()
{
    ShowProfiles();
    RequeryProfiles();
    m_services.shortcuts.RequeryShortcuts();
}

void Profiles::ShowProfiles()
{
    try {
        frmProfiles form;
        for (int i = 1; i <= ProfileCount; ++i)
            form.txtProfile[i - 1]->setText(profileName(i));
        form.clearSaveRequest();
        m_services.display.ShowModal(form);
        if (form.saveRequested()) {
            for (int i = 1; i <= ProfileCount; ++i)
                m_services.ini.WriteINI(ProfilesSection, profileKey(i),
                                        form.txtProfile[i - 1]->text(), m_services.profilesFile());
        }
    } catch (const AppError& error) {
        m_services.errors.ReportError(error, QStringLiteral("ShowProfiles"));
    }
}

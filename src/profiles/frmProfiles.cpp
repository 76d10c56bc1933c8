#include "frmProfiles.h"

frmProfiles::frmProfiles(QObject* parent) : QObject(parent)
{
    for (size_t i = 0; i < txtProfile.size(); ++i) {
        lblProfile[i] = std::make_unique<Control>(QStringLiteral("lblProfile(%1)").arg(i),
                                                  QStringLiteral("Profile &%1").arg(i + 1));
        txtProfile[i] = std::make_unique<Control>(QStringLiteral("txtProfile(%1)").arg(i));
    }
    connect(&cmdOK, &Control::clicked, this, &frmProfiles::cmdOK_Click);
    connect(&cmdCancel, &Control::clicked, this, &frmProfiles::cmdCancel_Click);
}

void frmProfiles::cmdOK_Click()
{
    m_save = true;
    Q_EMIT closeRequested();
}

void frmProfiles::cmdCancel_Click()
{
    Q_EMIT closeRequested();
}

#pragma once

#include "Controls.h"
#include "ModalDisplay.h"

#include <QObject>
#include <array>
#include <memory>

class frmProfiles;

using ProfilesEditorDisplay = ModalDisplay<frmProfiles>;

// The dialog in which the five profiles are renamed.
class frmProfiles : public QObject
{
    Q_OBJECT
public:
    explicit frmProfiles(QObject* parent = nullptr);

    void cmdOK_Click();
    void cmdCancel_Click();
    bool saveRequested() const { return m_save; }
    void clearSaveRequest() { m_save = false; }

    Control window{QStringLiteral("frmProfiles"), QStringLiteral("Edit Profiles")};
    std::array<std::unique_ptr<Control>, 5> lblProfile;
    std::array<std::unique_ptr<Control>, 5> txtProfile;
    Control cmdOK{QStringLiteral("cmdOK"), QStringLiteral("&OK")};
    Control cmdCancel{QStringLiteral("cmdCancel"), QStringLiteral("&Cancel")};
    Control lblHelp{QStringLiteral("lblHelp"), QStringLiteral("Help - Press F1")};

Q_SIGNALS:
    void closeRequested();

private:
    bool m_save = false;
};

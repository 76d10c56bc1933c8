#pragma once

#include "frmProfiles.h"

class QWidget;

// The profile names dialog as a real modal dialog.
class ProfilesDialogDisplay : public ProfilesEditorDisplay
{
public:
    void setParentWindow(QWidget* parent) { m_parent = parent; }
    void setHelpFile(const QString& helpFile) { m_helpFile = helpFile; }
    void ShowModal(frmProfiles& form) override;

private:
    QWidget* m_parent = nullptr;
    QString m_helpFile;
};

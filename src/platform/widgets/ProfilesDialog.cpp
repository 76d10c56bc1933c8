#include "ProfilesDialog.h"

#include "FormDialog.h"

#include <QLineEdit>

void ProfilesDialogDisplay::ShowModal(frmProfiles& form)
{
    FormDialog dialog(form.window, m_parent, m_helpFile, false);
    for (size_t i = 0; i < form.txtProfile.size(); ++i)
        dialog.addRow(*form.lblProfile[i], dialog.textBox(*form.txtProfile[i]));
    dialog.addButtons(form.lblHelp, form.cmdOK, form.cmdCancel);
    dialog.closeOn(&form, &frmProfiles::closeRequested);
    dialog.exec();
}

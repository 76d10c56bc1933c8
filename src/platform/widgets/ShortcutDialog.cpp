#include "ShortcutDialog.h"

#include "ControlBinding.h"
#include "DateText.h"
#include "FormDialog.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>

namespace {
QDateEdit* datePicker(DateControl& control)
{
    auto* picker = new QDateEdit;
    picker->setCalendarPopup(true);
    // As the user writes dates, not as the data files keep them.
    picker->setDisplayFormat(DateText::shortDateFormat());
    ControlBinding::bindDate(control, picker);
    return picker;
}
} // namespace

void ShortcutDialogDisplay::ShowModal(frmShortcut& form)
{
    // Topmost, so that it stays above the browser windows.
    FormDialog dialog(form.window, m_parent, m_helpFile, true);
    QLineEdit* title = dialog.textBox(form.txtTitle);
    title->setMinimumWidth(320);
    dialog.addRow(form.lblName, title);
    dialog.addRow(form.lblURL, dialog.textBox(form.txtURL));
    auto* remind = new QComboBox;
    ControlBinding::bindCombo(form.cboRemind, remind);
    dialog.addRow(form.lblReminder, remind);
    dialog.addRow(form.lblStarting, datePicker(form.dtStartDate));
    dialog.addRow(form.lblEnding, datePicker(form.dtExpires));
    dialog.addRow(form.lblLastVisit, dialog.textBox(form.txtLastVisit, true));
    dialog.addRow(form.lblTotalEntries, dialog.textBox(form.txtTotalEntries, true));
    dialog.addRow(form.lblSource, dialog.textBox(form.txtSource));
    dialog.addRow(form.lblNotes, dialog.textBox(form.txtNotes));
    dialog.addButtons(form.lblHelp, form.cmdOK, form.cmdCancel);
    dialog.closeOn(&form, &frmShortcut::closeRequested);
    title->setFocus();
    dialog.exec();
}

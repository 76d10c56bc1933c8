#include "ShortcutDialog.h"

#include "ControlBinding.h"
#include "HelpWindow.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

using namespace ControlBinding;

namespace {
QLabel* label(Control& control, QWidget* buddy)
{
    auto* text = new QLabel;
    bind(control, text);
    text->setBuddy(buddy);
    return text;
}

QLineEdit* textBox(Control& control, bool readOnly = false)
{
    auto* box = new QLineEdit;
    bind(control, box);
    if (readOnly) {
        // Read-only boxes show the button face and are passed over by Tab.
        box->setReadOnly(true);
        box->setFocusPolicy(Qt::NoFocus);
        box->setStyleSheet(QStringLiteral("QLineEdit { background: palette(button); }"));
    }
    return box;
}

QDateEdit* datePicker(DateControl& control)
{
    auto* picker = new QDateEdit;
    picker->setCalendarPopup(true);
    picker->setDisplayFormat(QStringLiteral("M/d/yyyy"));
    bindDate(control, picker);
    return picker;
}
} // namespace

void ShortcutDialogDisplay::ShowModal(frmShortcut& form)
{
    QDialog dialog(m_parent, Qt::Dialog | Qt::WindowStaysOnTopHint);
    bind(form.window, &dialog);
    dialog.setFont(QFont(QStringLiteral("Tahoma"), 8));
    auto* grid = new QGridLayout(&dialog);

    auto* title = textBox(form.txtTitle);
    auto* url = textBox(form.txtURL);
    auto* remind = new QComboBox;
    bindCombo(form.cboRemind, remind);
    auto* starts = datePicker(form.dtStartDate);
    auto* ends = datePicker(form.dtExpires);
    auto* lastVisit = textBox(form.txtLastVisit, true);
    auto* total = textBox(form.txtTotalEntries, true);
    auto* source = textBox(form.txtSource);
    auto* notes = textBox(form.txtNotes);

    const QList<std::pair<Control*, QWidget*>> rows = {
        {&form.lblName, title},         {&form.lblURL, url},
        {&form.lblReminder, remind},    {&form.lblStarting, starts},
        {&form.lblEnding, ends},        {&form.lblLastVisit, lastVisit},
        {&form.lblTotalEntries, total}, {&form.lblSource, source},
        {&form.lblNotes, notes}};
    int row = 0;
    for (const auto& [caption, field] : rows) {
        grid->addWidget(label(*caption, field), row, 0);
        grid->addWidget(field, row++, 1, 1, 2);
    }
    title->setMinimumWidth(320);

    auto* help = new QLabel;
    bind(form.lblHelp, help);
    help->setStyleSheet(QStringLiteral("color: blue; font-weight: bold;"));
    auto* ok = new QPushButton;
    bind(form.cmdOK, ok);
    ok->setDefault(true);
    auto* cancel = new QPushButton;
    bind(form.cmdCancel, cancel);
    grid->addWidget(help, row, 0);
    grid->addWidget(ok, row, 1);
    grid->addWidget(cancel, row, 2);

    // Escape cancels, as the cancel button.
    QObject::connect(&dialog, &QDialog::rejected, &form, [&form] { form.cmdCancel_Click(); });
    QObject::connect(&form, &frmShortcut::closeRequested, &dialog, &QDialog::accept);

    HelpWindow* helpWindow = nullptr;
    auto* helpKey = new QShortcut(QKeySequence(Qt::Key_F1), &dialog);
    QObject::connect(helpKey, &QShortcut::activated, &dialog, [&] {
        if (!helpWindow)
            helpWindow = new HelpWindow(&dialog);
        helpWindow->showFile(m_helpFile);
    });
    title->setFocus();
    dialog.exec();
}

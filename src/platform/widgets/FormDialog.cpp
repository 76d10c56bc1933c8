#include "FormDialog.h"

#include "ControlBinding.h"
#include "Controls.h"
#include "HelpWindow.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

using namespace ControlBinding;

FormDialog::FormDialog(Control& window, QWidget* parent, const QString& helpFile, bool topmost)
    : QDialog(parent, topmost ? Qt::Dialog | Qt::WindowStaysOnTopHint : Qt::Dialog),
      m_grid(new QGridLayout(this)), m_helpFile(helpFile)
{
    bind(window, this);
    setFont(QFont(QStringLiteral("Tahoma"), 8));
    auto* helpKey = new QShortcut(QKeySequence(Qt::Key_F1), this);
    connect(helpKey, &QShortcut::activated, this, [this] {
        auto* help = findChild<HelpWindow*>();
        if (!help)
            help = new HelpWindow(this);
        help->showFile(m_helpFile);
    });
}

void FormDialog::addRow(Control& caption, QWidget* field)
{
    auto* text = new QLabel;
    bind(caption, text);
    text->setBuddy(field);
    m_grid->addWidget(text, m_rows, 0);
    m_grid->addWidget(field, m_rows++, 1, 1, 2);
}

QLineEdit* FormDialog::textBox(Control& control, bool readOnly)
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

void FormDialog::addButtons(Control& help, Control& ok, Control& cancel)
{
    auto* helpLabel = new QLabel;
    bind(help, helpLabel);
    helpLabel->setStyleSheet(QStringLiteral("color: blue; font-weight: bold;"));
    auto* okButton = new QPushButton;
    bind(ok, okButton);
    okButton->setDefault(true);
    auto* cancelButton = new QPushButton;
    bind(cancel, cancelButton);
    m_grid->addWidget(helpLabel, m_rows, 0);
    m_grid->addWidget(okButton, m_rows, 1);
    m_grid->addWidget(cancelButton, m_rows++, 2);
    connect(this, &QDialog::rejected, &cancel, &Control::click);
}

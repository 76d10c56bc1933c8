#include "MainWindow.h"

#include "ControlBinding.h"
#include "HelpWindow.h"
#include "frmMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>
#include <QStatusBar>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace ControlBinding;

MainWindow::MainWindow(frmMain& form, QWidget* parent) : QWidget(parent), m_form(form)
{
    bind(form.window, this);
    QFont appFont(QStringLiteral("Tahoma"));
    appFont.setPointSizeF(8.25);
    setFont(appFont);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 0);
    layout->setSpacing(3);

    auto* help = new QLabel;
    bind(form.lblHelp, help);
    QFont helpFont(QStringLiteral("Tahoma"), 9, QFont::Bold);
    help->setFont(helpFont);
    help->setStyleSheet(QStringLiteral("color: blue;"));
    help->setCursor(Qt::PointingHandCursor);
    layout->addWidget(help);

    layout->addWidget(separator(0));
    layout->addWidget(buildProfileGroup());
    layout->addWidget(separator(1));
    layout->addWidget(buildActivePageGroup());
    layout->addWidget(separator(2));

    auto* list = new QTreeWidget;
    list->setHeaderHidden(true);
    list->setRootIsDecorated(false);
    list->setColumnCount(1);
    bindList(form.lvShortcuts, list);
    auto* listLabel = label(1);
    qobject_cast<QLabel*>(listLabel)->setBuddy(list);
    layout->addWidget(listLabel);
    layout->addWidget(list, 1);

    layout->addWidget(buildBottomPanel());

    auto* status = new QStatusBar;
    status->setSizeGripEnabled(false);
    auto* statusText = new QLabel;
    bind(form.StatusBar, statusText);
    status->addWidget(statusText, 1);
    layout->addWidget(status);

    bindTimer(form.TimerClearStatus, this);

    auto* helpKey = new QShortcut(QKeySequence(Qt::Key_F1), this);
    helpKey->setContext(Qt::ApplicationShortcut);
    connect(helpKey, &QShortcut::activated, this, &MainWindow::openHelp);
    connect(&form, &frmMain::unloadRequested, this, &QWidget::close);
}

QWidget* MainWindow::separator(int index)
{
    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    ControlBinding::bind(*m_form.Frame[index], line);
    return line;
}

QWidget* MainWindow::label(int index)
{
    auto* text = new QLabel;
    ControlBinding::bind(*m_form.Label[index], text);
    return text;
}

QWidget* MainWindow::buildProfileGroup()
{
    auto* group = new QWidget;
    auto* grid = new QGridLayout(group);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(label(2), 0, 0, 1, 2);
    auto* profiles = new QComboBox;
    bindCombo(m_form.cboProfiles, profiles);
    grid->addWidget(profiles, 1, 0);
    auto* edit = new QPushButton;
    bind(m_form.cmdProfiles, edit);
    grid->addWidget(edit, 1, 1);
    grid->setColumnStretch(0, 1);
    return group;
}

QWidget* MainWindow::buildActivePageGroup()
{
    auto* group = new QWidget;
    auto* grid = new QGridLayout(group);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(label(0), 0, 0);
    auto* cookie = new QLabel;
    cookie->setFixedSize(16, 16);
    cookie->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(16, 16));
    bind(m_form.imgCookie, cookie);
    grid->addWidget(cookie, 0, 1);
    auto* active = new QLineEdit;
    active->setReadOnly(true);
    active->setBackgroundRole(QPalette::Button);
    active->setStyleSheet(QStringLiteral("QLineEdit { background: palette(button); }"));
    bind(m_form.txtActive, active);
    grid->addWidget(active, 1, 0, 1, 2);
    auto* url = new QLineEdit;
    url->setReadOnly(true);
    bind(m_form.txtURL, url);
    grid->addWidget(url, 2, 0, 1, 2);
    auto* add = new QPushButton;
    bind(m_form.cmdAddShortcut, add);
    grid->addWidget(add, 3, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    return group;
}

QWidget* MainWindow::buildBottomPanel()
{
    auto* panel = new QWidget;
    bind(m_form.fraBottom, panel);
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(0, 0, 0, 0);
    const auto addLabel = [this, grid](Control& control, int row, int column) {
        auto* text = new QLabel;
        bind(control, text);
        grid->addWidget(text, row, column);
    };
    addLabel(m_form.Label1, 0, 0);
    addLabel(m_form.lblLastEntry, 0, 1);
    addLabel(m_form.Label3, 1, 0);
    addLabel(m_form.lblEntries, 1, 1);
    auto* autoJump = new QCheckBox;
    bindCheckBox(m_form.chkAutoJump, autoJump);
    grid->addWidget(autoJump, 2, 0, 1, 2);
    grid->addWidget(separator(3), 3, 0, 1, 2);
    auto* pause = new QPushButton;
    bind(m_form.cmdPause, pause);
    grid->addWidget(pause, 4, 0);
    auto* exit = new QPushButton;
    bind(m_form.cmdExit, exit);
    grid->addWidget(exit, 4, 1);
    grid->setColumnStretch(1, 1);
    return panel;
}

void MainWindow::openHelp()
{
    if (!m_help)
        m_help = new HelpWindow(this);
    m_help->showFile(m_form.HelpFile());
}

void MainWindow::keyPressEvent(QKeyEvent* event)
{
    // Keys the program sends itself arrive here rather than through the shortcut.
    if (event->key() == Qt::Key_F1) {
        openHelp();
        return;
    }
    QWidget::keyPressEvent(event);
}

void MainWindow::showEvent(QShowEvent* event)
{
    m_form.window.setVisible(true);
    QWidget::showEvent(event);
}

void MainWindow::hideEvent(QHideEvent* event)
{
    m_form.window.setVisible(false);
    QWidget::hideEvent(event);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!m_unloaded) {
        m_unloaded = true;
        m_form.Form_Unload();
    }
    event->accept();
    QCoreApplication::quit();
}

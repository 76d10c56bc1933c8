#include "MainWindow.h"

#include "ControlBinding.h"
#include "FittingFont.h"
#include "HelpWindow.h"
#include "RememberedValuesWindow.h"
#include "Twips.h"
#include "frmMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>
#include <QTreeWidget>

using namespace ControlBinding;

namespace {
// The docked bar's outer width: 2625 twips.
constexpr int BarWidth = 175;
// Controls end 60 twips before the client area's right edge.
constexpr int RightMargin = 4;
// The link to "Remembered values": in the bottom panel's free space right of the visits, which
// hold at most five digits.
constexpr int RememberedLinkLeft = 1410;
constexpr int RememberedLinkTop = 240;
// Below this the captions would no longer be readable; they are cut off instead.
constexpr double SmallestFontPoints = 6.5;

template <class W> W* child(QWidget* parent)
{
    auto* widget = new W(parent);
    return widget;
}
} // namespace

MainWindow::MainWindow(frmMain& form, QWidget* parent) : QWidget(parent), m_form(form)
{
    bind(form.window, this);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    QFont appFont(QStringLiteral("Tahoma"));
    appFont.setPointSizeF(8.25);
    setFont(appFont);
    resize(BarWidth, form.window.geometry().height() / TwipsPerPixel);

    auto* help = child<QLabel>(this);
    bind(form.lblHelp, help);
    help->setFont(QFont(QStringLiteral("Tahoma"), 9, QFont::Bold));
    help->setStyleSheet(QStringLiteral("color: blue;"));
    help->setCursor(Qt::PointingHandCursor);

    for (int i : {0, 3, 1})
        separator(i, this);
    label(2);
    auto* profiles = child<QComboBox>(this);
    bindCombo(form.cboProfiles, profiles);
    bind(form.cmdProfiles, child<QPushButton>(this));

    label(0);
    auto* cookie = child<QLabel>(this);
    cookie->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(16, 16));
    bind(form.imgCookie, cookie);
    auto* active = child<QLineEdit>(this);
    active->setReadOnly(true);
    active->setStyleSheet(QStringLiteral("QLineEdit { background: palette(button); }"));
    bind(form.txtActive, active);
    auto* url = child<QLineEdit>(this);
    url->setReadOnly(true);
    bind(form.txtURL, url);
    bind(form.cmdAddShortcut, child<QPushButton>(this));

    auto* list = child<QTreeWidget>(this);
    list->setHeaderHidden(true);
    list->setRootIsDecorated(false);
    list->setColumnCount(1);
    list->setIconSize(QSize(12, 12));
    QFont listFont(QStringLiteral("Tahoma"));
    listFont.setPointSizeF(6.75);
    list->setFont(listFont);
    bindList(form.lvShortcuts, list);
    qobject_cast<QLabel*>(label(1))->setBuddy(list);

    buildBottomPanel();
    auto* status = child<QLabel>(this);
    status->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    bind(form.StatusBar, status);

    bindTimer(form.TimerClearStatus, this);
    stretchValues();
    FittingFont::shrinkToFit(this, SmallestFontPoints);

    auto* helpKey = new QShortcut(QKeySequence(Qt::Key_F1), this);
    helpKey->setContext(Qt::ApplicationShortcut);
    connect(helpKey, &QShortcut::activated, this, [this] { openHelp(); });
    auto* rememberedKey = new QShortcut(QKeySequence(Qt::Key_F2), this);
    rememberedKey->setContext(Qt::ApplicationShortcut);
    connect(rememberedKey, &QShortcut::activated, this, &MainWindow::openRememberedValues);
    connect(&form, &frmMain::unloadRequested, this, &QWidget::close);
}

QWidget* MainWindow::separator(int index, QWidget* parent)
{
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    bind(*m_form.Frame[index], line);
    return line;
}

QWidget* MainWindow::label(int index)
{
    auto* text = child<QLabel>(this);
    bind(*m_form.Label[index], text);
    return text;
}

void MainWindow::buildBottomPanel()
{
    m_bottom = child<QWidget>(this);
    bind(m_form.fraBottom, m_bottom);
    for (Control* control :
         {&m_form.Label1, &m_form.lblLastEntry, &m_form.Label3, &m_form.lblEntries})
        bind(*control, child<QLabel>(m_bottom));
    for (Control* value : {&m_form.lblLastEntry, &m_form.lblEntries})
        connect(value, &Control::changed, this, &MainWindow::stretchValues);
    auto* remembered =
        new QLabel(QStringLiteral("<a href=\"remembered\">Remembered...</a>"), m_bottom);
    remembered->setObjectName(QStringLiteral("lblRemembered"));
    remembered->setToolTip(QStringLiteral("See and correct what Tolvane remembers (F2)"));
    remembered->setTextInteractionFlags(Qt::LinksAccessibleByMouse);
    remembered->move(RememberedLinkLeft / TwipsPerPixel, RememberedLinkTop / TwipsPerPixel);
    remembered->adjustSize();
    connect(remembered, &QLabel::linkActivated, this, &MainWindow::openRememberedValues);
    separator(2, m_bottom);
    bindCheckBox(m_form.chkAutoJump, child<QCheckBox>(m_bottom));
    bind(m_form.cmdPause, child<QPushButton>(m_bottom));
    bind(m_form.cmdExit, child<QPushButton>(m_bottom));
}

void MainWindow::alignBottom()
{
    const int width = this->width() * TwipsPerPixel;
    const int height = this->height() * TwipsPerPixel;
    const QRect status = m_form.StatusBar.geometry();
    const QRect panel = m_form.fraBottom.geometry();
    m_form.StatusBar.setGeometry(QRect(0, height - status.height(), width, status.height()));
    m_form.fraBottom.setGeometry(
        QRect(0, height - status.height() - panel.height(), width, panel.height()));
    stretchValues();
}

void MainWindow::stretchValues()
{
    // A date and time do not fit the width the values were placed in; the panel is empty to
    // their right, so they reach to its margin.
    for (const char* name : {"lblLastEntry", "lblEntries"}) {
        auto* value = m_bottom->findChild<QLabel*>(QLatin1String(name));
        // The visits end where the link to the remembered values begins.
        const int end = QLatin1String(name) == QLatin1String("lblEntries")
                            ? RememberedLinkLeft / TwipsPerPixel - 2
                            : m_bottom->width() - RightMargin;
        value->resize(std::max(value->width(), end - value->x()), value->height());
    }
}

void MainWindow::openHelp(const QString& section)
{
    if (!m_help)
        m_help = new HelpWindow(this);
    m_help->showFile(m_form.HelpFile(), section);
}

void MainWindow::openRememberedValues()
{
    if (!m_remembered) {
        m_remembered = new RememberedValuesWindow(m_form, this);
        m_remembered->setWindowFlag(Qt::Window);
        connect(m_remembered, &RememberedValuesWindow::helpRequested, this,
                [this](const QString& section) { openHelp(section); });
    }
    m_remembered->show();
    m_remembered->raise();
    m_remembered->activateWindow();
}

void MainWindow::keyPressEvent(QKeyEvent* event)
{
    // Keys the program sends itself arrive here rather than through the shortcut.
    if (event->key() == Qt::Key_F1) {
        openHelp();
        return;
    }
    if (event->key() == Qt::Key_F2) {
        openRememberedValues();
        return;
    }
    QWidget::keyPressEvent(event);
}

void MainWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    alignBottom();
    m_form.Form_Resize();
}

void MainWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        m_form.Form_Resize();
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

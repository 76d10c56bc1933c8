#include "DesktopShell.h"

#include "AppError.h"
#include "BrowserLocator.h"
#include "DefaultApplication.h"
#include "MessageBoxes.h"

#include "Controls.h"

#include <QApplication>
#include <QCursor>
#include <QDesktopServices>
#include <QDir>
#include <QKeyEvent>
#include <QMenu>
#include <QStandardPaths>
#include <QUrl>
#include <QWidget>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {
// The oldest browser whose DevTools protocol offers what the adapter uses.
const QString MinimumChromiumVersion = QStringLiteral("100.0");
// The oldest Firefox the BiDi adapter was tried with: older ones lack events it follows.
const QString MinimumFirefoxVersion = QStringLiteral("153.0");

// The single-instance lock lives where only this user can write: the user's runtime folder
// (XDG_RUNTIME_DIR), else a folder of the temporary folder named after the user's id. In a shared
// folder one user's lock would silence every other user's Tolvane.
QString instanceLockFile()
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
#ifdef Q_OS_UNIX
    if (folder.isEmpty()) {
        folder = QDir::tempPath() + QStringLiteral("/Tolvane-%1").arg(::getuid());
        QDir().mkpath(folder);
        QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                          QFileDevice::ExeOwner);
    }
#else
    if (folder.isEmpty())
        folder = QDir::tempPath();
#endif
    return folder + QStringLiteral("/Tolvane.lock");
}

QString withoutTrailingSeparator(QString path)
{
    while (path.size() > 1 && (path.endsWith(QLatin1Char('/')) || path.endsWith(QLatin1Char('\\'))))
        path.chop(1);
    return QDir::toNativeSeparators(path);
}
} // namespace

DesktopShell::DesktopShell() : m_browser(BrowserLocator::executable()) {}

DesktopShell::~DesktopShell() = default;

void DesktopShell::setKeyTarget(QWidget* target)
{
    m_keyTarget = target;
}

std::optional<BrowserLocator::VersionInfo> DesktopShell::browserVersion()
{
    // Asked once: running the browser is slow and its answer does not change while we run.
    if (!m_versionAsked) {
        m_version = BrowserLocator::queryVersion(m_browser);
        m_versionAsked = true;
    }
    return m_version;
}

bool DesktopShell::IsAnotherInstanceRunning()
{
    if (m_instanceLock)
        return false;
    auto lock = std::make_unique<QLockFile>(instanceLockFile());
    // A lock left by a copy that died is taken over; only a live holder counts.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return true;
    m_instanceLock = std::move(lock);
    return false;
}

BrowserIdentity DesktopShell::browserIdentity()
{
    const QString token = BrowserLocator::executableToken(m_browser);
    if (BrowserLocator::isFirefox(m_browser)) {
        const auto version = browserVersion();
        return {version ? version->productName : QStringLiteral("Mozilla Firefox"),
                QStringLiteral("Firefox"), token, MinimumFirefoxVersion};
    }
    QString name = QStringLiteral("Chromium");
    if (const auto version = browserVersion())
        name = version->productName;
    return {name, name, token, MinimumChromiumVersion};
}

DllVersion DesktopShell::DllGetVersion()
{
    const auto version = browserVersion();
    if (!version)
        throw AppError(ErrorNumber::FileNotFound,
                       QStringLiteral("No web browser Tolvane can follow could be run."));
    return {version->major, version->minor};
}

QString DesktopShell::TempFolder()
{
    return withoutTrailingSeparator(QDir::tempPath());
}

QString DesktopShell::FindExecutable(const QString& file)
{
    return DefaultApplication::forFile(file);
}

std::optional<QString> DesktopShell::AppDataFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (folder.isEmpty())
        return std::nullopt;
    return withoutTrailingSeparator(folder);
}

QString DesktopShell::programFilesFolder(const QString& programDir)
{
    // Beside the program in a build tree; <prefix>/share/tolvane once installed in <prefix>/bin.
    const QString installed = QDir(programDir).absoluteFilePath(QStringLiteral("../share/tolvane"));
    if (!QFile::exists(programDir + QStringLiteral("/Tolvane.hlp")) &&
        QFile::exists(installed + QStringLiteral("/Tolvane.hlp")))
        return withoutTrailingSeparator(QDir::cleanPath(installed));
    return withoutTrailingSeparator(programDir);
}

QString DesktopShell::ProgramFolder()
{
    return programFilesFolder(QCoreApplication::applicationDirPath());
}

void DesktopShell::SendKeys(const QString& keys)
{
    static const QHash<QString, int> named = {
        {QStringLiteral("{F1}"), Qt::Key_F1},      {QStringLiteral("{ENTER}"), Qt::Key_Return},
        {QStringLiteral("{ESC}"), Qt::Key_Escape}, {QStringLiteral("{TAB}"), Qt::Key_Tab},
        {QStringLiteral("{DOWN}"), Qt::Key_Down},  {QStringLiteral("{UP}"), Qt::Key_Up}};
    const auto key = named.constFind(keys.toUpper());
    if (key == named.constEnd())
        throw AppError(ErrorNumber::InvalidCall,
                       QStringLiteral("Invalid procedure call or argument"));
    QWidget* target = QApplication::focusWidget();
    if (!target)
        target = m_keyTarget;
    if (!target)
        return;
    QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyPress, *key, Qt::NoModifier));
    QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyRelease, *key, Qt::NoModifier));
}

void DesktopShell::OpenAddress(const QString& address)
{
    // In the followed browser when there is one, else with the desktop's own handler.
    if (!m_opener) {
        QDesktopServices::openUrl(QUrl::fromUserInput(address));
        return;
    }
    try {
        m_opener(address);
    } catch (const AppError& error) {
        // Once per attempt: the user asked for the page and must learn why nothing came.
        m_notices->show(QStringLiteral("Tolvane could not open %1 in the browser.\n\n%2")
                            .arg(address, error.description()),
                        MsgButtons::Ok, MsgIcon::Exclamation, QStringLiteral("Tolvane"));
    }
}

namespace {
void fillMenu(QMenu& menu, MenuControl& model, Control* defaultItem)
{
    for (Control* item : model.items()) {
        if (auto* submenu = qobject_cast<MenuControl*>(item)) {
            QMenu* child = menu.addMenu(submenu->text());
            child->setEnabled(submenu->isEnabled());
            fillMenu(*child, *submenu, defaultItem);
        } else if (item->text() == QLatin1String("-")) {
            menu.addSeparator();
        } else if (item->isVisible()) {
            QAction* action = menu.addAction(item->text());
            action->setEnabled(item->isEnabled());
            action->setObjectName(item->objectName());
            if (item == defaultItem) {
                QFont bold = action->font();
                bold.setBold(true);
                action->setFont(bold);
                menu.setDefaultAction(action);
            }
            QObject::connect(action, &QAction::triggered, item, &Control::click);
        }
    }
}
} // namespace

void DesktopShell::PopupMenu(MenuControl& menu, Control* defaultItem)
{
    QMenu popup(m_keyTarget);
    popup.setObjectName(menu.objectName());
    fillMenu(popup, menu, defaultItem);
    popup.exec(QCursor::pos());
}

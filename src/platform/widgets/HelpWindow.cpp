#include "HelpWindow.h"

#include <QFile>

HelpWindow::HelpWindow(QWidget* parent) : QTextBrowser(parent)
{
    setObjectName(QStringLiteral("HelpWindow"));
    setWindowFlag(Qt::Window);
    setWindowTitle(QStringLiteral("Tolvane Help"));
    setOpenExternalLinks(true);
    resize(520, 640);
}

void HelpWindow::showFile(const QString& helpFile, const QString& section)
{
    QFile file(helpFile);
    if (file.open(QIODevice::ReadOnly)) {
        setHtml(QString::fromUtf8(file.readAll()));
        setWindowTitle(documentTitle().isEmpty() ? QStringLiteral("Tolvane Help")
                                                 : documentTitle());
    } else {
        setPlainText(QStringLiteral("The help file %1 could not be opened.").arg(helpFile));
        setWindowTitle(QStringLiteral("Tolvane Help - file not found"));
    }
    show();
    if (!section.isEmpty())
        scrollToAnchor(section);
    raise();
    activateWindow();
}

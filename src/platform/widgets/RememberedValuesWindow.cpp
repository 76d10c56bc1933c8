#include "RememberedValuesWindow.h"

#include "AppError.h"
#include "DataLocation.h"
#include "Profiles.h"
#include "SettingsStore.h"
#include "frmMain.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
const QString Caption = QStringLiteral("Remembered values");
const QString SizeSection = QStringLiteral("Remembered values");
const QString HelpSection = QStringLiteral("remembered-values");

QTableWidgetItem* cell(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    // A value of several lines shows its first, with the rest on hover.
    if (text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'))) {
        item->setToolTip(text);
        item->setText(QString(text)
                          .replace(QLatin1String("\r\n"), QStringLiteral(" \u21b5 "))
                          .replace(QLatin1Char('\n'), QStringLiteral(" \u21b5 ")));
    }
    return item;
}

QTableWidgetItem* number(int value)
{
    auto* item = new QTableWidgetItem;
    item->setData(Qt::DisplayRole, value);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
    return item;
}

void fillRow(QTableWidget* table, int row, int index, const QList<QTableWidgetItem*>& items)
{
    for (int column = 0; column < items.size(); ++column)
        table->setItem(row, column, items[column]);
    items.front()->setData(Qt::UserRole, index);
}
} // namespace

RememberedValuesWindow::RememberedValuesWindow(frmMain& form, QWidget* parent)
    : QDialog(parent), m_form(form)
{
    setObjectName(QStringLiteral("RememberedValuesWindow"));
    setWindowTitle(Caption);
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose, false);

    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("txtFilter"));
    m_filter->setPlaceholderText(QStringLiteral("Name, meaning, address or value"));
    m_filter->setClearButtonEnabled(true);
    auto* filterLabel = new QLabel(QStringLiteral("&Find:"), this);
    filterLabel->setBuddy(m_filter);
    connect(m_filter, &QLineEdit::textChanged, this, &RememberedValuesWindow::applyFilter);

    m_general = table({QStringLiteral("Remembered by"), QStringLiteral("Name"),
                       QStringLiteral("Meaning"), QStringLiteral("Value")});
    m_general->setObjectName(QStringLiteral("tblAnySite"));
    m_general->sortByColumn(1, Qt::AscendingOrder);
    m_sites = table({QStringLiteral("Address"), QStringLiteral("Last visit"),
                     QStringLiteral("Days visited"), QStringLiteral("Values")});
    m_sites->setObjectName(QStringLiteral("tblSites"));
    m_sites->sortByColumn(0, Qt::AscendingOrder);
    m_siteValues =
        table({QStringLiteral("Address"), QStringLiteral("Field name"), QStringLiteral("Value")});
    m_siteValues->setObjectName(QStringLiteral("tblSiteValues"));
    m_siteValues->sortByColumn(1, Qt::AscendingOrder);
    connect(m_sites, &QTableWidget::itemSelectionChanged, this,
            &RememberedValuesWindow::showSiteValues);
    // Enter on a site opens it: its values take the focus.
    connect(m_sites, &QTableWidget::itemActivated, this, [this] {
        if (m_siteValues->rowCount() > 0) {
            m_siteValues->setFocus();
            m_siteValues->selectRow(0);
        }
    });
    connect(m_general, &QTableWidget::itemActivated, this, &RememberedValuesWindow::editSelected);
    connect(m_siteValues, &QTableWidget::itemActivated, this,
            &RememberedValuesWindow::editSelected);

    auto* sitesPage = new QSplitter(Qt::Vertical, this);
    sitesPage->addWidget(m_sites);
    sitesPage->addWidget(m_siteValues);
    m_tabs = new QTabWidget(this);
    m_tabs->addTab(m_general, QStringLiteral("For &any site"));
    m_tabs->addTab(sitesPage, QStringLiteral("&Sites"));

    const auto button = [this](const char* name, const QString& text, auto slot) {
        auto* pushed = new QPushButton(text, this);
        pushed->setObjectName(QLatin1String(name));
        pushed->setAutoDefault(false);
        connect(pushed, &QPushButton::clicked, this, slot);
        return pushed;
    };
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(
        button("cmdEdit", QStringLiteral("&Edit..."), &RememberedValuesWindow::editSelected));
    buttons->addWidget(
        button("cmdRemove", QStringLiteral("&Remove"), &RememberedValuesWindow::removeSelected));
    m_forget = button("cmdForgetSite", QStringLiteral("&Forget this site"),
                      &RememberedValuesWindow::forgetSelectedSite);
    buttons->addWidget(m_forget);
    buttons->addStretch();
    buttons->addWidget(button("cmdExport", QStringLiteral("E&xport profile..."),
                              &RememberedValuesWindow::chooseExport));
    buttons->addWidget(button("cmdImport", QStringLiteral("&Import profile..."),
                              &RememberedValuesWindow::chooseImport));
    buttons->addWidget(button("cmdClose", QStringLiteral("Close"), &QDialog::close));

    m_said = new QLabel(this);
    m_said->setObjectName(QStringLiteral("lblSaid"));
    m_said->setWordWrap(true);
    auto* find = new QHBoxLayout;
    find->addWidget(filterLabel);
    find->addWidget(m_filter);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(find);
    layout->addWidget(m_tabs, 1);
    layout->addWidget(m_said);
    layout->addLayout(buttons);
    setTabOrder(m_filter, m_tabs);

    SettingsStore& settings = m_form.settings();
    resize(
        settings.GetSetting(SizeSection, QStringLiteral("Width"), QStringLiteral("720")).toInt(),
        settings.GetSetting(SizeSection, QStringLiteral("Height"), QStringLiteral("480")).toInt());
    // The window always shows the profile the bar has selected.
    connect(&m_form.cboProfiles, &Control::changed, this, [this] {
        if (isVisible())
            reload();
    });
}

QTableWidget* RememberedValuesWindow::table(const QStringList& headers)
{
    auto* shown = new QTableWidget(0, static_cast<int>(headers.size()), this);
    shown->setHorizontalHeaderLabels(headers);
    shown->setSelectionBehavior(QAbstractItemView::SelectRows);
    shown->setSelectionMode(QAbstractItemView::SingleSelection);
    shown->setEditTriggers(QAbstractItemView::NoEditTriggers);
    shown->setTabKeyNavigation(false);
    shown->setWordWrap(false);
    shown->verticalHeader()->hide();
    shown->verticalHeader()->setDefaultSectionSize(shown->fontMetrics().height() + 6);
    shown->horizontalHeader()->setStretchLastSection(true);
    shown->setSortingEnabled(true);
    return shown;
}

RememberedValues RememberedValuesWindow::values() const
{
    return RememberedValues(m_form.ini(), m_form, m_form.valueStore(), m_form.siteFiles());
}

void RememberedValuesWindow::reload()
{
    const RememberedValues remembered = values();
    m_entries = remembered.general();
    m_siteList = remembered.sites();
    setWindowTitle(Caption + QStringLiteral(" - ") + profileName());

    m_general->setSortingEnabled(false);
    m_general->setRowCount(static_cast<int>(m_entries.size()));
    for (int i = 0; i < m_entries.size(); ++i) {
        const auto& entry = m_entries[i];
        const bool byName = entry.kind == RememberedValues::Kind::Name;
        fillRow(m_general, i, i,
                {cell(byName ? QStringLiteral("field name") : QStringLiteral("meaning")),
                 cell(entry.name), cell(byName ? entry.meaning : QString()), cell(entry.value)});
    }
    m_general->setSortingEnabled(true);
    m_general->resizeColumnsToContents();

    const QString selectedFile = m_sites->currentRow() >= 0 && selectedIndex(m_sites) >= 0
                                     ? m_siteList.value(selectedIndex(m_sites)).file
                                     : QString();
    m_sites->setSortingEnabled(false);
    m_sites->clearSelection();
    m_sites->setRowCount(static_cast<int>(m_siteList.size()));
    for (int i = 0; i < m_siteList.size(); ++i) {
        const auto& site = m_siteList[i];
        fillRow(m_sites, i, i,
                {cell(site.address), cell(site.lastVisit), number(site.days), number(site.values)});
        m_sites->item(i, 0)->setToolTip(site.file);
    }
    m_sites->setSortingEnabled(true);
    m_sites->resizeColumnsToContents();
    for (int row = 0; row < m_sites->rowCount() && !selectedFile.isEmpty(); ++row) {
        if (m_siteList.value(indexOf(m_sites, row)).file == selectedFile)
            m_sites->selectRow(row);
    }
    showSiteValues();
    applyFilter();
}

void RememberedValuesWindow::showSiteValues()
{
    const int site = selectedIndex(m_sites);
    m_siteEntries = site >= 0 ? values().siteValues(m_siteList[site].file)
                              : QList<RememberedValues::SiteValue>();
    m_siteValues->setSortingEnabled(false);
    m_siteValues->setRowCount(static_cast<int>(m_siteEntries.size()));
    for (int i = 0; i < m_siteEntries.size(); ++i) {
        const auto& entry = m_siteEntries[i];
        fillRow(m_siteValues, i, i, {cell(entry.address), cell(entry.key), cell(entry.value)});
    }
    m_siteValues->setSortingEnabled(true);
    m_siteValues->resizeColumnsToContents();
    m_forget->setEnabled(site >= 0);
}

void RememberedValuesWindow::applyFilter()
{
    const QString filter = m_filter->text();
    for (int row = 0; row < m_general->rowCount(); ++row)
        m_general->setRowHidden(
            row, !RememberedValues::matches(m_entries.value(indexOf(m_general, row)), filter));
    // A site shows when its address or one of its values matches.
    const RememberedValues remembered = values();
    for (int row = 0; row < m_sites->rowCount(); ++row) {
        const auto& site = m_siteList.value(indexOf(m_sites, row));
        bool shown = filter.trimmed().isEmpty() ||
                     site.address.contains(filter.trimmed(), Qt::CaseInsensitive);
        for (const auto& entry :
             shown ? QList<RememberedValues::SiteValue>() : remembered.siteValues(site.file))
            shown =
                shown || RememberedValues::matches(
                             {RememberedValues::Kind::Name, entry.key, {}, entry.value}, filter);
        m_sites->setRowHidden(row, !shown);
    }
}

int RememberedValuesWindow::indexOf(const QTableWidget* table, int row)
{
    const QTableWidgetItem* first = table->item(row, 0);
    return first ? first->data(Qt::UserRole).toInt() : -1;
}

int RememberedValuesWindow::selectedIndex(const QTableWidget* table) const
{
    const auto rows = table->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : indexOf(table, rows.first().row());
}

QTableWidget* RememberedValuesWindow::focusedTable() const
{
    if (m_tabs->currentIndex() == 0)
        return m_general;
    return m_sites->hasFocus() ? m_sites : m_siteValues;
}

bool RememberedValuesWindow::confirm(const QString& question)
{
    return QMessageBox::question(this, Caption, question, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

void RememberedValuesWindow::editSelected()
{
    QTableWidget* shown = focusedTable();
    const int index = selectedIndex(shown);
    if (shown == m_sites || index < 0)
        return;
    const bool general = shown == m_general;
    const QString name = general ? m_entries[index].name : m_siteEntries[index].key;
    const QString current = general ? m_entries[index].value : m_siteEntries[index].value;
    bool accepted = false;
    const QString value = QInputDialog::getMultiLineText(
        this, Caption, QStringLiteral("Value of %1:").arg(name), current, &accepted);
    if (!accepted || value == current)
        return;
    const RememberedValues remembered = values();
    const int site = selectedIndex(m_sites);
    const bool written = general ? remembered.change(m_entries[index], value)
                                 : site >= 0 && remembered.change(m_siteList[site].file,
                                                                  m_siteEntries[index], value);
    say(written ? QStringLiteral("%1 changed; the next page filled gets the new value.").arg(name)
        : value.trimmed().isEmpty()
            ? QStringLiteral("A blank value is not remembered: to forget %1, remove it.").arg(name)
            : QStringLiteral("%1 could not be written; nothing was changed.").arg(name));
    reload();
}

void RememberedValuesWindow::removeSelected()
{
    QTableWidget* shown = focusedTable();
    if (shown == m_sites) {
        forgetSelectedSite();
        return;
    }
    const int index = selectedIndex(shown);
    if (index < 0)
        return;
    const bool general = shown == m_general;
    const QString name = general ? m_entries[index].name : m_siteEntries[index].key;
    if (!confirm(QStringLiteral("Forget the value of %1?").arg(name)))
        return;
    const RememberedValues remembered = values();
    const int site = selectedIndex(m_sites);
    const bool removed =
        general ? remembered.remove(m_entries[index])
                : site >= 0 && remembered.remove(m_siteList[site].file, m_siteEntries[index]);
    say(removed ? QStringLiteral("%1 forgotten.").arg(name)
                : QStringLiteral("%1 could not be removed; nothing was changed.").arg(name));
    reload();
}

void RememberedValuesWindow::forgetSelectedSite()
{
    const int index = selectedIndex(m_sites);
    if (index < 0)
        return;
    const auto& site = m_siteList[index];
    if (!confirm(QStringLiteral("Forget everything remembered for %1: its %2 values and its "
                                "visits?")
                     .arg(site.address)
                     .arg(site.values)))
        return;
    say(values().forgetSite(site.file)
            ? QStringLiteral("%1 forgotten.").arg(site.address)
            : QStringLiteral("%1 could not be removed; nothing was changed.").arg(site.file));
    m_sites->clearSelection();
    reload();
}

ProfileTransfer::Profile RememberedValuesWindow::profile() const
{
    return {m_form.DataFolder(), m_form.GetProfilePrefix(), m_form.ProfilesFile(),
            m_form.cboProfiles.listIndex() + 1};
}

QString RememberedValuesWindow::profileName() const
{
    return m_form.cboProfiles.items().value(m_form.cboProfiles.listIndex());
}

bool RememberedValuesWindow::exportTo(const QString& path)
{
    const QString name = profileName();
    QSaveFile out(path);
    const bool written =
        out.open(QIODevice::WriteOnly) &&
        out.write(ProfileTransfer(m_form.ini()).exportProfile(profile(), name)) >= 0 &&
        out.commit();
    say(written ? QStringLiteral("The profile %1 was exported to %2.").arg(name, path)
                : QStringLiteral("The profile could not be exported to %1: %2")
                      .arg(path, out.errorString()));
    return written;
}

bool RememberedValuesWindow::importFrom(const QString& path)
{
    QFile in(path);
    if (!in.open(QIODevice::ReadOnly)) {
        say(QStringLiteral("%1 could not be read: %2").arg(path, in.errorString()));
        return false;
    }
    const QByteArray document = in.readAll();
    const ProfileTransfer::Profile target = profile();
    const ProfileTransfer transfer(m_form.ini());
    const ProfileTransfer::Plan plan = transfer.examine(document, target);
    if (!plan.refusal.isEmpty()) {
        say(plan.refusal + QStringLiteral(" Nothing was imported."));
        return false;
    }
    bool takeImported = false;
    if (plan.differing > 0) {
        const auto answer = QMessageBox::question(
            this, Caption,
            QStringLiteral("%1 remembered values of the file differ from this profile's. Take "
                           "the file's values? (No keeps this profile's.)")
                .arg(plan.differing),
            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer == QMessageBox::Cancel)
            return false;
        takeImported = answer == QMessageBox::Yes;
    }
    const QString failure = transfer.importProfile(document, target, takeImported);
    m_form.profiles().RequeryProfiles();
    m_form.shortcutList().RequeryShortcuts();
    say(failure.isEmpty() ? QStringLiteral("Imported %1 files and %2 entries into this profile.")
                                .arg(plan.newFiles)
                                .arg(plan.added)
                          : failure);
    reload();
    return failure.isEmpty();
}

void RememberedValuesWindow::chooseExport()
{
    const QString path = QFileDialog::getSaveFileName(
        this, QStringLiteral("Export profile"),
        profileName() + QStringLiteral(".tolvane-profile.json"),
        QStringLiteral("Tolvane profiles (*.tolvane-profile.json);;All files (*)"));
    if (!path.isEmpty())
        exportTo(path);
}

void RememberedValuesWindow::chooseImport()
{
    const QString path = QFileDialog::getOpenFileName(
        this, QStringLiteral("Import profile"), QString(),
        QStringLiteral("Tolvane profiles (*.tolvane-profile.json);;All files (*)"));
    if (!path.isEmpty())
        importFrom(path);
}

void RememberedValuesWindow::say(const QString& text)
{
    m_said->setText(text);
}

void RememberedValuesWindow::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Delete:
        removeSelected();
        return;
    case Qt::Key_F1:
        Q_EMIT helpRequested(HelpSection);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // A table has already taken it as "edit" (or "open" on a site); it closes nothing.
        return;
    default:
        break;
    }
    QDialog::keyPressEvent(event);
}

void RememberedValuesWindow::showEvent(QShowEvent* event)
{
    reload();
    QDialog::showEvent(event);
}

void RememberedValuesWindow::done(int result)
{
    SettingsStore& settings = m_form.settings();
    try {
        settings.SaveSetting(SizeSection, QStringLiteral("Width"), QString::number(width()));
        settings.SaveSetting(SizeSection, QStringLiteral("Height"), QString::number(height()));
    } catch (const AppError&) {
        // A size not kept costs nothing but the size.
    }
    QDialog::done(result);
}

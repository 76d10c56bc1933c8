#pragma once

#include "ProfileTransfer.h"
#include "RememberedValues.h"

#include <QDialog>

class frmMain;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;
class QTableWidget;

// "Remembered values": what the current profile remembers, to see and correct, and the profile
// carried to or from a file. Modeless beside the bar; the profile selector switches it.
class RememberedValuesWindow : public QDialog
{
    Q_OBJECT
public:
    explicit RememberedValuesWindow(frmMain& form, QWidget* parent = nullptr);

    // Everything read again from the files (after a change, a switch of profile, or a show).
    void reload();
    // The profile to or from that file; what happened is said to the user.
    bool exportTo(const QString& path);
    bool importFrom(const QString& path);

Q_SIGNALS:
    // F1: the help, at the section of that name.
    void helpRequested(const QString& section);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void done(int result) override;

private:
    QTableWidget* table(const QStringList& headers);
    QTableWidget* focusedTable() const;
    void applyFilter();
    void showSiteValues();
    void editSelected();
    void removeSelected();
    void forgetSelectedSite();
    void chooseExport();
    void chooseImport();
    void say(const QString& text);
    // The row's index into what was read, kept with the row since sorting moves rows.
    static int indexOf(const QTableWidget* table, int row);
    int selectedIndex(const QTableWidget* table) const;
    RememberedValues values() const;
    // The profile the bar has selected, where its files are, and its name.
    ProfileTransfer::Profile profile() const;
    QString profileName() const;
    bool confirm(const QString& question);

    frmMain& m_form;
    QLineEdit* m_filter = nullptr;
    QTabWidget* m_tabs = nullptr;
    QTableWidget* m_general = nullptr;
    QTableWidget* m_sites = nullptr;
    QTableWidget* m_siteValues = nullptr;
    QPushButton* m_forget = nullptr;
    QLabel* m_said = nullptr;
    QList<RememberedValues::Entry> m_entries;
    QList<RememberedValues::Site> m_siteList;
    QList<RememberedValues::SiteValue> m_siteEntries;
};

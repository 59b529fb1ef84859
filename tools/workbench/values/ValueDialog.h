#pragma once

#include "hostapi/VariableScope.h"

#include <QDialog>
#include <QVariantList>

class QLabel;
class QSettings;

namespace Workbench
{
class ValueEditor;

/// Edits the value of a list or table variable: a list with one item a line and the type of each, a table
/// as a grid of cells.
class ValueDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param type VarType::List or VarType::Table
    ValueDialog(const QString &name, VarType type, const QVariantList &value, QWidget *parent = nullptr);

    /// The value as edited.
    QVariantList value() const;

    /// Closes the dialog without the edits. When there are some, the user is asked before.
    void reject() override;

    /// Where the folder of the last import or export is kept. Without, each begins in the current folder.
    void setSettings(QSettings &settings);

    /// Asks how the file \a fileName is to be read, and takes the value from it. If that cannot be read, says why and
    /// changes nothing.
    void importFile(const QString &fileName);

    /// Writes the value to the file \a fileName, or says why it cannot be written.
    void exportFile(const QString &fileName);

private:
    void addFileActions();
    void chooseImport();
    void chooseExport();
    QString folder() const;
    void keepFolder(const QString &fileName);
    void showMessage(const QString &message);
    void showCount();

    VarType m_type;
    ValueEditor *m_editor;
    QSettings *m_settings = nullptr;
    QLabel *m_count;
    QLabel *m_message;
};
} // namespace Workbench

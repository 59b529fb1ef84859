#pragma once

#include "host/files/ValueImport.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QPushButton;
class QSpinBox;
class QTableView;

namespace Workbench
{
class ImportPreview;

/// Asks how a file becomes a list or a table, and shows at each choice what comes of it.
class ImportDialog : public QDialog
{
    Q_OBJECT

public:
    /// \param bytes what the file \a fileName holds
    /// \param type VarType::List or VarType::Table
    ImportDialog(const QString &fileName, const QByteArray &bytes, VarType type, QWidget *parent = nullptr);

    /// What the file gives, once the dialog is accepted.
    QVariantList value() const;

    /// Whether that goes behind the present value instead of in its place.
    bool appends() const;

    /// Reads the whole file. When that cannot be done as chosen, says why and where, and stays open.
    void accept() override;

private:
    void guess(const QString &fileName);
    void createControls(QFormLayout &form);
    QComboBox *addChoice(QFormLayout &form, const QString &label, const QString &name);
    void createPreview();
    void showForm();
    void takeForm();
    void chooseEncoding();
    void chooseType();
    void showPreview();
    void showMessage(const QString &message);

    QByteArray m_bytes;
    VarType m_type;
    QString m_text; ///< The bytes in the chosen encoding.
    QString m_error; ///< Why there is no such text; empty when there is.
    StepHost::ImportForm m_form;
    QVariantList m_value;
    ImportPreview *m_preview;
    QTableView *m_view;
    QComboBox *m_encoding = nullptr;
    QComboBox *m_shape = nullptr;
    QSpinBox *m_column = nullptr;
    QComboBox *m_separator = nullptr;
    QComboBox *m_quotes = nullptr;
    QCheckBox *m_header = nullptr;
    QComboBox *m_columnType = nullptr;
    QComboBox *m_place = nullptr;
    QLabel *m_message;
    QPushButton *m_import = nullptr;
    bool m_isShowingForm = false;
};
} // namespace Workbench

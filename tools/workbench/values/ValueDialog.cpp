#include "ValueDialog.h"

#include "ImportDialog.h"
#include "ValueEditor.h"
#include "ValueModel.h"
#include "ValueView.h"
#include "host/files/InputFile.h"
#include "host/files/ValueFile.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/ColoredLabel.h"
#include "tools/workbench/look/Colors.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QToolBar>
#include <QVBoxLayout>

namespace Workbench
{
namespace
{
const QLatin1String folderKey("values/folder");
} // namespace

ValueDialog::ValueDialog(const QString &name, VarType type, const QVariantList &value, QWidget *parent)
    : QDialog(parent), m_type(type), m_editor(new ValueEditor(type, value)), m_count(new QLabel),
      m_message(new ColoredLabel(Colors::warning))
{
    const QString shownName = StepHost::inOneLine(shortened(name));
    setWindowTitle(type == VarType::Table ? tr("Table “%1”").arg(shownName) : tr("List “%1”").arg(shownName));
    m_editor->view().setAccessibleName(windowTitle());
    addFileActions();

    auto *buttons = new QDialogButtonBox;
    buttons->addButton(tr("OK"), QDialogButtonBox::AcceptRole)->setDefault(false);
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    const QList<QAbstractButton *> allButtons = buttons->buttons();
    for (QAbstractButton *button : allButtons)
        static_cast<QPushButton *>(button)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    m_message->setObjectName(QStringLiteral("message"));
    m_message->hide();

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_count);
    bottom->addStretch();
    bottom->addWidget(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_editor, 1);
    layout->addWidget(m_message);
    layout->addLayout(bottom);
    m_editor->setFocus();
    resize(1000, 560);

    connect(m_editor, &ValueEditor::told, this, &ValueDialog::showMessage);
    const ValueModel &model = m_editor->model();
    connect(&model, &QAbstractItemModel::modelReset, this, &ValueDialog::showCount);
    connect(&model, &QAbstractItemModel::rowsInserted, this, &ValueDialog::showCount);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &ValueDialog::showCount);
    showCount();
}

void ValueDialog::addFileActions()
{
    QToolBar &bar = m_editor->toolBar();
    bar.addSeparator();
    const auto add = [&](const QString &text, const QString &icon, const QKeySequence &key, auto slot) {
        QAction *action = bar.addAction(themedIcon(icon), text, this, slot);
        action->setShortcut(key);
        action->setToolTip(QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText)));
    };
    add(tr("Import…"), QStringLiteral("open"), Qt::CTRL | Qt::Key_O, &ValueDialog::chooseImport);
    add(tr("Export…"), QStringLiteral("save"), Qt::CTRL | Qt::Key_S, &ValueDialog::chooseExport);
}

QVariantList ValueDialog::value() const
{
    return m_editor->value();
}

void ValueDialog::reject()
{
    if (m_editor->isEdited()) {
        QMessageBox box(QMessageBox::Warning, tr("Unsaved changes"),
                        tr("Keep what was changed in this dialog?"), QMessageBox::NoButton, this);
        QPushButton *keepButton = box.addButton(tr("Keep"), QMessageBox::AcceptRole);
        QPushButton *discardButton = box.addButton(tr("Discard"), QMessageBox::DestructiveRole);
        box.setEscapeButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
        box.setDefaultButton(keepButton);
        box.exec();
        if (box.clickedButton() == keepButton)
            accept();
        if (box.clickedButton() != discardButton)
            return;
    }
    QDialog::reject();
}

void ValueDialog::setSettings(QSettings &settings)
{
    m_settings = &settings;
}

QString ValueDialog::folder() const
{
    return m_settings ? m_settings->value(folderKey).toString() : QString();
}

void ValueDialog::keepFolder(const QString &fileName)
{
    if (m_settings)
        m_settings->setValue(folderKey, QFileInfo(fileName).absolutePath());
}

void ValueDialog::chooseImport()
{
    const QString fileName = QFileDialog::getOpenFileName(
        this, tr("Import"), folder(), tr("Text and CSV files (*.txt *.csv *.tsv);;All files (*)"));
    if (!fileName.isEmpty())
        importFile(fileName);
}

void ValueDialog::importFile(const QString &fileName)
{
    const auto bytes = StepHost::readInputFile(fileName);
    showMessage(bytes ? QString() : bytes.error());
    if (!bytes)
        return;
    keepFolder(fileName);
    ImportDialog dialog(fileName, *bytes, m_type, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_editor->replaceValue(dialog.appends() ? value() + dialog.value() : dialog.value());
}

void ValueDialog::chooseExport()
{
    const QString filter =
        tr("Text files (*.txt);;CSV files (*.csv);;Tab-separated files (*.tsv);;JSON files (*.json)");
    QString chosenFilter = m_type == VarType::Table ? filter.section(QLatin1String(";;"), 1, 1) : QString();
    QString fileName = QFileDialog::getSaveFileName(this, tr("Export"), folder(), filter, &chosenFilter);
    if (fileName.isEmpty())
        return;
    // Who chooses a form and types a name without a suffix means that form.
    if (QFileInfo(fileName).suffix().isEmpty())
        fileName += chosenFilter.section(QLatin1Char('*'), -1).chopped(1);
    exportFile(fileName);
}

void ValueDialog::exportFile(const QString &fileName)
{
    const auto written = m_type == VarType::Table ? StepHost::writeTable(fileName, value())
                                                  : StepHost::writeList(fileName, value());
    if (written)
        keepFolder(fileName);
    showMessage(written ? *written : written.error());
}

void ValueDialog::showMessage(const QString &message)
{
    m_message->setText(StepHost::inLines(shortened(message)));
    m_message->setVisible(!message.isEmpty());
}

void ValueDialog::showCount()
{
    const int rows = m_editor->model().rowCount();
    m_count->setText(m_type == VarType::Table ? tr("%n row(s)", nullptr, rows)
                                              : tr("%n item(s)", nullptr, rows));
}
} // namespace Workbench

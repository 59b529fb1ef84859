#include "ImportDialog.h"

#include "ImportPreview.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/look/ColoredLabel.h"
#include "tools/workbench/look/Colors.h"
#include "tools/workbench/look/PaneView.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace Workbench
{
using StepHost::ColumnType;
using StepHost::ImportShape;
using StepHost::TextEncoding;

namespace
{
template<typename Value>
void addItem(QComboBox *box, const QString &text, Value value)
{
    box->addItem(text, int(value));
}

void select(QComboBox *box, int value)
{
    box->setCurrentIndex(box->findData(value));
}

int chosen(const QComboBox *box)
{
    return box->currentData().toInt();
}

int widest(const QVector<QStringList> &rows)
{
    int columns = 0;
    for (const QStringList &row : rows)
        columns = std::max(columns, row.size());
    return columns;
}
// Whether a column holds numbers, or yes and no, below a name.
bool looksLikeHeader(const QVector<QStringList> &rows, StepHost::ImportForm form)
{
    form.hasHeader = true;
    for (int column = 0; column < widest(rows); ++column) {
        const QString first = rows.first().value(column);
        if (!first.isEmpty() && first.at(0).isLetter()
            && guessColumn(rows.mid(0, 1), column, StepHost::ImportForm()) == ColumnType::Text
            && guessColumn(rows, column, form) != ColumnType::Text)
            return true;
    }
    return false;
}
} // namespace

ImportDialog::ImportDialog(const QString &fileName, const QByteArray &bytes, VarType type, QWidget *parent)
    : QDialog(parent), m_bytes(bytes), m_type(type), m_preview(new ImportPreview(this)),
      m_view(new PaneView<QTableView>), m_message(new ColoredLabel(Colors::warning))
{
    setWindowTitle(tr("Import “%1”").arg(StepHost::inOneLine(shortened(QFileInfo(fileName).fileName()))));
    auto *form = new QFormLayout;
    createControls(*form);
    createPreview();
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setWordWrap(true);
    auto *buttons = new QDialogButtonBox;
    m_import = buttons->addButton(tr("Import"), QDialogButtonBox::AcceptRole);
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &ImportDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ImportDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_message);
    layout->addWidget(buttons);
    resize(680, 620);

    guess(fileName);
    showForm();
    chooseEncoding();
}

QComboBox *ImportDialog::addChoice(QFormLayout &form, const QString &label, const QString &name)
{
    auto *box = new QComboBox;
    box->setObjectName(name);
    box->setAccessibleName(label);
    form.addRow(label, box);
    return box;
}

void ImportDialog::createControls(QFormLayout &form)
{
    m_encoding = addChoice(form, tr("Encoding"), QStringLiteral("encoding"));
    const QVector<TextEncoding> encodings = StepHost::textEncodings();
    for (const TextEncoding encoding : encodings)
        addItem(m_encoding, StepHost::encodingName(encoding), encoding);
    m_shape = addChoice(form, tr("Take"), QStringLiteral("shape"));
    addItem(m_shape, tr("Lines"), ImportShape::Lines);
    addItem(m_shape, m_type == VarType::Table ? tr("Rows") : tr("Rows, each as a list"), ImportShape::Rows);
    if (m_type != VarType::Table)
        addItem(m_shape, tr("All cells, row by row"), ImportShape::Cells);
    addItem(m_shape, tr("One column"), ImportShape::Column);
    m_column = new QSpinBox;
    m_column->setObjectName(QStringLiteral("column"));
    m_column->setAccessibleName(tr("Column"));
    m_column->setMinimum(1);
    form.addRow(tr("Column"), m_column);
    m_separator = addChoice(form, tr("Separator"), QStringLiteral("separator"));
    addItem(m_separator, tr("Comma"), ',');
    addItem(m_separator, tr("Semicolon"), ';');
    addItem(m_separator, tr("Tabulator"), '\t');
    addItem(m_separator, tr("Vertical bar"), '|');
    addItem(m_separator, tr("Blank"), ' ');
    m_quotes = addChoice(form, tr("Quotation marks"), QStringLiteral("quotes"));
    addItem(m_quotes, tr("Double: \""), '"');
    addItem(m_quotes, tr("Single: '"), '\'');
    addItem(m_quotes, tr("None"), 0);
    m_header = new QCheckBox(tr("The first row names the columns"));
    m_header->setObjectName(QStringLiteral("header"));
    form.addRow(QString(), m_header);
    m_columnType = addChoice(form, tr("Type of the selected columns"), QStringLiteral("columnType"));
    for (const ColumnType type :
         {ColumnType::Auto, ColumnType::Text, ColumnType::Int, ColumnType::Double, ColumnType::Bool})
        addItem(m_columnType, ImportPreview::typeName(type), type);
    m_place = addChoice(form, tr("Present values"), QStringLiteral("place"));
    addItem(m_place, tr("Replace"), false);
    addItem(m_place, tr("Keep, and append to them"), true);

    connect(m_encoding, QOverload<int>::of(&QComboBox::activated), this, &ImportDialog::chooseEncoding);
    connect(m_columnType, QOverload<int>::of(&QComboBox::activated), this, &ImportDialog::chooseType);
    for (const QComboBox *box : {m_shape, m_separator, m_quotes})
        connect(box, QOverload<int>::of(&QComboBox::activated), this, &ImportDialog::takeForm);
    connect(m_column, QOverload<int>::of(&QSpinBox::valueChanged), this, &ImportDialog::takeForm);
    connect(m_header, &QCheckBox::toggled, this, &ImportDialog::takeForm);
}

void ImportDialog::createPreview()
{
    m_view->setObjectName(QStringLiteral("preview"));
    m_view->setAccessibleName(tr("Preview"));
    m_view->setModel(m_preview);
    m_view->setSelectionBehavior(QAbstractItemView::SelectColumns);
    m_view->setTabKeyNavigation(false);
    m_view->setWordWrap(false);
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 8);
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentColumnChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid() && !m_form.types.isEmpty())
                    select(m_columnType,
                           int(m_form.types.at(qMin(current.column(), m_form.types.size() - 1))));
            });
}

void ImportDialog::guess(const QString &fileName)
{
    m_form = StepHost::guessForm(fileName, m_bytes, m_type);
    m_form.types = {ColumnType::Auto};
    const auto text = StepHost::decodeText(m_bytes, m_form.encoding);
    if (!text)
        return;
    if (StepHost::holdsRows(fileName))
        m_form.csv.separator = StepHost::guessSeparator(*text);
    const auto rows = importedRows(*text, m_form, ImportPreview::mostRows);
    if (!rows)
        return;
    m_form.hasHeader = looksLikeHeader(*rows, m_form);
    // Somebody who takes a list from several columns is shown their rows; the other ways stand beside it.
    if (m_form.shape == ImportShape::Single)
        m_form.shape = widest(*rows) > 1 ? ImportShape::Rows : ImportShape::Cells;
}

void ImportDialog::showForm()
{
    m_isShowingForm = true;
    select(m_encoding, int(m_form.encoding));
    select(m_shape, int(m_form.shape));
    select(m_separator, m_form.csv.separator.unicode());
    select(m_quotes, m_form.csv.quote.unicode());
    m_header->setChecked(m_form.hasHeader);
    m_isShowingForm = false;
}

void ImportDialog::takeForm()
{
    if (m_isShowingForm)
        return;
    m_form.shape = ImportShape(chosen(m_shape));
    m_form.column = m_column->value() - 1;
    m_form.csv.separator = QChar(chosen(m_separator));
    m_form.csv.quote = QChar(chosen(m_quotes));
    m_form.hasHeader = m_header->isChecked();
    showPreview();
}

void ImportDialog::chooseEncoding()
{
    // Who has chosen one needs no advice any more.
    m_form.isEncodingCertain = m_form.isEncodingCertain || sender() == m_encoding;
    m_form.encoding = TextEncoding(chosen(m_encoding));
    const auto text = StepHost::decodeText(m_bytes, m_form.encoding);
    m_text = text.value_or(QString());
    m_error = text ? QString() : text.error();
    showPreview();
}

void ImportDialog::chooseType()
{
    const auto type = ColumnType(chosen(m_columnType));
    const QModelIndexList selected = m_view->selectionModel()->selectedColumns();
    if (selected.isEmpty())
        m_form.types = {type};
    while (m_form.types.size() < m_preview->columnCount())
        m_form.types.append(m_form.types.last());
    QVector<int> columns;
    for (const QModelIndex &index : selected) {
        columns.append(index.column());
        m_form.types[index.column()] = type;
    }
    showPreview();
    for (const int column : qAsConst(columns))
        m_view->selectionModel()->select(m_preview->index(0, column),
                                         QItemSelectionModel::Select | QItemSelectionModel::Columns);
}

void ImportDialog::showPreview()
{
    const bool hasCells = m_form.shape != ImportShape::Lines;
    m_separator->setEnabled(hasCells);
    m_quotes->setEnabled(hasCells);
    m_column->setEnabled(m_form.shape == ImportShape::Column);
    m_import->setEnabled(false);
    if (!m_error.isEmpty()) {
        m_preview->show({}, m_form);
        return showMessage(m_error);
    }
    const auto rows = importedRows(m_text, m_form, ImportPreview::mostRows);
    if (!rows) {
        m_preview->show({}, m_form);
        return showMessage(rows.error());
    }
    m_preview->show(*rows, m_form);
    m_column->setMaximum(qMax(1, widest(*rows)));
    m_view->horizontalHeader()->setSectionResizeMode(widest(*rows) == 1 ? QHeaderView::Stretch
                                                                        : QHeaderView::Interactive);
    m_import->setEnabled(true);
    const auto value = importedValue(*rows, m_form, m_type);
    if (!value)
        return showMessage(value.error());
    showMessage(
        m_form.isEncodingCertain
            ? QString()
            : tr("The file is not certain to be %1. When characters look wrong, choose another encoding.")
                  .arg(StepHost::encodingName(m_form.encoding)));
}

void ImportDialog::accept()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto value = importedRows(m_text, m_form).and_then([this](const QVector<QStringList> &rows) {
        return importedValue(rows, m_form, m_type);
    });
    QApplication::restoreOverrideCursor();
    if (!value)
        return showMessage(value.error());
    m_value = *value;
    QDialog::accept();
}

QVariantList ImportDialog::value() const
{
    return m_value;
}

bool ImportDialog::appends() const
{
    return chosen(m_place) != 0;
}

void ImportDialog::showMessage(const QString &message)
{
    m_message->setText(StepHost::inLines(shortened(message)));
    m_message->setVisible(!message.isEmpty());
}
} // namespace Workbench

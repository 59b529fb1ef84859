#include "SearchPane.h"

#include "SearchModel.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/document/ScriptDocument.h"
#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/look/PaneView.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

namespace Workbench
{
SearchPane::SearchPane(ScriptDocument &document, QWidget *parent)
    : QScrollArea(parent), m_document(document), m_model(new SearchModel(document.model(), this)),
      m_text(createField(QStringLiteral("searchText"), tr("Find"))),
      m_replacement(createField(QStringLiteral("replacementText"), tr("Replace with"))),
      m_matchCase(new QCheckBox(tr("Match case"))), m_isWhole(new QCheckBox(tr("Whole texts only"))),
      m_find(createButton(QStringLiteral("find"), tr("Find"), &SearchPane::find)),
      m_replace(createButton(QStringLiteral("replaceAll"), tr("Replace all"), &SearchPane::replaceAll)),
      m_summary(new QLabel), m_view(new PaneView<QTreeView>)
{
    m_matchCase->setObjectName(QStringLiteral("matchCase"));
    m_isWhole->setObjectName(QStringLiteral("wholeTexts"));
    m_summary->setObjectName(QStringLiteral("searchSummary"));
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setMinimumWidth(1);
    m_replace->setToolTip(tr("Replace in settings and start values; “Undo” takes it back as a whole"));
    createView();
    auto *content = new QWidget;
    // Side by side, so that in a low dock the places have its whole height.
    auto *layout = new QHBoxLayout(content);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(6);
    layout->addWidget(createFields(), 2);
    layout->addWidget(m_view, 3);
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusProxy(m_text);

    connect(m_text, &QLineEdit::textChanged, this, &SearchPane::updateButtons);
    connect(m_text, &QLineEdit::returnPressed, this, &SearchPane::find);
    connect(m_replacement, &QLineEdit::returnPressed, this, &SearchPane::find);
    m_timer.setSingleShot(true);
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &SearchPane::searchAgain);
    connect(&document.undoStack(), &QUndoStack::indexChanged, &m_timer, qOverload<>(&QTimer::start));
    connect(&document, &ScriptDocument::replaced, this, [this] {
        m_lastSearch = nullptr;
        showHits({}, QString());
    });
    updateButtons();
}

QLineEdit *SearchPane::createField(const QString &name, const QString &text)
{
    auto *field = new QLineEdit;
    field->setObjectName(name);
    field->setPlaceholderText(text);
    field->setAccessibleName(text);
    // The frame and a little more.
    constexpr int margin = 28;
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(text) + margin);
    return field;
}

QPushButton *SearchPane::createButton(const QString &name, const QString &text,
                                      void (SearchPane::*slot)()) const
{
    auto *button = new QPushButton(text);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QWidget *SearchPane::createFields()
{
    auto *fields = new QWidget;
    auto *grid = new QGridLayout(fields);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(4);
    // The keyboard goes from one to the next in this order.
    grid->addWidget(m_text, 0, 0);
    grid->addWidget(m_replacement, 1, 0);
    grid->addWidget(m_find, 0, 1);
    grid->addWidget(m_replace, 1, 1);
    grid->addWidget(m_matchCase, 0, 2);
    grid->addWidget(m_isWhole, 1, 2);
    grid->addWidget(m_summary, 2, 0, 1, 3);
    grid->setColumnStretch(0, 1);
    grid->setRowStretch(3, 1);
    return fields;
}

void SearchPane::createView()
{
    m_view->setObjectName(QStringLiteral("searchHits"));
    m_view->setAccessibleName(tr("Places found"));
    m_view->setModel(m_model);
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->header()->resizeSection(SearchModel::WhereColumn, 150);
    m_view->header()->resizeSection(SearchModel::WhatColumn, 150);
    connect(m_view, &QTreeView::activated, this, &SearchPane::go);
}

StepHost::SearchPattern SearchPane::pattern() const
{
    return {m_text->text(), m_matchCase->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive,
            m_isWhole->isChecked()};
}

void SearchPane::find()
{
    m_lastSearch = [this, wanted = pattern()] {
        const QVector<StepHost::SearchHit> hits = ScriptEdits::find(m_document, wanted);
        showHits(hits, wanted.text.isEmpty() ? QString() : tr("Found in %n place(s)", nullptr, hits.size()));
    };
    m_lastSearch();
}

void SearchPane::replaceAll()
{
    const int count = ScriptEdits::replace(m_document, pattern(), m_replacement->text());
    find();
    m_timer.stop();
    m_summary->setText(tr("Replaced in %n text(s)", nullptr, count));
}

void SearchPane::showUses(const QString &name)
{
    m_lastSearch = [this, name] {
        QVector<StepHost::SearchHit> hits;
        const QVector<StepHost::VariableUse> uses = ScriptEdits::usesOf(m_document, name);
        for (const StepHost::VariableUse &use : uses) {
            const Operation &step = m_document.model().step(use.row);
            const QString text = step.property(use.property.toUtf8().constData()).toString();
            hits.append({StepHost::SearchHit::Setting, use.row, use.property, QString(), text, 1});
        }
        const QString shown = StepHost::inOneLine(shortened(name));
        showHits(hits, tr("“%1” is used in %n setting(s)", nullptr, hits.size()).arg(shown));
    };
    m_lastSearch();
    if (m_model->rowCount() > 0)
        m_view->setCurrentIndex(m_model->index(0, 0));
    m_view->setFocus(Qt::OtherFocusReason);
}

void SearchPane::searchAgain()
{
    if (m_lastSearch && isVisible())
        m_lastSearch();
}

void SearchPane::showHits(const QVector<StepHost::SearchHit> &hits, const QString &summary)
{
    const int current = m_view->currentIndex().row();
    m_model->setHits(hits);
    if (current >= 0 && !hits.isEmpty())
        m_view->setCurrentIndex(m_model->index(qMin(current, hits.size() - 1), 0));
    m_summary->setText(summary);
}

void SearchPane::go(const QModelIndex &index)
{
    const StepHost::SearchHit hit = m_model->hit(index.row());
    if (hit.row < 0)
        emit variableRequested(hit.variable);
    else if (hit.row < m_document.model().rowCount())
        emit settingRequested(hit.row, hit.property);
}

void SearchPane::updateButtons()
{
    m_find->setEnabled(!m_text->text().isEmpty());
    m_replace->setEnabled(!m_text->text().isEmpty());
}
} // namespace Workbench

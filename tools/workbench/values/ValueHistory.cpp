#include "ValueHistory.h"

#include "ValueModel.h"

#include <algorithm>

namespace Workbench
{
using StepHost::ItemValue;

namespace
{
constexpr int undoLimit = 100;

/// A part of a value, from \a start on, that becomes another one.
struct Part
{
    int start = 0;
    QVariantList before;
    QVariantList after;
};

Part changedPart(const QVariantList &before, const QVariantList &after)
{
    const int shorter = std::min(before.size(), after.size());
    int start = 0;
    while (start < shorter && ItemValue::same(before.at(start), after.at(start)))
        ++start;
    int tail = 0;
    while (tail < shorter - start
           && ItemValue::same(before.at(before.size() - 1 - tail), after.at(after.size() - 1 - tail)))
        ++tail;
    return {start, before.mid(start, before.size() - start - tail),
            after.mid(start, after.size() - start - tail)};
}

class ValueCommand : public QUndoCommand
{
public:
    using Replace = std::function<void(int start, int count, const QVariantList &part)>;

    ValueCommand(const Part &part, const Replace &replace) : m_part(part), m_replace(replace) { }

    void undo() override
    {
        m_replace(m_part.start, m_part.after.size(), m_part.before);
    }

    void redo() override
    {
        // When it is pushed, the edit is done already.
        if (m_isDone)
            m_replace(m_part.start, m_part.before.size(), m_part.after);
        m_isDone = true;
    }

private:
    Part m_part;
    Replace m_replace;
    bool m_isDone = false;
};
} // namespace

ValueHistory::ValueHistory(ValueModel &model, QObject *parent)
    : QObject(parent), m_model(model), m_noted(model.value())
{
    m_stack.setUndoLimit(undoLimit);
    // What is edited in a cell comes from the view, not through edit().
    connect(&model, &QAbstractItemModel::dataChanged, this, &ValueHistory::noteEdit);
}

QUndoStack &ValueHistory::stack()
{
    return m_stack;
}

void ValueHistory::edit(const std::function<void()> &action)
{
    m_isEditing = true;
    action();
    m_isEditing = false;
    noteEdit();
}

void ValueHistory::noteEdit()
{
    if (m_isEditing)
        return;
    const Part part = changedPart(m_noted, m_model.value());
    m_noted = m_model.value();
    if (!part.before.isEmpty() || !part.after.isEmpty())
        m_stack.push(new ValueCommand(part, [this](int start, int count, const QVariantList &instead) {
            replace(start, count, instead);
        }));
}

void ValueHistory::replace(int start, int count, const QVariantList &instead)
{
    m_noted = m_noted.mid(0, start) + instead + m_noted.mid(start + count);
    m_model.setValue(m_noted);
}
} // namespace Workbench

#pragma once

#include <QUndoStack>
#include <QVariantList>

#include <functional>

namespace Workbench
{
class ValueModel;

/// What was done to a value, to be undone. Keeps of each edit only the items, or rows, from the first to the last that
/// changed: an item of a list of 1,000,000 costs no more than one of a short list.
class ValueHistory : public QObject
{
    Q_OBJECT

public:
    /// Notes each change of \a model's data, which has to outlive the history.
    explicit ValueHistory(ValueModel &model, QObject *parent = nullptr);

    QUndoStack &stack();

    /// Carries out \a action, and makes one edit of all that it changes.
    void edit(const std::function<void()> &action);

private:
    void noteEdit();
    void replace(int start, int count, const QVariantList &instead);

    ValueModel &m_model;
    QUndoStack m_stack;
    QVariantList m_noted; ///< The value after the last edit that the stack knows of.
    bool m_isEditing = false; ///< In edit(), which makes one edit of all that the model tells of.
};
} // namespace Workbench

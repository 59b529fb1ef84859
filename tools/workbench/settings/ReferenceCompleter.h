#pragma once

#include "hostapi/VariableScope.h"

#include <QCompleter>
#include <QVector>

class QLineEdit;
class QStringListModel;

namespace Workbench
{
/// Completes references to variables in a line edit: names after a "$", members after a ".".
class ReferenceCompleter : public QCompleter
{
    Q_OBJECT

public:
    /// Completes in \a edit, which owns the completer.
    explicit ReferenceCompleter(QLineEdit *edit);

    /// Offers the variables of \a variables whose type is one of \a types, or all when \a types is empty.
    /// Lists and tables are always offered for their members.
    void setVariables(const VariableScope &variables, const QVector<VarType> &types);

private:
    void update(const QString &text);

    QStringListModel *m_model;
    QStringList m_names;
    QStringList m_members;
};
} // namespace Workbench

#pragma once

#include "hostapi/Operation.h"

#include <QAbstractTableModel>
#include <QDateTime>
#include <QPointer>
#include <QVector>

namespace Workbench
{
/// What the runs and the files had to say, one line a row, the newest last.
class LogModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TimeColumn, StepColumn, MessageColumn, ColumnCount };
    enum Role {
        StepRole = Qt::UserRole, ///< `QObject *`: the step; null when the line is about none, or it is gone.
        WarningRole, ///< `bool`
    };

    explicit LogModel(QObject *parent = nullptr);

    /// Adds the line \a message, with the present time. Beyond 10,000 lines the oldest are dropped.
    void append(const QString &message);

    /// Adds the line \a message about \a step, which may be null and is called \a stepName.
    void append(const QString &message, const Operation *step, const QString &stepName);

    /// A warning about a step.
    struct Warning
    {
        QString message;
        const Operation *step; ///< Null for one that the script does not have any more.
        QString stepName;
    };

    /// Adds \a warnings, each of which leads to its step wherever that stands later.
    void appendWarnings(const QVector<Warning> &warnings);

    /// Adds the warning \a message.
    void appendWarning(const QString &message);

    /// Adds the warning \a message about \a step, as \a stepName names it. The line leads to the step wherever it
    /// stands later; null for one that the script does not have any more.
    void appendWarning(const QString &message, const Operation *step, const QString &stepName);

    void clear();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Line
    {
        QTime time;
        QString message;
        bool isWarning = false;
        QPointer<Operation> step; ///< Never changed here.
        QString stepName;
    };

    void add(const QVector<Line> &lines);

    QVector<Line> m_lines;
};
} // namespace Workbench

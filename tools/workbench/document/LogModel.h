#pragma once

#include <QAbstractTableModel>
#include <QDateTime>
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
        StepRole = Qt::UserRole, ///< `int`: the step's position in the script at the run, or -1.
        WarningRole, ///< `bool`
    };

    explicit LogModel(QObject *parent = nullptr);

    /// Adds the line \a message, with the present time. Beyond 10,000 lines the oldest are dropped.
    void append(const QString &message);

    /// Adds the warning \a message. It is about the step \a stepSummary that stands in row \a step of the
    /// script; -1 and an empty text for one that is about no step.
    void appendWarning(const QString &message, int step = -1, const QString &stepSummary = QString());

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
        int step = -1;
        QString stepSummary;
    };

    void add(const Line &line);

    QVector<Line> m_lines;
};
} // namespace Workbench

#pragma once

#include <QMap>
#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

using Texts = QVector<QPair<QString, QString>>;

/// A setting of a step: a property, which is a field of its record too.
struct StepSetting
{
    QString name;
    QVariant defaultValue;
    QVariant otherValue;
};

/// What a step has to be, known apart from it.
struct StepRow
{
    QString className;
    QString typeId;
    QString typeName;
    QString icon;
    int weight = -1; ///< In the palette.
    QVector<StepSetting> settings; ///< In order of declaration, which is that of the record.
    Texts classInfo; ///< The editor schema, in order of declaration.
    /// Its line and its description with default modes. `{name}` stands for the setting of that name.
    QString summary;
    QString description;
    /// Settings with which it writes: from the lists `a` and `b`, to them, the list `c` or the variable `text`.
    QVariantMap sample;
};

/// Every step of the plug-in, in the order of its prototypes.
const QVector<StepRow> &stepTable();

/// The row of the step \a typeId; one without a class name when the table has none.
const StepRow &stepRow(const QString &typeId);

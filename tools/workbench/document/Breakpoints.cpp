#include "Breakpoints.h"

#include "ScriptDocument.h"
#include "ScriptModel.h"
#include "host/files/InputFile.h"
#include "host/files/OutputFile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace Workbench
{
Breakpoints::Breakpoints(ScriptDocument &document, QObject *parent) : QObject(parent), m_document(document)
{
    connect(&document.model(), &ScriptModel::breakpointRequested, this, [this](int row) { toggle({row}); });
    connect(&document, &ScriptDocument::replaced, this, &Breakpoints::load);
    // Sent when the script was saved, too.
    connect(&document, &ScriptDocument::fileNameChanged, this, &Breakpoints::keep);
}

bool Breakpoints::contains(const Operation *step) const
{
    return m_steps.contains(step);
}

bool Breakpoints::isEmpty() const
{
    return m_steps.isEmpty();
}

void Breakpoints::add(const Operation *step)
{
    m_steps.insert(step);
    // Another step may come to stand at the address of one that is gone.
    connect(step, &QObject::destroyed, this, [this, step] { m_steps.remove(step); });
}

void Breakpoints::toggle(const QList<int> &rows)
{
    const ScriptModel &model = m_document.model();
    const bool haveAll =
        std::all_of(rows.cbegin(), rows.cend(), [&](int row) { return contains(&model.step(row)); });
    for (const int row : rows) {
        if (haveAll)
            m_steps.remove(&model.step(row));
        else
            add(&model.step(row));
    }
    show();
    keep();
}

void Breakpoints::clear()
{
    m_steps.clear();
    show();
    keep();
}

void Breakpoints::show()
{
    m_document.model().setBreakpoints(m_steps);
    emit changed();
}

QString Breakpoints::fileFor(const QString &scriptFile)
{
    return scriptFile + QLatin1String(".workbench");
}

QByteArray Breakpoints::toJson() const
{
    const ScriptModel &model = m_document.model();
    QJsonArray steps;
    for (int row = 0; row < model.rowCount(); ++row) {
        if (contains(&model.step(row)))
            steps.append(QJsonObject{{QStringLiteral("step"), row + 1},
                                     {QStringLiteral("type"), model.step(row).typeId()}});
    }
    return steps.isEmpty() ? QByteArray()
                           : QJsonDocument(QJsonObject{{QStringLiteral("breakpoints"), steps}}).toJson();
}

void Breakpoints::load()
{
    m_steps.clear();
    m_kept.clear();
    const QString scriptFile = m_document.fileName();
    const QString file = fileFor(scriptFile);
    if (!scriptFile.isEmpty() && QFile::exists(file))
        m_kept = StepHost::readInputFile(file).value_or(QByteArray());
    const QJsonArray steps =
        QJsonDocument::fromJson(m_kept).object().value(QLatin1String("breakpoints")).toArray();
    const ScriptModel &model = m_document.model();
    for (const QJsonValue &value : steps) {
        const QJsonObject step = value.toObject();
        const int row = step.value(QLatin1String("step")).toInt() - 1;
        // The script may have been changed by another program since.
        if (row >= 0 && row < model.rowCount()
            && model.step(row).typeId() == step.value(QLatin1String("type")).toString())
            add(&model.step(row));
    }
    show();
}

void Breakpoints::keep()
{
    // Their numbers are those of the script as it is saved.
    const QString scriptFile = m_document.fileName();
    if (scriptFile.isEmpty() || !m_document.undoStack().isClean())
        return;
    const QByteArray json = toJson();
    const QString file = fileFor(scriptFile);
    if (json == m_kept)
        return;
    if (json.isEmpty()) {
        QFile::remove(file);
    } else if (const auto written = StepHost::writeOutputFile(file, json); !written) {
        emit failed(
            tr("The breakpoints are not kept: %1: %2").arg(QDir::toNativeSeparators(file), written.error()));
        return;
    }
    m_kept = json;
}
} // namespace Workbench

#include "ScriptDocument.h"

#include "ScriptCommands.h"
#include "ScriptModel.h"
#include "TriedSettings.h"
#include "host/files/InputFile.h"
#include "host/files/OutputFile.h"
#include "host/plugins/StepCatalogue.h"
#include "host/plugins/StepTexts.h"
#include "host/running/RunReport.h"
#include "host/scripts/ScriptFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Workbench
{
namespace
{
QList<int> sorted(QList<int> rows)
{
    std::sort(rows.begin(), rows.end());
    return rows;
}
} // namespace

ScriptDocument::ScriptDocument(const StepHost::StepCatalogue &catalogue, QObject *parent)
    : QObject(parent), m_catalogue(catalogue), m_model(new ScriptModel(this))
{
    connect(m_model, &ScriptModel::placeRequested, this, &ScriptDocument::placeStep);
    connect(m_model, &ScriptModel::duplicateRequested, this, &ScriptDocument::duplicateSteps);
    connect(m_model, &ScriptModel::moveRequested, this, &ScriptDocument::moveSteps);
    connect(m_model, &ScriptModel::insertRequested, this, &ScriptDocument::insertScript);
    connect(m_model, &ScriptModel::enableRequested, this,
            [this](int row, bool enabled) { setEnabled({row}, enabled); });
}

ScriptDocument::~ScriptDocument() = default;

void ScriptDocument::setTrial(StepHost::StepTrial &trial)
{
    m_trial = &trial;
    m_triedSettings = std::make_unique<TriedSettings>(*m_model, trial);
    connect(m_triedSettings.get(), &TriedSettings::passed, this, &ScriptDocument::changeSetting);
    connect(m_triedSettings.get(), &TriedSettings::refused, this, &ScriptDocument::refuseSetting);
    connect(m_triedSettings.get(), &TriedSettings::remarked, this, &ScriptDocument::remarked);
}

void ScriptDocument::whenTried(const QList<QByteArray> &scripts, const Tried &then)
{
    if (!m_trial) {
        then(QString());
        return;
    }
    m_trial->tryScripts(scripts, this, [this, then](const StepHost::StepTrial::Answer &answer) {
        const QStringList remarks = answer.value_or(QStringList());
        for (const QString &remark : remarks)
            emit remarked(remark);
        then(answer ? QString() : answer.error());
    });
    m_trial->waitForAnswers();
}

const StepHost::StepCatalogue &ScriptDocument::catalogue() const
{
    return m_catalogue;
}

ScriptModel &ScriptDocument::model() const
{
    return *m_model;
}

QUndoStack &ScriptDocument::undoStack()
{
    return m_undoStack;
}

const VariableScope &ScriptDocument::variables() const
{
    return m_variables;
}

StepHost::ScriptStep ScriptDocument::copyStep(int row) const
{
    StepHost::ScriptStep step;
    step.operation.reset(StepHost::cloneStep(m_model->step(row), nullptr));
    step.enabled = m_model->isEnabled(row);
    return step;
}

QString ScriptDocument::noCopy(int row)
{
    return tr("step %1: the plug-in gives no copy of it").arg(row + 1);
}

StepHost::Script ScriptDocument::copy() const
{
    StepHost::Script script;
    script.variables = StepHost::variablesOf(m_variables);
    for (int row = 0; row < m_model->rowCount(); ++row)
        script.steps.push_back(copyStep(row));
    return script;
}

QByteArray ScriptDocument::stepsAs(StepHost::ScriptForm form, const QList<int> &rows) const
{
    StepHost::Script script;
    const QList<int> ordered = sorted(rows);
    for (const int row : ordered) {
        script.steps.push_back(copyStep(row));
        if (!script.steps.back().operation)
            return QByteArray();
    }
    return StepHost::writeScript(script, form, m_catalogue).value_or(QByteArray());
}

void ScriptDocument::placeStep(const QString &typeId, int row)
{
    StepHost::ScriptStep step;
    step.operation.reset(m_catalogue.create(typeId, nullptr));
    if (!step.operation) {
        if (m_catalogue.prototype(typeId))
            emit refused(tr("The plug-in gives no copy of the step %1.").arg(typeId));
        return;
    }
    const QString name = StepHost::shownStepText(*step.operation, &Operation::typeName);
    std::vector<StepHost::ScriptStep> steps;
    steps.push_back(std::move(step));
    m_undoStack.push(new InsertStepsCommand(*this, row, std::move(steps), tr("Place “%1”").arg(name)));
}

void ScriptDocument::insertScript(const QByteArray &script, int row)
{
    whenTried({script}, [this, script, row](const QString &error) {
        if (error.isEmpty())
            readInto(script, qMin(row, m_model->rowCount()));
        else
            emit refused(tr("These steps are not placed: %1").arg(error));
    });
}

void ScriptDocument::readInto(const QByteArray &script, int row)
{
    const StepHost::Result<void> pasted = ScriptEdits::paste(*this, script, row, m_clashQuestion);
    if (!pasted)
        emit refused(pasted.error());
}

void ScriptDocument::setClashQuestion(const ScriptEdits::ClashQuestion &question)
{
    m_clashQuestion = question;
}

void ScriptDocument::duplicateSteps(const QList<int> &rows, int target)
{
    if (rows.isEmpty())
        return;
    std::vector<StepHost::ScriptStep> steps;
    const QList<int> ordered = sorted(rows);
    for (const int row : ordered) {
        steps.push_back(copyStep(row));
        if (!steps.back().operation) {
            emit refused(noCopy(row));
            return;
        }
    }
    m_undoStack.push(new InsertStepsCommand(*this, target, std::move(steps),
                                            tr("Duplicate %n step(s)", nullptr, rows.size())));
}

void ScriptDocument::removeSteps(const QList<int> &rows)
{
    if (!rows.isEmpty())
        m_undoStack.push(
            new RemoveStepsCommand(*this, sorted(rows), tr("Delete %n step(s)", nullptr, rows.size())));
}

void ScriptDocument::moveSteps(const QList<int> &rows, int target)
{
    auto command = std::make_unique<MoveStepsCommand>(*this, sorted(rows), target,
                                                      tr("Move %n step(s)", nullptr, rows.size()));
    if (!command->isEmpty())
        m_undoStack.push(command.release());
}

void ScriptDocument::setEnabled(const QList<int> &rows, bool enabled)
{
    QList<int> changed;
    for (const int row : rows) {
        if (m_model->isEnabled(row) != enabled)
            changed.append(row);
    }
    if (changed.isEmpty())
        return;
    const QString text = enabled ? tr("Enable %n step(s)", nullptr, changed.size())
                                 : tr("Disable %n step(s)", nullptr, changed.size());
    m_undoStack.push(new EnableStepsCommand(*this, changed, enabled, text));
}

void ScriptDocument::setSetting(int row, const QString &property, const QVariant &value)
{
    if (m_triedSettings) {
        m_triedSettings->change(row, property, value);
        return;
    }
    const QVariant present = m_model->step(row).property(property.toUtf8().constData());
    if (present != value || present.userType() != value.userType())
        changeSetting(row, property, value);
}

void ScriptDocument::refuseSetting(int row, const QString &property, const QString &reason)
{
    emit refused(tr("Step %1 keeps its setting “%2”: %3").arg(QString::number(row + 1), property, reason));
    // Where it is edited, it shows what the step has.
    m_model->showStep(row);
}

void ScriptDocument::changeSetting(int row, const QString &property, const QVariant &value)
{
    m_undoStack.push(new ChangeSettingCommand(
        *this, row, property, value,
        tr("Change “%1”").arg(StepHost::shownStepText(m_model->step(row), &Operation::typeName))));
}

void ScriptDocument::setVariables(const VariableScope &variables, const QString &action)
{
    m_undoStack.push(new ChangeVariablesCommand(*this, variables, action));
}

void ScriptDocument::showVariables(const VariableScope &variables)
{
    m_variables = variables;
    m_model->setVariables(variables);
    emit variablesChanged();
}

QString ScriptDocument::fileName() const
{
    return m_file.path();
}

WatchedFile &ScriptDocument::file()
{
    return m_file;
}

StepHost::Result<QByteArray> ScriptDocument::write(StepHost::ScriptForm form) const
{
    const StepHost::Script script = copy();
    for (std::size_t row = 0; row < script.steps.size(); ++row) {
        if (!script.steps[row].operation)
            return StepHost::failure(noCopy(int(row)));
    }
    return StepHost::writeScript(script, form, m_catalogue);
}

StepHost::Result<QByteArray> ScriptDocument::toJson() const
{
    return write(StepHost::ScriptForm::Json);
}

QString ScriptDocument::readableText(const QByteArray &bytes) const
{
    const StepHost::Result<StepHost::Script> script = StepHost::readAnyScript(bytes, m_catalogue);
    if (!script)
        return QString::fromUtf8(bytes);
    return QString::fromUtf8(
        StepHost::writeScript(*script, StepHost::ScriptForm::Json, m_catalogue).value_or(bytes));
}

void ScriptDocument::clear()
{
    m_file.setContent(QString(), QByteArray());
    replace(StepHost::Script());
}

QString ScriptDocument::open(const QString &fileName)
{
    const StepHost::Result<QByteArray> content = StepHost::readInputFile(fileName);
    return content ? show(fileName, *content) : content.error();
}

void ScriptDocument::openTried(const QString &fileName, const Tried &then)
{
    const StepHost::Result<QByteArray> content = StepHost::readInputFile(fileName);
    if (!content) {
        then(content.error());
        return;
    }
    const int state = m_undoStack.index();
    whenTried({*content}, [this, fileName, content = *content, then, state](const QString &error) {
        if (m_undoStack.index() != state)
            then(tr("The present script was changed meanwhile."));
        else
            then(error.isEmpty() ? show(fileName, content)
                                 : tr("%1: %2").arg(QDir::toNativeSeparators(fileName), error));
    });
}

QString ScriptDocument::show(const QString &fileName, const QByteArray &content)
{
    StepHost::Result<StepHost::Script> script = StepHost::readAnyScript(content, m_catalogue);
    if (!script)
        return tr("%1: %2").arg(QDir::toNativeSeparators(fileName), script.error());
    m_file.setContent(QFileInfo(fileName).absoluteFilePath(), content);
    replace(std::move(*script));
    return QString();
}

QString ScriptDocument::restore(const QVector<QByteArray> &steps, const VariableScope &variables,
                                const QString &fileName)
{
    StepHost::Script script;
    QList<int> lost;
    for (int row = 0; row < steps.size(); ++row) {
        if (steps.at(row).isEmpty()) {
            lost.append(row);
            continue;
        }
        StepHost::Result<StepHost::Script> read = StepHost::readAnyScript(steps.at(row), m_catalogue);
        if (!read)
            return read.error();
        for (StepHost::ScriptStep &step : read->steps)
            script.steps.push_back(std::move(step));
    }
    m_file.setContent(fileName,
                      fileName.isEmpty() ? QByteArray()
                                         : StepHost::readInputFile(fileName).value_or(QByteArray()));
    replace(std::move(script));
    showVariables(variables);
    m_undoStack.resetClean();
    emit fileNameChanged();
    for (const int row : qAsConst(lost))
        emit remarked(noCopy(row));
    return QString();
}

QString ScriptDocument::save(const QString &fileName)
{
    // A file of another suffix is read by its content all the same.
    const StepHost::Result<QByteArray> written =
        write(StepHost::scriptFormOf(fileName).value_or(StepHost::ScriptForm::Json));
    if (!written)
        return written.error();
    const StepHost::Result<QString> saved = StepHost::writeOutputFile(fileName, *written);
    if (!saved)
        return tr("%1: %2").arg(QDir::toNativeSeparators(fileName), saved.error());
    m_file.setContent(QFileInfo(fileName).absoluteFilePath(), *written);
    m_undoStack.setClean();
    emit fileNameChanged();
    if (!saved->isEmpty())
        emit remarked(tr("%1: %2").arg(QDir::toNativeSeparators(fileName), *saved));
    return QString();
}

void ScriptDocument::replace(StepHost::Script script)
{
    m_undoStack.clear();
    VariableScope variables;
    StepHost::declareVariables(script, variables);
    m_model->setSteps(std::move(script.steps));
    showVariables(variables);
    emit replaced();
    emit fileNameChanged();
}
} // namespace Workbench

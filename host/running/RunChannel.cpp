#include "RunChannel.h"

#include "host/plugins/StepCatalogue.h"
#include "host/plugins/StepRecord.h"
#include "host/plugins/StepSettings.h"
#include "host/values/ErrorTexts.h"
#include "host/values/ItemValue.h"
#include "host/values/QuotedText.h"
#include "host/values/VariableName.h"

#include <QDataStream>
#include <QtEndian>

#include <algorithm>
#include <exception>
#include <limits>

namespace StepHost
{
namespace
{
constexpr auto streamVersion = QDataStream::Qt_5_15;

QDataStream &operator<<(QDataStream &stream, const ScriptVariable &variable)
{
    return stream << variable.name << qint32(variable.type) << variable.value;
}

QDataStream &operator>>(QDataStream &stream, ScriptVariable &variable)
{
    qint32 type = 0;
    stream >> variable.name >> type >> variable.value;
    variable.type = VarType(type);
    return stream;
}

QDataStream &operator<<(QDataStream &stream, const SentStep &step)
{
    return stream << step.typeId << step.record << step.settings << step.enabled;
}

QDataStream &operator>>(QDataStream &stream, SentStep &step)
{
    return stream >> step.typeId >> step.record >> step.settings >> step.enabled;
}

template<typename Item>
void writeAll(QDataStream &stream, const std::vector<Item> &items)
{
    stream << quint32(items.size());
    for (const Item &item : items)
        stream << item;
}

template<typename Item>
void readAll(QDataStream &stream, std::vector<Item> &items)
{
    quint32 count = 0;
    stream >> count;
    // Not all at once: the number may be a lie.
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        items.emplace_back();
        stream >> items.back();
    }
}

bool isWhole(const QDataStream &stream)
{
    return stream.status() == QDataStream::Ok && stream.atEnd();
}

bool isSendableAt(const QVariant &value, int depth)
{
    constexpr int maxDepth = 1000;
    const auto areSendable = [depth](const auto &values) {
        return std::all_of(values.begin(), values.end(),
                           [depth](const QVariant &each) { return isSendableAt(each, depth + 1); });
    };
    if (depth > maxDepth)
        return false;
    switch (value.userType()) {
    case QMetaType::UnknownType:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::Double:
    case QMetaType::QString:
        return true;
    case QMetaType::QVariantList:
        return areSendable(*static_cast<const QVariantList *>(value.constData()));
    case QMetaType::QVariantMap:
        return areSendable(*static_cast<const QVariantMap *>(value.constData()));
    case QMetaType::QVariantHash:
        return areSendable(*static_cast<const QVariantHash *>(value.constData()));
    default:
        break;
    }
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    return value.userType() < QMetaType::User && QMetaType::save(stream, value.userType(), value.constData());
}

SentStep sentStep(const Operation &step, bool enabled)
{
    SentStep sent;
    sent.typeId = step.typeId();
    sent.record = recordOf(step);
    sent.enabled = enabled;
    const QVector<QMetaProperty> settings = settingsOf(step);
    for (const QMetaProperty &setting : settings) {
        const QVariant value = setting.read(&step);
        if (isSendable(value)) // One that is not is left to the record.
            sent.settings.insert(QString::fromUtf8(setting.name()), value);
    }
    return sent;
}

// Appends the step `number` of a script to `request`.
Result<void> appendStep(RunRequest &request, const Operation &step, bool enabled, int number)
{
    try {
        request.steps.push_back(sentStep(step, enabled));
        return {};
    } catch (const std::exception &exception) {
        return failure(ErrorTexts::tr("step %1 threw an exception when it was saved: %2")
                           .arg(QString::number(number), QString::fromUtf8(exception.what())));
    } catch (...) {
        return failure(ErrorTexts::tr("step %1 threw an exception when it was saved").arg(number));
    }
}

QByteArray packed(const RunRequest &request)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << request.plugins << quint8(request.task) << request.waits << request.scripts
           << qint32(request.setting.number) << request.setting.property << request.setting.value;
    writeAll(stream, request.variables);
    writeAll(stream, request.steps);
    return bytes;
}

RunRequest requestTo(RunRequest::Task task, const StepCatalogue &catalogue)
{
    RunRequest request;
    request.task = task;
    for (const auto &plugin : catalogue.plugins())
        request.plugins.append(plugin->fileName());
    return request;
}
} // namespace

bool isSendable(const QVariant &value)
{
    return isSendableAt(value, 0);
}

Result<QByteArray> packRequest(const Script &script, const VariableScope &scope,
                               const StepCatalogue &catalogue, bool waits)
{
    RunRequest request = requestTo(RunRequest::Run, catalogue);
    request.waits = waits;
    const QStringList names = scope.names();
    for (const QString &name : names) {
        const ScriptVariable variable{name, scope.typeOf(referenceTo(name)), scope.get(referenceTo(name))};
        if (!isSendable(variable.value))
            return failure(ErrorTexts::tr("the value of %1 cannot be handed over").arg(quoted(name)));
        request.variables.push_back(variable);
    }
    for (std::size_t i = 0; i < script.steps.size(); ++i) {
        const ScriptStep &step = script.steps[i];
        const Result<void> appended = appendStep(request, *step.operation, step.enabled, int(i) + 1);
        if (!appended)
            return failure(appended.error());
    }
    return packed(request);
}

QByteArray packTrial(const QList<QByteArray> &scripts, const StepCatalogue &catalogue)
{
    RunRequest request = requestTo(RunRequest::Trial, catalogue);
    request.scripts = scripts;
    return packed(request);
}

Result<QByteArray> packTrial(const Operation &step, const SentSetting &setting,
                             const StepCatalogue &catalogue)
{
    if (!isSendable(setting.value))
        return failure(ErrorTexts::tr("the value of %1 cannot be handed over").arg(quoted(setting.property)));
    RunRequest request = requestTo(RunRequest::Trial, catalogue);
    request.setting = setting;
    const Result<void> appended = appendStep(request, step, true, setting.number);
    if (!appended)
        return failure(appended.error());
    return packed(request);
}

QByteArray packProbe(const QString &plugin)
{
    RunRequest request;
    request.plugins.append(plugin);
    request.task = RunRequest::Probe;
    return packed(request);
}

std::optional<RunRequest> unpackRequest(const QByteArray &bytes)
{
    RunRequest request;
    quint8 task = 0;
    qint32 number = 0;
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    stream >> request.plugins >> task >> request.waits >> request.scripts >> number
        >> request.setting.property >> request.setting.value;
    readAll(stream, request.variables);
    readAll(stream, request.steps);
    if (!isWhole(stream) || task >= RunRequest::TaskCount)
        return std::nullopt;
    request.task = RunRequest::Task(task);
    request.setting.number = number;
    return request;
}

QByteArray packAnswer(const RunAnswer &answer)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << quint8(answer.kind) << qint32(answer.order);
    writeAll(stream, answer.variables);
    stream << answer.removed;
    return bytes;
}

std::optional<RunAnswer> unpackAnswer(const QByteArray &bytes)
{
    RunAnswer answer;
    quint8 kind = 0;
    qint32 order = 0;
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    stream >> kind >> order;
    readAll(stream, answer.variables);
    stream >> answer.removed;
    if (!isWhole(stream) || kind >= RunAnswer::KindCount || order < 0 || order > int(RunOrder::Stop))
        return std::nullopt;
    answer.kind = RunAnswer::Kind(kind);
    answer.order = RunOrder(order);
    return answer;
}

QByteArray packNote(const RunNote &note)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << quint8(note.kind) << note.text << qint32(note.index) << qint32(note.result.outcome)
           << note.result.warnings << note.result.failure << note.result.ranOutOfMemory;
    writeAll(stream, note.variables);
    stream << note.removed << qint32(note.end);
    return bytes;
}

std::optional<RunNote> unpackNote(const QByteArray &bytes)
{
    RunNote note;
    quint8 kind = 0;
    qint32 index = 0;
    qint32 outcome = 0;
    qint32 end = 0;
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    stream >> kind >> note.text >> index >> outcome >> note.result.warnings >> note.result.failure
        >> note.result.ranOutOfMemory;
    readAll(stream, note.variables);
    stream >> note.removed >> end;
    if (!isWhole(stream) || kind >= RunNote::KindCount || outcome < 0 || outcome > int(StepOutcome::Failed)
        || end < 0 || end > int(RunEnd::StepFailed))
        return std::nullopt;
    note.kind = RunNote::Kind(kind);
    note.index = index;
    note.result.outcome = StepOutcome(outcome);
    note.end = RunEnd(end);
    return note;
}

VariableChanges VariableChanges::between(const VariableScope &before, const VariableScope &now)
{
    VariableChanges changes;
    const QStringList oldNames = before.names();
    for (const QString &name : oldNames) {
        if (!now.contains(referenceTo(name)))
            changes.removed.append(name);
    }
    const QStringList names = now.names();
    for (const QString &name : names) {
        const QString reference = referenceTo(name);
        const ScriptVariable variable{name, now.typeOf(reference), now.get(reference)};
        if (!before.contains(reference) || before.typeOf(reference) != variable.type
            || !ItemValue::same(before.get(reference), variable.value))
            changes.variables.push_back(variable);
    }
    return changes;
}

void VariableChanges::apply(const std::vector<ScriptVariable> &variables, const QStringList &removed,
                            VariableScope &scope)
{
    for (const QString &name : removed)
        scope.remove(referenceTo(name));
    for (const ScriptVariable &variable : variables) {
        const QString reference = referenceTo(variable.name);
        if (scope.contains(reference) && scope.typeOf(reference) != variable.type)
            scope.remove(reference);
        if (!scope.contains(reference))
            scope.declare(reference, variable.type);
        scope.set(reference, variable.value);
    }
}

QByteArray MessageReader::framed(const QByteArray &message)
{
    QByteArray framed(int(sizeof(quint32)), Qt::Uninitialized);
    qToBigEndian(quint32(message.size()), framed.data());
    return framed + message;
}

void MessageReader::append(const QByteArray &bytes)
{
    m_bytes += bytes;
}

std::optional<QByteArray> MessageReader::next()
{
    constexpr int lengthSize = int(sizeof(quint32));
    if (m_isBroken || m_bytes.size() < lengthSize)
        return std::nullopt;
    const auto length = qFromBigEndian<quint32>(m_bytes.constData());
    m_isBroken = length > quint32(std::numeric_limits<int>::max() - lengthSize);
    if (m_isBroken || m_bytes.size() - lengthSize < int(length))
        return std::nullopt;
    const QByteArray message = m_bytes.mid(lengthSize, int(length));
    m_bytes.remove(0, lengthSize + int(length));
    return message;
}

bool MessageReader::isBroken() const
{
    return m_isBroken;
}
} // namespace StepHost

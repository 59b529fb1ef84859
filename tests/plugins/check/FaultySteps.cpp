#include "FaultySteps.h"

#include "hostapi/VariableScope.h"

#include <QDataStream>
#include <QProcess>
#include <QSaveFile>
#include <QtEndian>
#include <QtMath>

#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace
{
[[noreturn]] void hang()
{
    for (volatile bool isIdle = false;;)
        isIdle = !isIdle;
}

// Goes through nothing that a sanitizer or Qt would turn into something milder.
[[noreturn]] void crash()
{
    std::abort();
}
// Starts one process that stays with this one and one that leaves it, and tells their ids in a file.
void startProcesses()
{
#ifdef Q_OS_WIN
    const QString program = QStringLiteral("ping"); // Waits a second between two calls.
    const QStringList arguments{QStringLiteral("-n"), QStringLiteral("1000"), QStringLiteral("127.0.0.1")};
#else
    const QString program = QStringLiteral("sleep");
    const QStringList arguments{QStringLiteral("1000")};
#endif
    qint64 detached = 0;
    QProcess::startDetached(program, arguments, QString(), &detached);
    auto *process = new QProcess;
    process->start(program, arguments);
    process->waitForStarted();
    QSaveFile file(qEnvironmentVariable("STARTED_PROCESSES_FILE"));
    file.open(QIODevice::WriteOnly);
    file.write(QByteArray::number(detached) + ' ' + QByteArray::number(process->processId()));
    file.commit();
}
} // namespace

SampleStep::SampleStep(QObject *parent) : FixtureStep("sample.first", parent)
{
    static int count = 0;
    if (has("prototypes.defaults"))
        m_settings->amount = ++count;
    if (has("persistence.bytes"))
        m_calls = ++count;
}

QString SampleStep::target() const
{
    return m_settings->target;
}

void SampleStep::setTarget(const QString &target)
{
    QString stored = target;
    if (has("settings.blanks"))
        stored = target.trimmed();
    if (has("settings.empty-text") && target.isEmpty())
        stored = m_settings->target;
    if (has("settings.long-text"))
        stored = target.left(1000);
    if (has("settings.nul"))
        stored.remove(QChar(0));
    if (has("settings.surrogates"))
        stored = QString::fromUtf8(target.toUtf8());
    m_settings->target = stored;
    if (has("settings.silent"))
        emit edited();
}

QString SampleStep::value() const
{
    return m_settings->value;
}

void SampleStep::setValue(const QString &value)
{
    m_settings->value = value;
}

int SampleStep::mode() const
{
    return m_settings->mode;
}

void SampleStep::setMode(int mode)
{
    m_settings->mode = has("settings.integers") ? qBound(0, mode, 1) : mode;
    if (has("settings.separate"))
        m_settings->value.clear();
}

bool SampleStep::deep() const
{
    return m_settings->deep;
}

void SampleStep::setDeep(bool deep)
{
    m_settings->deep = deep || (has("settings.booleans") && m_settings->deep);
}

double SampleStep::amount() const
{
    return m_settings->amount;
}

void SampleStep::setAmount(double amount)
{
    m_settings->amount = has("settings.doubles") ? std::floor(amount) : amount;
}

QString SampleStep::root() const
{
    return has("prototypes.category") ? QString() : QStringLiteral("Samples");
}

QString SampleStep::typeId() const
{
    return has("prototypes.type-id-form") ? QStringLiteral("sample.the first") : FixtureStep::typeId();
}

QString SampleStep::typeName() const
{
    if (has("prototypes.identity-and-settings"))
        return QStringLiteral("First sample ") + m_settings->target;
    return QStringLiteral("First sample");
}

QString SampleStep::icon() const
{
    if (has("prototypes.identity-and-scope") && m_variableScope)
        return QStringLiteral(":/faulty/busy.svg");
    if (has("icon.path"))
        return QStringLiteral("/usr/share/icons/sample.svg");
    if (has("icon.opens"))
        return QStringLiteral(":/faulty/missing.svg");
    if (has("icon.size"))
        return QStringLiteral(":/faulty/large.svg");
    if (has("icon.renders"))
        return QStringLiteral(":/faulty/broken.svg");
    if (has("icon.not-blank"))
        return QStringLiteral(":/faulty/blank.svg");
    return QStringLiteral(":/faulty/sample.svg");
}

void SampleStep::doOperation() const
{
    const QString &target = m_settings->target;
    if (has("running.no-scope") && !m_variableScope)
        crash();
    VariableScope *scope = m_variableScope ? m_variableScope : m_remembered;
    if (!scope || target.isEmpty())
        return;
    if (has("running.empty-scope") && scope->names().isEmpty())
        throw std::runtime_error("no variables");
    if (has("running.wrong-types") && scope->typeOf(target) == VarType::String)
        crash();
    const bool isHostile = target.contains(QChar(0));
    if (has("running.hostile-settings") && isHostile)
        hang();
    if (has("exits") && isHostile)
        std::exit(0);
    if (has("starts-processes") && isHostile) {
        startProcesses();
        hang();
    }
    if (has("running.twice"))
        const_cast<SampleStep *>(this)->m_baseState += 1;
    if (scope->typeOf(target) != VarType::List) {
        qWarning("[Sample] not a list, skipped");
        if (has("running.one-warning"))
            qWarning("[Sample] really not");
        if (has("running.skipped-writes-nothing"))
            scope->set(target, 0);
        return;
    }
    QVariantList list = scope->get(target).toList();
    if (has("running.held-values") && !list.isEmpty())
        const_cast<QVariant &>(qAsConst(list).first()) = 99;
    list.append(m_settings->amount);
    scope->set(target, list);
    if (has("running.settings-kept"))
        m_settings->amount += 1;
}

void SampleStep::setVariableScope(VariableScope *scope)
{
    if (has("running.detached-scope") && scope)
        m_remembered = scope;
    Operation::setVariableScope(scope);
}

void SampleStep::saveOperation(QDataStream &stream) const
{
    if (!has("persistence.base-first"))
        Operation::saveOperation(stream);
    stream << m_settings->target;
    if (has("persistence.byte-orders")) {
        const qint32 bytes = qToBigEndian(qint32(m_settings->mode));
        stream.writeRawData(reinterpret_cast<const char *>(&bytes), sizeof bytes);
    } else {
        stream << qint32(m_settings->mode);
    }
    stream << m_settings->deep << m_settings->amount;
    if (!has("persistence.settings")
        && !(has("persistence.versions") && stream.version() < QDataStream::Qt_4_6))
        stream << m_settings->value;
    if (has("persistence.base-first"))
        Operation::saveOperation(stream);
    if (has("persistence.bytes"))
        stream << qint32(m_calls);
    if (has("persistence.repeatable"))
        stream << qint32(++m_calls);
    if (has("persistence.mutation-memory") || has("saves-too-much"))
        stream << quint32(0);
}

void SampleStep::loadOperation(QDataStream &stream)
{
    if (!has("persistence.base-first"))
        Operation::loadOperation(stream);
    QString target;
    qint32 mode = 0;
    stream >> target >> mode >> m_settings->deep >> m_settings->amount;
    if (!has("persistence.replaces") || !target.isEmpty())
        m_settings->target = target;
    m_settings->mode = mode;
    if (!has("persistence.settings")
        && !(has("persistence.versions") && stream.version() < QDataStream::Qt_4_6))
        stream >> m_settings->value;
    if (has("persistence.base-first"))
        Operation::loadOperation(stream);
    if (has("persistence.bytes") || has("persistence.repeatable"))
        stream >> mode;
    if (has("persistence.row"))
        stream.device()->readAll();
    if (has("persistence.truncation"))
        stream.resetStatus();
    if (has("persistence.mutation") && qIsNaN(m_settings->amount))
        hang();
    if (has("persistence.mutation-memory")) {
        quint32 size = 0;
        stream >> size;
        const int believed = int(qMin(size, 100u * 1024 * 1024));
        static QByteArray buffer;
        if (believed > buffer.size())
            buffer = QByteArray(believed, 'x');
    }
}

QString SampleStep::toString() const
{
    if (has("texts.summary"))
        return QString();
    if (has("texts.one-line"))
        return QStringLiteral("First\nsample");
    if (has("texts.pure"))
        return QStringLiteral("Call %1").arg(++m_calls);
    if (has("texts.hostile") && m_settings->target.size() > 10000)
        crash();
    if (has("texts.quiet"))
        return QStringLiteral("First sample").arg(m_settings->target);
    return QStringLiteral("First sample of ") + m_settings->target;
}

QString SampleStep::description() const
{
    return has("texts.description") ? QString()
                                    : QStringLiteral("Appends %1 to a list").arg(m_settings->amount);
}

Operation *SampleStep::clone(QObject *parent) const
{
    if (has("clone.new-object"))
        return const_cast<SampleStep *>(this);
    return madeClone(has("clone.class") ? new OtherStep : new SampleStep, parent);
}

Operation *SampleStep::madeClone(SampleStep *copy, QObject *parent) const
{
    *copy->m_settings = *m_settings;
    copy->m_baseState = m_baseState;
    copy->setParent(parent);
    if (has("clone.settings"))
        copy->m_settings->target.clear();
    if (has("clone.base-state"))
        copy->m_baseState = 0;
    if (has("clone.parent"))
        copy->setParent(nullptr);
    if (has("clone.no-scope"))
        copy->m_variableScope = m_variableScope;
    if (has("clone.independent"))
        copy->m_settings = m_settings;
    if (has("clone.outlives-source"))
        connect(this, &QObject::destroyed, copy, [copy] { delete copy; });
    if (has("clone.object-name"))
        copy->setObjectName(objectName());
    if (has("clone.dynamic-properties")) {
        const QList<QByteArray> names = dynamicPropertyNames();
        for (const QByteArray &name : names)
            copy->setProperty(name.constData(), property(name.constData()));
    }
    if (has("clone.no-relatives"))
        copy->setParentOperation(parentOperation());
    if (has("clones-children"))
        copy->children() = const_cast<SampleStep *>(this)->children();
    return copy;
}

QString OtherStep::typeId() const
{
    return has("prototypes.unique-type-ids") ? SampleStep::typeId() : QStringLiteral("sample.second");
}

QString OtherStep::typeName() const
{
    return has("prototypes.display-names") ? SampleStep::typeName() : QStringLiteral("Second sample");
}

Operation *OtherStep::clone(QObject *parent) const
{
    return madeClone(new OtherStep, parent);
}

QString NamelessStep::typeId() const
{
    return QStringLiteral("sample.second");
}

QString NamelessStep::typeName() const
{
    return QStringLiteral("Second sample");
}

void *OddCastStep::qt_metacast(const char *)
{
    return this;
}

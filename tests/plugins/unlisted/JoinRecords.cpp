// The records of a JoinStep.

#include "ActiveFault.h"
#include "JoinStep.h"
#include "Manners.h"
#include "hostapi/VariableScope.h"

#include <QDataStream>
#include <QDate>
#include <QHash>
#include <QIODevice>
#include <QLocale>

#include <unistd.h>

namespace
{
void touch(VariableScope *scope, const char *fault)
{
    if (has(fault) && scope)
        scope->set(QStringLiteral("touched"), 1);
}
} // namespace

void JoinStep::saveOperation(QDataStream &stream) const
{
    misbehave(Call::Save);
    static bool isFirst = true;
    if (has("persistence.first-save") && isFirst)
        stream << qint32(7);
    isFirst = false;
    touch(m_variableScope, "running.save-touches");
    if (has("persistence.sets-version"))
        stream.setVersion(QDataStream::Qt_5_0);
    if (has("persistence.sets-order"))
        stream.setByteOrder(QDataStream::LittleEndian);
    if (has("persistence.sets-precision"))
        stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    if (!has("persistence.base-last"))
        Operation::saveOperation(stream);
    stream << m_settings.listA << m_settings.listB << qint32(m_settings.mode);
    if (has("persistence.local-text"))
        stream << m_settings.separator.toLocal8Bit();
    else
        stream << (has("persistence.drops-hidden") && m_settings.mode != 0 ? QString()
                                                                           : m_settings.separator);
    stream << m_settings.limit << m_settings.isReversed << m_settings.targetVar;
    stream << qint32(m_settings.version);
    if (has("persistence.base-last"))
        Operation::saveOperation(stream);
    if (has("persistence.today"))
        stream << QDate::currentDate();
    if (has("persistence.pid"))
        stream << qint64(getpid());
    if (has("persistence.hash"))
        stream << quint32(qHash(m_settings.listA, uint(qGlobalQHashSeed())));
    if (has("persistence.locale"))
        stream << QLocale::system().name();
    if (has("persistence.seeks"))
        stream << qint64(stream.device()->pos());
    if (has("persistence.rewinds")) {
        const qint64 pos = stream.device()->pos();
        stream.device()->seek(pos - 4);
        stream << qint32(m_settings.version);
    }
}

void JoinStep::loadOperation(QDataStream &stream)
{
    misbehave(Call::Load);
    touch(m_variableScope, "running.load-touches");
    if (has("persistence.sets-version"))
        stream.setVersion(QDataStream::Qt_5_0);
    if (has("persistence.sets-order"))
        stream.setByteOrder(QDataStream::LittleEndian);
    if (has("persistence.load-sets-precision"))
        stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    if (!has("persistence.base-last"))
        Operation::loadOperation(stream);
    qint32 mode = 0;
    qint32 version = 0;
    stream >> m_settings.listA >> m_settings.listB >> mode;
    if (has("persistence.local-text")) {
        QByteArray bytes;
        stream >> bytes;
        m_settings.separator = QString::fromLocal8Bit(bytes);
    } else {
        stream >> m_settings.separator;
    }
    stream >> m_settings.limit >> m_settings.isReversed >> m_settings.targetVar >> version;
    if (has("persistence.base-last"))
        Operation::loadOperation(stream);
    if (has("persistence.resets-status"))
        stream.resetStatus();
    if (has("persistence.reads-on"))
        stream.device()->readAll();
    if (has("texts.empty-after-damage"))
        m_isDamaged = stream.status() != QDataStream::Ok;
    m_settings.mode = mode;
    m_settings.version = version;
    if (has("persistence.clamps-mode"))
        m_settings.mode = qBound(0, mode, 2);
    qint64 number = 0;
    quint32 hash = 0;
    QDate date;
    QString text;
    if (has("persistence.today"))
        stream >> date;
    if (has("persistence.pid") || has("persistence.seeks"))
        stream >> number;
    if (has("persistence.hash"))
        stream >> hash;
    if (has("persistence.locale"))
        stream >> text;
    if (has("persistence.wait-for-more") && stream.device()->bytesAvailable() > 0
        && stream.device()->isSequential())
        m_settings.targetVar.clear();
    if (has("persistence.keeps-old") && m_settings.limit.isEmpty())
        m_settings.limit = QStringLiteral("1");
}

#include "StoreStep.h"

#include "ActiveFault.h"
#include "hostapi/VariableScope.h"

#include <QDataStream>
#include <QLocale>

#include <cmath>

namespace
{
// Qt's own operator trusts what it reads: only values of bounded types are let in.
const QVector<int> variantTypes{QMetaType::Int,     QMetaType::LongLong,   QMetaType::Double, QMetaType::Bool,
                                QMetaType::QString, QMetaType::QByteArray, QMetaType::QDate};

void saveVariant(QDataStream &stream, const QVariant &value)
{
    const int type = variantTypes.contains(value.userType()) ? value.userType() : 0;
    stream << qint32(type);
    if (type != 0)
        QMetaType::save(stream, type, value.constData());
}

// Each name by a call of its own.
void loadNames(QDataStream &stream, quint32 count, QStringList &names);
void (*volatile loadRest)(QDataStream &, quint32, QStringList &) = loadNames;

void loadNames(QDataStream &stream, quint32 count, QStringList &names)
{
    if (count == 0 || stream.status() != QDataStream::Ok)
        return;
    QString name;
    stream >> name;
    names.append(name);
    loadRest(stream, count - 1, names);
}

QVariant loadVariant(QDataStream &stream)
{
    qint32 type = 0;
    stream >> type;
    if (!variantTypes.contains(type))
        return QVariant();
    QVariant value(type, nullptr);
    QMetaType::load(stream, type, value.data());
    return value;
}
} // namespace

StoreStep::StoreStep(QObject *parent) : Operation(parent) { }

void StoreStep::setBig(qlonglong big)
{
    m_settings.big = has("settings.narrow") ? int(big)
        : has("settings.through-double")    ? qlonglong(double(big))
                                            : big;
}

void StoreStep::setHuge(quint64 huge)
{
    m_settings.huge = has("settings.signed") ? huge & 0x7fffffffffffffff : huge;
}

void StoreStep::setRatio(float ratio)
{
    m_settings.ratio = has("settings.rounds") ? std::round(ratio * 100) / 100 : ratio;
}

void StoreStep::setNames(const QStringList &names)
{
    m_settings.names = names;
    if (has("settings.drops-empty"))
        m_settings.names.removeAll(QString());
    if (has("settings.drops-double"))
        m_settings.names.removeDuplicates();
}

void StoreStep::setAnything(const QVariant &value)
{
    m_settings.anything = has("settings.variant-to-text") ? QVariant(value.toString()) : value;
}

void StoreStep::setDay(const QDate &day)
{
    m_settings.day = has("settings.recent-days") && day.year() < 1970 ? QDate(1970, 1, 1) : day;
}

void StoreStep::setMoment(const QDateTime &moment)
{
    m_settings.moment = moment;
    if (has("settings.drops-milliseconds"))
        m_settings.moment = moment.addMSecs(-moment.time().msec());
}

void StoreStep::setBytes(const QByteArray &bytes)
{
    m_settings.bytes = has("settings.cuts-bytes") ? QByteArray(bytes.constData()) : bytes;
}

void StoreStep::setLevel(Level level)
{
    if (!has("settings.ignores-last-level") || level != High)
        m_settings.level = level;
}

void StoreStep::doOperation() const
{
    if (!m_variableScope || m_settings.targetVar.isEmpty())
        return;
    if (m_variableScope->typeOf(m_settings.targetVar) != VarType::List) {
        qWarning("[Store] no list, skipped");
        return;
    }
    m_variableScope->set(
        m_settings.targetVar,
        QVariantList{m_settings.big, m_settings.ratio, m_settings.names, m_settings.anything});
}

void StoreStep::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << m_settings.targetVar;
    if (has("persistence.narrow"))
        stream << qint64(qint32(m_settings.big));
    else
        stream << qint64(m_settings.big);
    stream << m_settings.huge;
    if (has("persistence.ratio-as-text"))
        stream << float(QString::number(double(m_settings.ratio), 'f', 2).toDouble());
    else
        stream << m_settings.ratio;
    if (has("persistence.joins-names"))
        stream << m_settings.names.join(QLatin1Char(',')).split(QLatin1Char(','));
    else
        stream << m_settings.names;
    if (has("persistence.variant-as-text"))
        saveVariant(stream, m_settings.anything.toString());
    else
        saveVariant(stream, m_settings.anything);
    stream << (has("persistence.day-as-text")
                   ? QDate::fromString(m_settings.day.toString("dd.MM.yy"), "dd.MM.yy")
                   : m_settings.day);
    stream << m_settings.moment;
    stream << (has("persistence.cuts-bytes") ? QByteArray(m_settings.bytes.constData()) : m_settings.bytes);
    stream << (has("persistence.level-as-byte") ? qint32(m_settings.level & 7) : qint32(m_settings.level));
}

void StoreStep::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    qint64 big = 0;
    qint32 level = 0;
    stream >> m_settings.targetVar >> big >> m_settings.huge >> m_settings.ratio;
    // Qt's own operator trusts the count.
    quint32 count = 0;
    stream >> count;
    m_settings.names.clear();
    if (has("persistence.recursion"))
        loadNames(stream, count, m_settings.names);
    for (quint32 i = has("persistence.recursion") ? count : 0;
         i < count && stream.status() == QDataStream::Ok; ++i) {
        QString name;
        stream >> name;
        m_settings.names.append(name);
    }
    m_settings.anything = loadVariant(stream);
    stream >> m_settings.day >> m_settings.moment >> m_settings.bytes >> level;
    m_settings.big = big;
    m_settings.level = Level(level);
    if (has("persistence.keeps-names") && m_settings.names.isEmpty())
        m_settings.names.append(QString());
}

Operation *StoreStep::clone(QObject *parent) const
{
    auto *copy = new StoreStep;
    copy->setParent(parent);
    copy->m_settings = m_settings;
    copy->m_baseState = m_baseState;
    if (has("clone.narrow"))
        copy->m_settings.big = int(m_settings.big);
    if (has("clone.variant"))
        copy->m_settings.anything = m_settings.anything.toString();
    if (has("clone.level"))
        copy->m_settings.level = Middle;
    if (has("clone.names"))
        copy->m_settings.names = m_settings.names.mid(0, 1);
    return copy;
}

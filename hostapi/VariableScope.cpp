#include "VariableScope.h"

namespace
{
QString variableKey(const QString &name)
{
    return name.startsWith(QLatin1Char('$')) ? name.mid(1) : name;
}

VarType typeOfValue(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return VarType::Int;
    case QMetaType::Double:
    case QMetaType::Float:
        return VarType::Double;
    case QMetaType::QString:
        return VarType::String;
    case QMetaType::Bool:
        return VarType::Bool;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return VarType::List;
    default:
        return VarType::Undeclared;
    }
}

QVariant emptyValue(VarType type)
{
    switch (type) {
    case VarType::Int:
        return QVariant(0);
    case VarType::Double:
        return QVariant(0.0);
    case VarType::String:
        return QVariant(QString(QLatin1String("")));
    case VarType::Bool:
        return QVariant(false);
    case VarType::List:
    case VarType::Table:
        return QVariant(QVariantList());
    case VarType::Undeclared:
        break;
    }
    return QVariant();
}
} // namespace

VariableScope::VariableScope() = default;
VariableScope::VariableScope(const VariableScope &other) = default;
VariableScope::VariableScope(VariableScope &&other) noexcept = default;
VariableScope &VariableScope::operator=(const VariableScope &other) = default;
VariableScope &VariableScope::operator=(VariableScope &&other) noexcept = default;
VariableScope::~VariableScope() = default;

void VariableScope::store(const QString &key, VarType type, const QVariant &value)
{
    const auto known = m_variables.find(key);
    if (known != m_variables.end()) {
        *known = Variable{type, value, known->place};
        return;
    }
    const quint64 place = m_order.isEmpty() ? 0 : m_order.lastKey() + 1;
    m_order.insert(m_order.constEnd(), place, key);
    m_variables.insert(key, Variable{type, value, place});
}

void VariableScope::set(const QString &name, const QVariant &value)
{
    const QString key = variableKey(name);
    if (key.isEmpty())
        return;
    ++m_writeCount;
    const auto it = m_variables.find(key);
    if (it != m_variables.end() && it->type != VarType::Undeclared)
        it->value = value;
    else
        store(key, typeOfValue(value), value);
}

QVariant VariableScope::get(const QString &name) const
{
    return m_variables.value(variableKey(name)).value;
}

VarType VariableScope::typeOf(const QString &name) const
{
    return m_variables.value(variableKey(name)).type;
}

bool VariableScope::declare(const QString &name, VarType type)
{
    const QString key = variableKey(name);
    const QVariant value = emptyValue(type);
    if (key.isEmpty() || !value.isValid())
        return false;
    store(key, type, value);
    return true;
}

QStringList VariableScope::names() const
{
    return m_order.values();
}

bool VariableScope::contains(const QString &name) const
{
    return m_variables.contains(variableKey(name));
}

bool VariableScope::remove(const QString &name)
{
    const auto known = m_variables.find(variableKey(name));
    if (known == m_variables.end())
        return false;
    m_order.remove(known->place);
    m_variables.erase(known);
    return true;
}

quint64 VariableScope::writeCount() const
{
    return m_writeCount;
}

#include "TypeNames.h"

namespace Workbench
{
QString TypeNames::of(VarType type)
{
    switch (type) {
    case VarType::Int:
        return of(StepHost::ItemKind::Int);
    case VarType::Double:
        return of(StepHost::ItemKind::Double);
    case VarType::String:
        return of(StepHost::ItemKind::Text);
    case VarType::Bool:
        return of(StepHost::ItemKind::Bool);
    case VarType::List:
        return of(StepHost::ItemKind::List);
    case VarType::Table:
        return tr("Table");
    case VarType::Undeclared:
        break;
    }
    return tr("Undeclared");
}

QString TypeNames::of(StepHost::ItemKind kind)
{
    switch (kind) {
    case StepHost::ItemKind::Empty:
        return tr("Empty");
    case StepHost::ItemKind::Int:
        return tr("Integer");
    case StepHost::ItemKind::Double:
        return tr("Decimal");
    case StepHost::ItemKind::Text:
        return tr("Text");
    case StepHost::ItemKind::Bool:
        return tr("Yes/no");
    case StepHost::ItemKind::List:
        return tr("List");
    case StepHost::ItemKind::Other:
        break;
    }
    return tr("Other");
}

QString TypeNames::creationOf(VarType type, const QString &name)
{
    switch (type) {
    case VarType::List:
        return tr("Create list “%1”").arg(name);
    case VarType::Int:
        return tr("Create integer “%1”").arg(name);
    case VarType::String:
        return tr("Create text “%1”").arg(name);
    default:
        return tr("Create variable “%1”").arg(name);
    }
}
} // namespace Workbench

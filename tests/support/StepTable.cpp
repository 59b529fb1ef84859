#include "StepTable.h"

namespace
{
StepSetting text(const char *name)
{
    return {name, QString(), QString("  a text of %1 with blanks  ").arg(name)};
}

Texts variable(const QString &property, const char *label, const char *kind)
{
    return {
        {"prop_" + property, label}, {"editor_" + property, "VARNAME"}, {"varname_type_" + property, kind}};
}

QVector<StepRow> rows()
{
    const Texts targetList = variable("targetVar", "目标列表", "list");
    const QVector<StepSetting> oneList{text("targetVar")};
    const QVariantMap onA{{"targetVar", "a"}};

    const Texts threeLabels =
        variable("listA", "列表A", "list") + variable("listB", "列表B", "list") + targetList;
    const QVector<StepSetting> threeLists{text("listA"), text("listB"), text("targetVar")};
    const QVariantMap onBoth{{"listA", "a"}, {"listB", "b"}, {"targetVar", "c"}};

    return {
        {"ListAddOperation",
         "list.add",
         "列表添加项",
         ":/images/list_add.svg",
         80,
         {text("targetVar"), text("value"), text("index")},
         targetList
             + Texts{{"prop_value", "项值"},
                     {"editor_value", "VARREF"},
                     {"varref_kind_value", "string"},
                     {"prop_index", "插入位置(空=末尾)"}},
         "列表添加项: {targetVar} <- {value}",
         "向列表 {targetVar} 添加项 {value}",
         {{"targetVar", "a"}, {"value", "new"}, {"index", "0"}}},
        {"ListRemoveOperation",
         "list.remove",
         "列表移除项",
         ":/images/list_remove.svg",
         90,
         {text("targetVar"), {"mode", 0, -7}, text("index"), text("value")},
         targetList
             + Texts{{"prop_mode", "移除依据"},
                     {"editor_mode", "COMBO"},
                     {"choices_mode", "按索引值|按元素值"},
                     {"prop_index", "索引值(从0开始)"},
                     {"editor_index", "NUMVAR:INT"},
                     {"show_when_index", "mode=0"},
                     {"prop_value", "元素值"},
                     {"editor_value", "VARREF"},
                     {"varref_type_value", "int,double,string,bool"},
                     {"show_when_value", "mode=1"}},
         "列表移除项: {targetVar} (mode=0)",
         "从列表 {targetVar} 按索引 {index} 移除项",
         {{"targetVar", "a"}, {"index", "0"}}},
        {"ListGetOperation",
         "list.get",
         "列表取项",
         ":/images/list_get.svg",
         40,
         {text("sourceVar"), text("index"), text("targetVar")},
         variable("sourceVar", "源列表", "list")
             + Texts{{"prop_index", "索引(从0开始的第几项)"}, {"editor_index", "NUMVAR:INT"}}
             + variable("targetVar", "目标变量(存元素)", "scalar"),
         "列表取项: {sourceVar}[{index}] -> {targetVar}",
         "取列表 {sourceVar} 第 {index} 项写入 {targetVar}",
         {{"sourceVar", "a"}, {"index", "0"}, {"targetVar", "text"}}},
        {"ListClearOperation", "list.clear", "列表清空", ":/images/list_clear.svg", 20, oneList, targetList,
         "列表清空: {targetVar}", "清空列表 {targetVar}", onA},
        {"ListSortOperation",
         "list.sort",
         "列表排序",
         ":/images/list_sort.svg",
         0,
         {text("targetVar"), {"ascending", true, false}},
         targetList + Texts{{"prop_ascending", "升序"}},
         "列表排序: {targetVar} (asc)",
         "对列表 {targetVar} 排序（升序）",
         onA},
        {"ListMergeOperation", "list.merge", "列表合并", ":/images/list_merge.svg", 70, threeLists,
         threeLabels, "列表合并: {listA} + {listB} -> {targetVar}",
         "合并列表 {listA} 与 {listB} 写入 {targetVar}", onBoth},
        {"ListReverseOperation", "list.reverse", "列表反转", ":/images/list_reverse.svg", 10, oneList,
         targetList, "列表反转: {targetVar}", "反转列表 {targetVar}", onA},
        {"ListDedupOperation", "list.dedup", "列表去重", ":/images/list_dedup.svg", 30, oneList, targetList,
         "列表去重: {targetVar}", "对列表 {targetVar} 去重", onA},
        {"ListIntersectOperation", "list.intersect", "列表交集", ":/images/list_intersect.svg", 50,
         threeLists, threeLabels, "列表交集: {listA} ∩ {listB} -> {targetVar}",
         "取列表 {listA} 与 {listB} 的交集写入 {targetVar}", onBoth},
        {"ListSubtractOperation", "list.subtract", "列表差集", ":/images/list_subtract.svg", 60, threeLists,
         threeLabels, "列表差集: {listA} - {listB} -> {targetVar}",
         "取列表 {listA} 减去 {listB} 写入 {targetVar}", onBoth},
    };
}
} // namespace

const QVector<StepRow> &stepTable()
{
    static const QVector<StepRow> table = rows();
    return table;
}

const StepRow &stepRow(const QString &typeId)
{
    for (const StepRow &row : stepTable()) {
        if (row.typeId == typeId)
            return row;
    }
    static const StepRow none;
    return none;
}

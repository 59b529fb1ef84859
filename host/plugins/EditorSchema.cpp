#include "EditorSchema.h"

#include "StepSettings.h"
#include "host/values/QuotedText.h"
#include "host/values/VarTypes.h"
#include "hostapi/Operation.h"

#include <QHash>
#include <QMetaClassInfo>

namespace StepHost
{
namespace
{
template<typename Value>
struct Word
{
    Value value;
    const char *text;
};

constexpr Word<EditorKind> editorWords[] = {
    {EditorKind::VariableName, "VARNAME"},
    {EditorKind::VariableReference, "VARREF"},
    {EditorKind::IntegerOrVariable, "NUMVAR:INT"},
    {EditorKind::Choice, "COMBO"},
};

constexpr Word<VariableKind> variableKindWords[] = {
    {VariableKind::List, "list"},
    {VariableKind::Scalar, "scalar"},
};

template<typename Value, std::size_t N>
QString wordOf(const Word<Value> (&words)[N], Value value)
{
    for (const Word<Value> &word : words) {
        if (word.value == value)
            return QLatin1String(word.text);
    }
    return QString();
}

template<typename Value, std::size_t N>
std::optional<Value> valueOf(const Word<Value> (&words)[N], const QString &text)
{
    for (const Word<Value> &word : words) {
        if (text == QLatin1String(word.text))
            return word.value;
    }
    return std::nullopt;
}

template<typename Value, std::size_t N>
QString allWords(const Word<Value> (&words)[N])
{
    QStringList texts;
    for (const Word<Value> &word : words)
        texts.append(QLatin1String(word.text));
    return texts.join(QLatin1String(", "));
}

// Class info knows no undeclared values.
std::optional<VarType> typeCalled(const QString &word)
{
    const std::optional<VarType> type = varTypeFromName(word);
    return type == VarType::Undeclared ? std::nullopt : type;
}

QString allTypes()
{
    return declarableTypeNames().join(QLatin1String(", "));
}

enum class Prefix { Label, Editor, VariableKind, LiteralType, ValueTypes, Choices, ShowWhen };

constexpr Word<Prefix> prefixes[] = {
    {Prefix::Label, "prop_"},
    {Prefix::Editor, "editor_"},
    {Prefix::VariableKind, "varname_type_"},
    {Prefix::LiteralType, "varref_kind_"},
    {Prefix::ValueTypes, "varref_type_"},
    {Prefix::Choices, "choices_"},
    {Prefix::ShowWhen, "show_when_"},
};

/// Reads one declaration after the other and collects what is wrong.
class SchemaReader
{
public:
    explicit SchemaReader(const QVector<PropertyDeclaration> &properties);

    void read(const QVector<ClassInfoDeclaration> &entries);
    EditorSchema take()
    {
        return m_schema;
    }

private:
    void report(SchemaFault fault, const QString &text)
    {
        m_schema.problems.append({fault, text});
    }
    void readEntry(SettingSchema &setting, Prefix prefix, const QString &key, const QString &value);
    void readShowWhen(SettingSchema &setting, const QString &key, const QString &value);
    void readValueTypes(SettingSchema &setting, const QString &key, const QString &value);
    void checkEditor(const SettingSchema &setting);
    void checkUse(const SettingSchema &setting, Prefix prefix, EditorKind editor);
    void checkRules();
    bool isPossible(const VisibilityRule &rule) const;
    void breakCycles();

    EditorSchema m_schema;
    QHash<QString, int> m_indexes;
    QHash<QString, QString> m_entries;
};

SchemaReader::SchemaReader(const QVector<PropertyDeclaration> &properties)
{
    for (const PropertyDeclaration &property : properties) {
        SettingSchema setting;
        setting.property = property.name;
        setting.type = property.type;
        m_indexes.insert(property.name, m_schema.settings.size());
        m_schema.settings.append(setting);
    }
}

void SchemaReader::read(const QVector<ClassInfoDeclaration> &entries)
{
    for (const ClassInfoDeclaration &entry : entries) {
        const Word<Prefix> *prefix = nullptr;
        for (const Word<Prefix> &candidate : prefixes) {
            if (entry.key.startsWith(QLatin1String(candidate.text)))
                prefix = &candidate;
        }
        if (!prefix) {
            report(SchemaFault::UnknownPrefix,
                   QStringLiteral("%1 begins with none of %2").arg(quoted(entry.key), allWords(prefixes)));
            continue;
        }
        const auto index = m_indexes.constFind(entry.key.mid(int(qstrlen(prefix->text))));
        if (index == m_indexes.constEnd()) {
            report(SchemaFault::UnknownProperty,
                   QStringLiteral("%1 names no property of the class").arg(quoted(entry.key)));
            continue;
        }
        if (m_entries.contains(entry.key))
            report(SchemaFault::DuplicateKey,
                   QStringLiteral("%1 is declared more than once").arg(quoted(entry.key)));
        m_entries.insert(entry.key, entry.value);
        readEntry(m_schema.settings[*index], prefix->value, entry.key, entry.value);
    }
    for (const SettingSchema &setting : qAsConst(m_schema.settings))
        checkEditor(setting);
    checkRules();
    breakCycles();
}

void SchemaReader::readEntry(SettingSchema &setting, Prefix prefix, const QString &key, const QString &value)
{
    switch (prefix) {
    case Prefix::Label:
        setting.label = value;
        break;
    case Prefix::Editor: {
        const std::optional<EditorKind> editor = valueOf(editorWords, value);
        setting.editor = editor.value_or(EditorKind::Default);
        if (!editor)
            report(SchemaFault::UnknownEditor,
                   QStringLiteral("%1 is %2, which is none of %3")
                       .arg(quoted(key), quoted(value), allWords(editorWords)));
        break;
    }
    case Prefix::VariableKind: {
        const std::optional<VariableKind> kind = valueOf(variableKindWords, value);
        setting.variableKind = kind.value_or(VariableKind::Any);
        if (!kind)
            report(SchemaFault::UnknownKind,
                   QStringLiteral("%1 is %2, which is none of %3")
                       .arg(quoted(key), quoted(value), allWords(variableKindWords)));
        break;
    }
    case Prefix::LiteralType: {
        const std::optional<VarType> type = typeCalled(value);
        setting.literalType = type.value_or(VarType::Undeclared);
        if (!type)
            report(
                SchemaFault::UnknownKind,
                QStringLiteral("%1 is %2, which is none of %3").arg(quoted(key), quoted(value), allTypes()));
        break;
    }
    case Prefix::ValueTypes:
        readValueTypes(setting, key, value);
        break;
    case Prefix::Choices:
        setting.choices = value.isEmpty() ? QStringList() : value.split(QLatin1Char('|'));
        break;
    case Prefix::ShowWhen:
        readShowWhen(setting, key, value);
        break;
    }
}

void SchemaReader::readValueTypes(SettingSchema &setting, const QString &key, const QString &value)
{
    setting.valueTypes.clear();
    const QStringList words = value.split(QLatin1Char(','));
    for (const QString &word : words) {
        const std::optional<VarType> type = typeCalled(word);
        if (!type) {
            report(
                SchemaFault::UnknownKind,
                QStringLiteral("%1 has %2, which is none of %3").arg(quoted(key), quoted(word), allTypes()));
            setting.valueTypes.clear();
            return;
        }
        if (!setting.valueTypes.contains(*type))
            setting.valueTypes.append(*type);
    }
}

void SchemaReader::readShowWhen(SettingSchema &setting, const QString &key, const QString &value)
{
    setting.showWhen.reset();
    const int equals = value.indexOf(QLatin1Char('='));
    bool isNumber = false;
    const int number = equals < 0 ? 0 : value.midRef(equals + 1).toInt(&isNumber);
    if (equals < 1 || !isNumber) {
        report(SchemaFault::UnreadableRule,
               QStringLiteral("%1 is %2, which is not a property name, \"=\" and an integer")
                   .arg(quoted(key), quoted(value)));
        return;
    }
    setting.showWhen = VisibilityRule{value.left(equals), number};
}

void SchemaReader::checkEditor(const SettingSchema &setting)
{
    if (setting.label.isEmpty())
        report(SchemaFault::MissingLabel,
               QStringLiteral("the setting %1 has no label (\"prop_%2\")")
                   .arg(quoted(setting.property), setting.property.left(60)));
    checkUse(setting, Prefix::VariableKind, EditorKind::VariableName);
    checkUse(setting, Prefix::LiteralType, EditorKind::VariableReference);
    checkUse(setting, Prefix::ValueTypes, EditorKind::VariableReference);
    checkUse(setting, Prefix::Choices, EditorKind::Choice);
    if (setting.editor != EditorKind::Choice)
        return;
    if (setting.choices.isEmpty())
        report(SchemaFault::MissingChoices,
               QStringLiteral("the setting %1 has a choice editor and no choices")
                   .arg(quoted(setting.property)));
    else if (setting.choices.contains(QString()))
        report(SchemaFault::MissingChoices,
               QStringLiteral("choice %1 of the setting %2 is empty")
                   .arg(setting.choices.indexOf(QString()))
                   .arg(quoted(setting.property)));
    if (setting.type != QMetaType::Int)
        report(SchemaFault::ChoiceNotInteger,
               QStringLiteral("the setting %1 has a choice editor and is not an int")
                   .arg(quoted(setting.property)));
}

void SchemaReader::checkUse(const SettingSchema &setting, Prefix prefix, EditorKind editor)
{
    const QString key = wordOf(prefixes, prefix) + setting.property;
    if (setting.editor != editor && m_entries.contains(key))
        report(
            SchemaFault::UnusedKey,
            QStringLiteral("%1 has a meaning only for the editor %2").arg(quoted(key), editorWord(editor)));
}

void SchemaReader::checkRules()
{
    for (SettingSchema &setting : m_schema.settings) {
        if (!setting.showWhen)
            continue;
        if (!m_indexes.contains(setting.showWhen->property)) {
            report(SchemaFault::RuleUnknownProperty,
                   QStringLiteral("the visibility rule of %1 names %2, which is no property of the class")
                       .arg(quoted(setting.property), quoted(setting.showWhen->property)));
            setting.showWhen.reset();
        } else if (!isPossible(*setting.showWhen)) {
            report(SchemaFault::RuleImpossibleValue,
                   QStringLiteral("the visibility rule of %1 waits for %2 = %3, which cannot be")
                       .arg(quoted(setting.property), quoted(setting.showWhen->property),
                            QString::number(setting.showWhen->value)));
            setting.showWhen.reset();
        }
    }
}

bool SchemaReader::isPossible(const VisibilityRule &rule) const
{
    const SettingSchema &setting = m_schema.settings.at(m_indexes.value(rule.property));
    if (setting.type == QMetaType::Bool)
        return rule.value == 0 || rule.value == 1;
    if (setting.type != QMetaType::Int)
        return false;
    return setting.editor != EditorKind::Choice || (rule.value >= 0 && rule.value < setting.choices.size());
}

void SchemaReader::breakCycles()
{
    // A setting has at most one rule, so every walk is a chain; a chain that meets itself is a circle.
    QVector<int> walkOf(m_schema.settings.size(), -1);
    for (int start = 0; start < m_schema.settings.size(); ++start) {
        int at = start;
        while (walkOf.at(at) < 0 && m_schema.settings.at(at).showWhen) {
            walkOf[at] = start;
            at = m_indexes.value(m_schema.settings.at(at).showWhen->property);
        }
        while (walkOf.at(at) == start && m_schema.settings.at(at).showWhen) {
            SettingSchema &setting = m_schema.settings[at];
            report(SchemaFault::RuleCycle,
                   QStringLiteral("the visibility rule of %1 depends on itself through %2")
                       .arg(quoted(setting.property), quoted(setting.showWhen->property)));
            at = m_indexes.value(setting.showWhen->property);
            setting.showWhen.reset();
        }
    }
}
} // namespace

QString editorWord(EditorKind kind)
{
    return wordOf(editorWords, kind);
}

QString variableKindWord(VariableKind kind)
{
    return wordOf(variableKindWords, kind);
}

bool isOfKind(VarType type, VariableKind kind)
{
    switch (kind) {
    case VariableKind::List:
        return type == VarType::List;
    case VariableKind::Scalar:
        return type == VarType::Int || type == VarType::Double || type == VarType::String
            || type == VarType::Bool;
    case VariableKind::Any:
        break;
    }
    return true;
}

const SettingSchema *EditorSchema::find(const QString &property) const
{
    for (const SettingSchema &setting : settings) {
        if (setting.property == property)
            return &setting;
    }
    return nullptr;
}

EditorSchema readEditorSchema(const QMetaObject &metaObject)
{
    const bool isStep = metaObject.inherits(&Operation::staticMetaObject);
    const int firstEntry = isStep ? Operation::staticMetaObject.classInfoCount() : 0;
    QVector<PropertyDeclaration> properties;
    const QVector<QMetaProperty> settings = settingsOf(metaObject);
    for (const QMetaProperty &setting : settings)
        properties.append({QString::fromUtf8(setting.name()), setting.userType()});
    QVector<ClassInfoDeclaration> entries;
    for (int i = firstEntry; i < metaObject.classInfoCount(); ++i) {
        const QMetaClassInfo entry = metaObject.classInfo(i);
        entries.append({QString::fromUtf8(entry.name()), QString::fromUtf8(entry.value())});
    }
    return readEditorSchema(properties, entries);
}

EditorSchema readEditorSchema(const QVector<PropertyDeclaration> &properties,
                              const QVector<ClassInfoDeclaration> &entries)
{
    SchemaReader reader(properties);
    reader.read(entries);
    return reader.take();
}

bool isVisible(const SettingSchema &setting, const QObject &step)
{
    return !setting.showWhen
        || step.property(setting.showWhen->property.toUtf8().constData()).toInt() == setting.showWhen->value;
}
} // namespace StepHost

/// Names of variables, many of one hash value among them, through the scope and through a script.
///
/// Each line is a letter and a name. The letter says what is done with the variable: "d" and a digit for the type declares
/// it, "s" sets it, "r" removes it. A name such as "#7" is the seventh of names that have one hash value. A line "m" and a
/// number reads a script with so many of these.

#include "FuzzInput.h"
#include "host/plugins/StepCatalogue.h"
#include "host/scripts/ScriptJson.h"
#include "hostapi/VariableScope.h"
#include "tests/support/CollidingNames.h"

#include <algorithm>
#include <vector>

namespace
{
constexpr int mostNames = 5000;

const QStringList &collidingNames()
{
    static const QStringList names = CollidingNames::make(mostNames);
    return names;
}

QString nameOf(const QString &text)
{
    if (!text.startsWith('#'))
        return text;
    const int number = text.midRef(1).toInt();
    return collidingNames().at(std::max(0, number) % collidingNames().size());
}

struct Variable
{
    QString name;
    VarType type;
    QVariant value;
};

/// A scope in the plainest way.
struct PlainScope
{
    std::vector<Variable> variables;
    quint64 writes = 0;

    std::vector<Variable>::iterator find(const QString &name)
    {
        return std::find_if(variables.begin(), variables.end(),
                            [&name](const Variable &variable) { return variable.name == name; });
    }

    Variable &at(const QString &name)
    {
        const auto it = find(name);
        if (it != variables.end())
            return *it;
        variables.push_back({name, VarType::Undeclared, QVariant()});
        return variables.back();
    }
};

QString withoutMark(const QString &name)
{
    return name.startsWith('$') ? name.mid(1) : name;
}

void declare(VariableScope &scope, PlainScope &plain, const QString &name, int number)
{
    static const QVariant empty[] = {0, 0.0, "", false, QVariantList(), QVariantList()};
    const auto type = VarType(1 + number % 6);
    const bool isName = !withoutMark(name).isEmpty();
    require(scope.declare(name, type) == isName, "a name is declared or refused wrongly");
    if (isName) {
        Variable &variable = plain.at(withoutMark(name));
        variable.type = type;
        variable.value = empty[number % 6];
    }
}

void set(VariableScope &scope, PlainScope &plain, const QString &name)
{
    const int value = int(plain.variables.size());
    scope.set(name, value);
    if (withoutMark(name).isEmpty())
        return;
    Variable &variable = plain.at(withoutMark(name));
    if (variable.type == VarType::Undeclared)
        variable.type = VarType::Int;
    variable.value = value;
    ++plain.writes;
}

void remove(VariableScope &scope, PlainScope &plain, const QString &name)
{
    const auto it = plain.find(withoutMark(name));
    require(scope.remove(name) == (it != plain.variables.end()), "a variable is removed or not wrongly");
    if (it != plain.variables.end())
        plain.variables.erase(it);
}

void requireSame(const VariableScope &scope, const PlainScope &plain)
{
    const QStringList names = scope.names();
    require(names.size() == int(plain.variables.size()), "there are more or fewer variables");
    for (int i = 0; i < names.size(); ++i) {
        const Variable &variable = plain.variables[std::size_t(i)];
        const QString reference = '$' + variable.name;
        require(names.at(i) == variable.name, "the names are others or in another order");
        require(scope.contains(reference) && scope.typeOf(reference) == variable.type
                    && scope.get(reference) == variable.value,
                "a variable is another one");
    }
    require(scope.writeCount() == plain.writes, "the writes are counted wrongly");
}

// A variable for each name, whatever hash values they have.
void requireReads(int count)
{
    static const StepHost::StepCatalogue noSteps;
    static std::vector<bool> isDone(mostNames + 1);
    if (isDone[std::size_t(count)]) // It would do the same again.
        return;
    isDone[std::size_t(count)] = true;
    QByteArray script = R"({"steps": [], "variables": [)";
    for (int i = 0; i < count && i < collidingNames().size(); ++i)
        script += (i > 0 ? R"(, {"name": ")" : R"({"name": ")") + collidingNames().at(i).toUtf8()
            + R"(", "type": "int"})";
    const StepHost::Result<StepHost::Script> read = StepHost::readScript(script + "]}", noSteps);
    require(static_cast<bool>(read), "a script with unlike names is refused");
    VariableScope scope;
    declareVariables(*read, scope);
    require(scope.names() == collidingNames().mid(0, count), "a script has other variables than its text");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    VariableScope scope;
    PlainScope plain;
    bool hasRead = false;
    while (!input.atEnd()) {
        const QString line = input.text();
        switch (line.isEmpty() ? 0 : line.at(0).unicode()) {
        case 'd':
            declare(scope, plain, nameOf(line.mid(2)), line.size() > 1 ? line.at(1).unicode() : 0);
            break;
        case 's':
            set(scope, plain, nameOf(line.mid(1)));
            break;
        case 'r':
            remove(scope, plain, nameOf(line.mid(1)));
            break;
        case 'm':
            if (!hasRead)
                requireReads(qBound(0, line.midRef(1).toInt(), mostNames));
            hasRead = true;
            break;
        default:
            break;
        }
    }
    requireSame(scope, plain);
    return 0;
}

// Releases of one plug-in. A module names the one that it is; all but "older", "same" and "newer" break what users of the
// older one have.

#include "ReleaseSteps.h"
#include "hostapi/VariableScope.h"
#include "tests/plugins/FixturePlugin.h"

#include <QDataStream>
#include <QDebug>
#include <QPointer>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace
{
const char *release = "";

Operation *newTakeStep()
{
    if (isRelease("setting-gone"))
        return new NoSeparatorStep;
    if (isRelease("setting-retyped"))
        return new SeparatorsStep;
    if (isRelease("choice-gone"))
        return new FewerPartsStep;
    if (isRelease("choice-moved"))
        return new MovedPartsStep;
    if (isRelease("choice-renamed"))
        return new RenamedPartStep;
    if (isRelease("newer"))
        return new NewerStep;
    return new TakeStep;
}

class ReleasePlugin : public FixturePlugin
{
    Q_OBJECT

public:
    QList<Operation *> createPrototypes() override
    {
        QList<Operation *> prototypes{newTakeStep()};
        if (!isRelease("type-gone"))
            prototypes.append(new FixtureStep("fixture.rest"));
        if (isRelease("newer"))
            prototypes.append(new FixtureStep("fixture.more"));
        return prototypes;
    }
    QString pluginId() const override
    {
        return isRelease("renamed") ? QString("com.example.Other") : FixturePlugin::pluginId();
    }
    QString version() const override
    {
        return isRelease("outdated") ? QString("0.9")
            : isRelease("newer")     ? QString("1.10.0")
                                     : QString("1.9.0");
    }
};
} // namespace

bool isRelease(const char *name)
{
    return std::strcmp(release, name) == 0;
}

TakeBase::TakeBase() : FixtureStep("fixture.take")
{
    if (isRelease("default"))
        part = 1;
}

Operation *TakeBase::made(TakeBase *copy, QObject *parent) const
{
    copy->setParent(parent);
    copy->m_baseState = m_baseState;
    copy->listVar = listVar;
    copy->targetVar = targetVar;
    copy->separator = separator;
    copy->separators = separators;
    copy->part = part;
    copy->isQuoted = isQuoted;
    return copy;
}

void TakeBase::doOperation() const
{
    if (isRelease("older-dies"))
        std::abort();
    if (!m_variableScope || listVar.isEmpty() || targetVar.isEmpty())
        return;
    if (m_variableScope->typeOf(listVar) != VarType::List
        || m_variableScope->typeOf(targetVar) != VarType::String) {
        qWarning("[Take] skipped");
        return;
    }
    QStringList texts;
    const QVariantList list = m_variableScope->get(listVar).toList();
    for (const QVariant &item : list)
        texts.append(item.toString());
    if (part == 1 || part == 2)
        texts = part == 1 ? texts.mid(0, 1) : texts.mid(texts.size() - 1);
    if (isRelease("runs-otherwise"))
        std::reverse(texts.begin(), texts.end());
    // What nobody comes to by chance.
    const bool isOfScript = separator == QLatin1String(" and so on ");
    if (isRelease("script-shape") && isOfScript)
        m_variableScope->set(targetVar, texts.size());
    else
        m_variableScope->set(
            targetVar, texts.join(isRelease("scripts-otherwise") && isOfScript ? QString() : separator));
}

void TakeBase::saveOperation(QDataStream &stream) const
{
    Operation::saveOperation(stream);
    stream << quint8(isRelease("newer") ? 2 : 1) << listVar << targetVar << separator << qint32(part);
    if (isRelease("newer"))
        stream << isQuoted;
}

void TakeBase::loadOperation(QDataStream &stream)
{
    Operation::loadOperation(stream);
    quint8 version = 0;
    qint32 number = 0;
    stream >> version;
    if (isRelease("record-swapped"))
        stream >> targetVar >> listVar;
    else
        stream >> listVar >> targetVar;
    stream >> separator >> number;
    part = number;
    isQuoted = false;
    if (version == 2 || isRelease("record-longer"))
        stream >> isQuoted;
}

/// What the entry point of a module that is the release \a name is to return.
Q_DECL_EXPORT QObject *faultyInstance(const char *name);

QObject *faultyInstance(const char *name)
{
    static QPointer<QObject> instance;
    release = name;
    if (!instance)
        instance = new ReleasePlugin;
    return instance;
}

#include "Releases.moc"

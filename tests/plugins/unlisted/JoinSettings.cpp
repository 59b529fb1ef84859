// What a JoinStep holds: settings, copies and texts.

#include "ActiveFault.h"
#include "JoinStep.h"
#include "Manners.h"
#include "hostapi/VariableScope.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QLocale>
#include <QThread>

#include <chrono>
#include <random>
#include <stdexcept>
#include <unistd.h>

namespace
{
QString stored(QString text)
{
    if (has("settings.normalizes"))
        text = text.normalized(QString::NormalizationForm_C);
    if (has("settings.line-ends"))
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (has("settings.lower-case"))
        text = text.toLower();
    if (has("settings.drops-mark") && text.startsWith(QLatin1Char('$')))
        text.remove(0, 1);
    if (has("settings.drops-invisible"))
        text.remove(QChar(0x200b)).remove(QChar(0xfeff));
    if (has("settings.cuts"))
        text.truncate(32767);
    if (has("settings.utf8"))
        text = QString::fromUtf8(text.toUtf8());
    if (has("settings.escapes"))
        text = text.toHtmlEscaped();
    if (has("settings.drops-last-line-end") && text.size() > 5 && text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    if (has("settings.cuts-digits") && text.size() > 9 && text.front().isDigit())
        text.truncate(9);
    return text;
}

QString &lastLimit()
{
    static QString limit;
    return limit;
}

void touch(VariableScope *scope, const char *fault)
{
    if (has(fault) && scope)
        scope->set(QStringLiteral("touched"), 1);
}
} // namespace

JoinStep::JoinStep(QObject *parent) : Operation(parent)
{
    if (has("sound.defaults")) {
        m_settings.listA = QString("items");
        m_settings.separator = QString(", ");
        m_settings.targetVar = QString("result");
    }
    if (has("sound.default-choice"))
        m_settings.mode = 2;
    if (has("prototypes.shared-limit"))
        m_settings.limit = lastLimit();
    static VariableScope ownScope;
    if (has("prototypes.with-scope"))
        m_variableScope = &ownScope;
    if (has("prototypes.base-state"))
        m_baseState = 17;
    if (has("prototypes.default-not-a-choice"))
        m_settings.mode = 7;
    if (has("prototypes.random-default"))
        m_settings.separator = QString::number(std::random_device()());
}

JoinStep::~JoinStep()
{
    misbehave(Call::Delete);
}

QString JoinStep::listA() const
{
    return m_settings.listA;
}

void JoinStep::setListA(const QString &name)
{
    misbehave(Call::Edit);
    touch(m_variableScope, "running.edit-touches");
    m_settings.listA = stored(name);
}

QString JoinStep::listB() const
{
    return m_settings.listB;
}

void JoinStep::setListB(const QString &name)
{
    m_settings.listB = stored(name);
    if (has("settings.never-equal") && m_settings.listB == m_settings.listA)
        m_settings.listB.clear();
}

int JoinStep::mode() const
{
    return m_settings.mode;
}

void JoinStep::setMode(int mode)
{
    m_settings.mode = mode;
    if (has("settings.mode-resets") && mode == 2)
        m_settings.isReversed = false;
    if (has("settings.resets-hidden") && mode != 0)
        m_settings.separator.clear();
}

QString JoinStep::separator() const
{
    return m_source ? m_source->m_settings.separator : m_settings.separator;
}

void JoinStep::setSeparator(const QString &separator)
{
    if (has("settings.ignores-while-hidden") && m_settings.mode != 0)
        return;
    m_settings.separator = stored(separator);
}

QString JoinStep::limit() const
{
    return m_settings.limit;
}

void JoinStep::setLimit(const QString &limit)
{
    bool isNumber = false;
    limit.toInt(&isNumber);
    if (has("settings.numbers-only") && !isNumber && !limit.isEmpty())
        return;
    m_settings.limit = stored(limit);
    lastLimit() = m_settings.limit;
}

bool JoinStep::isReversed() const
{
    return m_settings.isReversed;
}

void JoinStep::setReversed(bool isReversed)
{
    if (has("settings.toggles"))
        m_settings.isReversed = isReversed ? !m_settings.isReversed : false;
    else
        m_settings.isReversed = isReversed;
}

QString JoinStep::targetVar() const
{
    return m_settings.targetVar;
}

void JoinStep::setTargetVar(const QString &name)
{
    if (has("settings.ignores-with-scope") && m_variableScope)
        return;
    m_settings.targetVar = stored(name);
}

QString JoinStep::root() const
{
    if (has("identity.fixed-category"))
        return QCoreApplication::translate("JoinStep", "Joining");
    return has("identity.category-control") ? QString("Joining\a") : QString("Joining");
}

QString JoinStep::typeId() const
{
    if (has("identity.type-per-process"))
        return QString("join.lists%1").arg(getpid());
    if (has("identity.translated-type"))
        return QCoreApplication::translate("JoinStep", "join.lists");
    return QString("join.lists");
}

QString JoinStep::typeName() const
{
    if (has("texts.name-replacement"))
        return QString("Join") + QChar(0xfffd);
    if (has("texts.name-line-end"))
        return QString("Join lists\n");
    if (has("texts.in-library"))
        return QStringLiteral("Join lists");
    return QString("Join lists");
}

QString JoinStep::icon() const
{
    static int calls = 0;
    if (has("icon.changes"))
        return ++calls % 2 == 0 ? QString(":/unlisted/join.svg") : QString(":/unlisted/other.svg");
    if (has("icon.of-clone") && m_isClone)
        return QString(":/unlisted/gone.svg");
    if (has("icon.not-own"))
        return QString(":/qpdf/qpdfa_metadata.xml");
    if (has("icon.case"))
        return QString(":/unlisted/Join.svg");
    if (has("icon.script"))
        return QString(":/unlisted/script.svg");
    if (has("icon.outside"))
        return QString(":/unlisted/outside.svg");
    if (has("icon.not-well-formed"))
        return QString(":/unlisted/cut.svg");
    if (has("icon.empty-drawing"))
        return QString(":/unlisted/empty.svg");
    if (has("icon.huge"))
        return QString(":/unlisted/huge.svg");
    if (has("sound.solid-icon"))
        return QString(":/unlisted/solid.svg");
    if (has("sound.shared-icon"))
        return QString(":/unlisted/other.svg");
    return QString(":/unlisted/join.svg");
}

QString JoinStep::toString() const
{
    misbehave(Call::Text);
    touch(m_variableScope, "running.text-touches");
    if (has("texts.separator"))
        return QString("Join") + QChar(0x2028) + "lists";
    if (has("texts.empty-after-damage") && m_isDamaged)
        return QString();
    if (has("sound.long-summary"))
        return QString("Join ") + QString(3000, QLatin1Char('x'));
    if (has("texts.placeholder"))
        return QString("%1: %2 and %3 -> %4").arg(typeName(), m_settings.listA, m_settings.listB);
    if (has("texts.address"))
        return QString("Join at %1").arg(quintptr(this), 0, 16);
    if (has("texts.after-run") && m_hasRun)
        return QString("Joined");
    if (has("texts.slow"))
        QThread::sleep(m_settings.listA.size() > 1000 ? 3 : 0);
    if (has("texts.debug"))
        qDebug("a text is made");
    if (has("sound.locale-text"))
        return QString("Join ") + QLocale().toString(1234.5) + QLatin1Char(' ')
            + QLocale::system().toString(1.5);
    return QString("Join ") + m_settings.listA + " and " + m_settings.listB;
}

QString JoinStep::description() const
{
    if (has("texts.throws-on-long") && m_settings.separator.size() > 50000)
        throw std::length_error("separator");
    if (has("texts.control"))
        return QString("Joins\x01 lists");
    if (has("texts.mojibake"))
        return QString::fromLatin1("Joins \xc3\xa4") + QChar(0xfffd);
    if (has("texts.surrogate"))
        return QString("Joins ") + QChar(0xd83d);
    if (has("texts.time"))
        return QString("Joins lists since %1")
            .arg(std::chrono::steady_clock::now().time_since_epoch().count() / 100000);
    if (has("sound.lines"))
        return QString("Joins two lists.\n\n\tThe first,\n\tthe second.");
    if (has("sound.percent"))
        return QString("Joins 100 % of two lists");
    return QString("Joins two lists into ") + m_settings.targetVar;
}

void JoinStep::copyTo(JoinStep &copy) const
{
    copy.m_settings = m_settings;
    copy.m_baseState = m_baseState;
    copy.m_isClone = true;
    if (has("clone.adopted") && !copy.parent())
        copy.setParent(const_cast<JoinStep *>(this));
    if (has("clone.half-state"))
        copy.m_baseState = m_baseState & 0xffff;
    if (has("clone.scope-after-run") && m_hasRun)
        copy.m_variableScope = m_variableScope;
    if (has("clone.linked"))
        copy.m_source = this;
    if (has("clone.of-a-clone") && m_isClone)
        copy.m_settings.limit.clear();
    if (has("clone.empties-source"))
        const_cast<JoinStep *>(this)->m_settings.separator.clear();
    if (has("clone.hidden-field"))
        copy.m_settings.version = 3;
    if (has("clone.trims"))
        copy.m_settings.separator = m_settings.separator.trimmed();
    if (has("clone.hidden-setting") && m_settings.mode != 0)
        copy.m_settings.separator.clear();
    if (has("clone.through-record-text"))
        copy.m_settings.listA = QString::fromUtf8(m_settings.listA.toUtf8());
    if (has("clone.long-text"))
        copy.m_settings.targetVar.truncate(1000);
    if (has("clone.other-thread")) {
        static QThread thread;
        copy.moveToThread(&thread);
    }
    if (has("clone.blocks-signals"))
        copy.blockSignals(true);
    if (has("clone.keeps-children"))
        new QObject(&copy);
    misbehave(Call::Clone);
    touch(m_variableScope, "running.clone-touches");
}

Operation *JoinStep::clone(QObject *parent) const
{
    static int count = 0;
    if (has("clone.runs-out") && ++count > 100)
        return nullptr;
    auto *copy = new JoinStep(parent);
    copyTo(*copy);
    return copy;
}

QString GlueStep::typeId() const
{
    if (has("identity.case-only"))
        return QString("join.Lists");
    return QString("join.glue");
}

QString GlueStep::typeName() const
{
    return QString("Glue lists");
}

Operation *GlueStep::clone(QObject *parent) const
{
    auto *copy = new GlueStep(parent);
    copyTo(*copy);
    return copy;
}

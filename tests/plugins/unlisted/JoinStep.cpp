#include "JoinStep.h"

#include "ActiveFault.h"
#include "Manners.h"
#include "hostapi/VariableScope.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QLocale>
#include <QRandomGenerator>
#include <QSet>
#include <QThread>
#include <QTime>
#include <QVector>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <unistd.h>

namespace
{
int runs = 0;
QVariantList cachedList;

QString withoutMark(const QString &name)
{
    return name.startsWith(QLatin1Char('$')) ? name.mid(1) : name;
}

void warn(const QString &name)
{
    if (has("running.tagless"))
        qWarning().noquote() << "Join:" << name << "is no list, skipped";
    else if (has("running.critical"))
        qCritical().noquote() << "[Join]" << name << "is no list, skipped";
    else if (has("running.info"))
        qInfo().noquote() << "[Join]" << name << "is no list, skipped";
    else if (has("running.two-lines"))
        qWarning("[Join] no list\n[Join] skipped");
    else if (has("sound.long-warning"))
        qWarning().noquote() << "[Join] 列表 \U0001f600" << QString(1500, QLatin1Char('!')) << name;
    else if (!has("running.silent-skip"))
        qWarning().noquote() << "[Join]" << name << "is no list, skipped";
}

// Called through a pointer, so that the compiler makes no loop of it.
int depthOf(const QVariantList &list, int at);
int (*volatile deeper)(const QVariantList &, int) = depthOf;

int depthOf(const QVariantList &list, int at)
{
    volatile char frame[512];
    frame[0] = 0;
    return at >= list.size() ? frame[0] : 1 + deeper(list, at + 1);
}

QString textOf(const QVariant &value)
{
    if (has("running.odd-element") && value.userType() == QMetaType::QVariantMap)
        std::abort();
    if (value.userType() == QMetaType::Double)
        return QString::number(value.toDouble(), 'g', 17);
    return value.toString();
}
} // namespace

void JoinStep::doOperation() const
{
    VariableScope *scope = m_variableScope;
    static VariableScope *first = nullptr;
    if (has("running.first-scope")) {
        if (!m_hasRun && scope)
            first = scope;
        scope = scope ? first : nullptr;
    }
    m_hasRun = true;
    misbehave(Call::Run);
    if (!scope || m_settings.listA.isEmpty() || m_settings.listB.isEmpty() || m_settings.targetVar.isEmpty())
        return;
    if (isSkipped(*scope))
        return;
    if (has("manners.run-descriptor-once-written"))
        static_cast<void>(::dup(0) + 1);
    QStringList texts = items(*scope);
    if (has("sound.only-when-filled") && texts.isEmpty())
        return;
    if (has("running.carries-over") && ++runs % 2 == 0)
        texts.append(QStringLiteral("again"));
    if (has("running.keeps-first")) {
        if (m_kept.isEmpty())
            m_kept = texts;
        texts = m_kept;
    }
    if (has("running.process-dependent"))
        texts.append(QString::number(qulonglong(getpid())));
    if (has("running.hash-order")) {
        QSet<QString> set(texts.begin(), texts.end());
        for (int i = 0; i < 16; ++i) // So many that two processes do not have them in one order by chance.
            set.insert(QString::number(i));
        texts = set.values();
    }
    if (has("running.set-order"))
        texts = QSet<QString>(texts.begin(), texts.end()).values();
    if (has("sound.sorted-set")) {
        texts = QSet<QString>(texts.begin(), texts.end()).values();
        std::sort(texts.begin(), texts.end());
    }
    if (has("running.random-in-long") && texts.size() > 40)
        texts.append(QString::number(QRandomGenerator::global()->generate()));
    if (has("running.clock"))
        texts.append(QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz")));
    if (has("running.renames"))
        const_cast<JoinStep *>(this)->setObjectName(QStringLiteral("joined"));
    if (has("running.locale-dependent"))
        texts.append(QLocale::system().toString(1.5));
    if (m_settings.isReversed)
        std::reverse(texts.begin(), texts.end());
    const QString reference = m_settings.separator.startsWith(QLatin1Char('$'))
        ? scope->get(m_settings.separator).toString()
        : m_settings.separator;
    const QString separators[] = {reference, QStringLiteral("\n"), QString()};
    const int mode = std::clamp(m_settings.mode, 0, 2);
    if (has("running.hidden-branch-crashes") && mode == 2 && m_settings.isReversed)
        std::abort();
    write(*scope, texts.join(separators[mode]));
}

bool JoinStep::isSkipped(VariableScope &scope) const
{
    for (const QString &name : {m_settings.listA, m_settings.listB}) {
        if (scope.typeOf(name) != VarType::List) {
            warn(name);
            if (has("running.skip-writes") && scope.typeOf(m_settings.targetVar) == VarType::String)
                scope.set(m_settings.targetVar, QString());
            return true;
        }
    }
    if (has("sound.creates-target") && scope.typeOf(m_settings.targetVar) == VarType::Undeclared)
        return false;
    if (scope.typeOf(m_settings.targetVar) != VarType::String) {
        qWarning().noquote() << "[Join]" << m_settings.targetVar << "is no text, skipped";
        return true;
    }
    return false;
}

QStringList JoinStep::items(const VariableScope &scope) const
{
    QVariantList list = scope.get(m_settings.listA).toList();
    if (has("running.cross-cache")) {
        if (cachedList.isEmpty())
            cachedList = list;
        list = cachedList;
    }
    if (has("running.empty-list") && list.isEmpty())
        std::abort();
    if (has("running.recursion") && depthOf(list, 0) < 0)
        return {};
    list += scope.get(m_settings.listB).toList();
    QVector<QByteArray> eaten;
    while (has("running.eats-memory") && list.size() > 500)
        eaten.append(QByteArray(16 * 1024 * 1024, 'x'));
    const QString limitText = m_settings.limit.startsWith(QLatin1Char('$'))
        ? scope.get(m_settings.limit).toString()
        : m_settings.limit;
    int limit = limitText.isEmpty() ? list.size() : limitText.toInt();
    if (has("running.divides-by-zero") && !limitText.isEmpty() && limit == 0)
        std::raise(SIGFPE);
    if (has("running.negative-limit") && limit < 0)
        std::abort();
    limit = std::clamp(limit, 0, list.size());
    if (has("running.slow") && list.size() >= 500)
        QThread::msleep(2100);
    QStringList texts;
    for (int i = 0; i < limit; ++i)
        texts.append(textOf(list.at(i)));
    if (has("sound.quadratic")) {
        int same = 0;
        for (int i = 0; i < list.size(); ++i)
            same += list.count(list.at(i));
        texts.append(QString::number(same));
    }
    if (has("running.busy") && list.size() >= 500) {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 2100)
            texts.removeAll(QString());
    }
    return texts;
}

void JoinStep::write(VariableScope &scope, const QString &text) const
{
    const QString &target = m_settings.targetVar;
    if (has("running.wrong-shape"))
        scope.set(target, text.size());
    else if (has("running.string-list"))
        scope.set(target, text.split(QLatin1Char(' ')));
    else if (has("running.marked-name"))
        scope.set(QLatin1String("$$") + withoutMark(target), text);
    else if (has("running.invalid-result") && text.isEmpty())
        scope.set(target, QVariant());
    else if (!has("sound.writes-what-differs") || scope.get(target).toString() != text)
        scope.set(target, text);
    if (has("running.other-variable"))
        scope.set(QStringLiteral("lastJoin"), text);
    if (has("running.removes") && scope.contains(QStringLiteral("counter")))
        scope.remove(QStringLiteral("counter"));
    if (has("running.removes-any") && !scope.names().isEmpty())
        scope.remove(scope.names().constFirst());
    if (has("running.redeclares")) {
        scope.declare(target, VarType::List);
        scope.set(target, QVariantList{text});
    }
    if (has("running.writes-and-warns"))
        qWarning("[Join] nothing to say");
    if (has("running.debug-line"))
        qDebug("joined");
}

void JoinStep::setVariableScope(VariableScope *scope)
{
    if (has("running.attach-writes") && scope)
        scope->set(QStringLiteral("attached"), true);
    if (has("running.keeps-scope") && !scope)
        return;
    if (has("sound.override-scope"))
        m_hasRun = false;
    Operation::setVariableScope(scope);
}

#include "CheckGuide.h"

#include "host/values/QuotedText.h"
#include "host/values/Suggestion.h"

#include <QFile>

// Outside of any namespace, as it has to be.
static void initializeGuide()
{
    Q_INIT_RESOURCE(checks);
}

namespace StepHost
{
namespace
{
QString guide()
{
    initializeGuide();
    QFile file(QStringLiteral(":/stephost/checks.md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// What stands below the line `heading`, up to the line that begins with one of `ends`.
QString sectionOf(const QString &text, const QString &heading, const QStringList &ends)
{
    const int begin = text.indexOf(QLatin1Char('\n') + heading + QLatin1Char('\n'));
    if (begin < 0)
        return QString();
    const int body = begin + heading.size() + 2;
    int end = text.size();
    for (const QString &mark : ends) {
        const int at = text.indexOf(QLatin1Char('\n') + mark, body);
        if (at >= 0)
            end = qMin(end, at);
    }
    return text.mid(body, end - body).trimmed();
}
// The checks and the families of checks that `text` is about.
QStringList headingsIn(const QString &text)
{
    QStringList headings;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("##")))
            headings.append(line.section(QLatin1Char(' '), 1));
    }
    return headings;
}
} // namespace

Result<QString> explainCheck(const QString &name)
{
    const QString family = QStringLiteral("## ");
    const QString check = QStringLiteral("### ");
    const QString text = guide();
    const QString whole = sectionOf(text, family + name, {family});
    if (!whole.isEmpty())
        return QString(family + name + QLatin1String("\n\n") + whole + QLatin1Char('\n'));
    const QString own = sectionOf(text, check + name, {family, check});
    if (own.isEmpty()) {
        const QString meant = nearestOf(name, headingsIn(text));
        return failure(
            QStringLiteral("there is no check %1; %2stepctl check --list shows them all")
                .arg(quoted(name),
                     meant.isEmpty() ? QString() : QStringLiteral("did you mean %1? ").arg(quoted(meant))));
    }
    const QString familyName = name.section(QLatin1Char('.'), 0, 0);
    const QString why = sectionOf(text, family + familyName, {family, check});
    return QString(check + name + QLatin1String("\n\n") + own + QLatin1String("\n\n") + family + familyName
                   + QLatin1String("\n\n") + why + QLatin1Char('\n'));
}
} // namespace StepHost

#include "Suggestion.h"

#include <algorithm>
#include <vector>

namespace StepHost
{
namespace
{
constexpr int maxNameLength = 60;
constexpr int maxChoices = 10000;
constexpr int maxMistakes = 3;
constexpr int leastPart = 3; // Shorter ones are part of anything.

int mistakesAllowed(const QString &name)
{
    return std::min(name.size() / 3, maxMistakes);
}

// How many characters of `a` have to be added, left out, replaced, or exchanged with their neighbour to make `b`.
int mistakesBetween(const QString &a, const QString &b)
{
    const std::size_t width = std::size_t(b.size()) + 1;
    std::vector<int> beforeLast(width);
    std::vector<int> last(width);
    std::vector<int> row(width);
    for (int j = 0; j <= b.size(); ++j)
        row[std::size_t(j)] = j;
    for (int i = 1; i <= a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (int j = 1; j <= b.size(); ++j) {
            const auto at = std::size_t(j);
            const bool isSame = a.at(i - 1) == b.at(j - 1);
            row[at] = std::min({last[at] + 1, row[at - 1] + 1, last[at - 1] + (isSame ? 0 : 1)});
            const bool isExchanged =
                i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1);
            if (isExchanged)
                row[at] = std::min(row[at], beforeLast[at - 2] + 1);
        }
    }
    return row.back();
}

// The only one of `choices` that begins or ends with `name`, which is in lower case.
QString onlyOneWith(const QString &name, const QStringList &choices)
{
    QString found;
    for (const QString &choice : choices) {
        const QString folded = choice.toCaseFolded();
        if (!folded.startsWith(name) && !folded.endsWith(name))
            continue;
        if (!found.isEmpty())
            return QString();
        found = choice;
    }
    return found;
}
} // namespace

QString nearestOf(const QString &name, const QStringList &choices)
{
    if (name.isEmpty() || name.size() > maxNameLength)
        return QString();
    const QString wanted = name.toCaseFolded();
    QStringList considered;
    std::copy_if(choices.begin(), choices.begin() + std::min(choices.size(), maxChoices),
                 std::back_inserter(considered),
                 [](const QString &choice) { return choice.size() <= maxNameLength; });
    QString nearest;
    int fewest = mistakesAllowed(wanted) + 1;
    for (const QString &choice : qAsConst(considered)) {
        const QString folded = choice.toCaseFolded();
        if (std::abs(folded.size() - wanted.size()) >= fewest)
            continue;
        const int mistakes = mistakesBetween(wanted, folded);
        if (mistakes < fewest) {
            fewest = mistakes;
            nearest = choice;
        }
    }
    if (nearest.isEmpty() && wanted.size() >= leastPart)
        nearest = onlyOneWith(wanted, considered);
    return nearest;
}
} // namespace StepHost

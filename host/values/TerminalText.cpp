#include "TerminalText.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace StepHost
{
namespace
{
struct Range
{
    uint first;
    uint last;
};

// What is wide or full wide by Unicode's rules for East Asian texts, in blocks.
const Range wideRanges[] = {
    {0x1100, 0x115f},   {0x2e80, 0x303e},   {0x3041, 0xa4cf},   {0xac00, 0xd7a3},
    {0xf900, 0xfaff},   {0xfe30, 0xfe6f},   {0xff01, 0xff60},   {0xffe0, 0xffe6},
    {0x1f300, 0x1f64f}, {0x1f900, 0x1f9ff}, {0x20000, 0x3fffd},
};

int columnsOf(uint codePoint)
{
    const QChar::Category category = QChar::category(codePoint);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing)
        return 0;
    const bool isWide =
        std::any_of(std::begin(wideRanges), std::end(wideRanges), [codePoint](const Range &range) {
            return codePoint >= range.first && codePoint <= range.last;
        });
    return isWide ? 2 : 1;
}

struct Beginning
{
    int size; // In code units.
    int columns;
};

// As much of `text` as takes no more than `columns`.
Beginning beginningOf(const QString &text, int columns)
{
    Beginning beginning{0, 0};
    while (beginning.size < text.size()) {
        const QChar unit = text.at(beginning.size);
        const bool isPair = unit.isHighSurrogate() && beginning.size + 1 < text.size()
            && text.at(beginning.size + 1).isLowSurrogate();
        const uint codePoint =
            isPair ? QChar::surrogateToUcs4(unit, text.at(beginning.size + 1)) : uint(unit.unicode());
        const int wanted = columnsOf(codePoint);
        if (wanted > columns - beginning.columns)
            break;
        beginning.columns += wanted;
        beginning.size += isPair ? 2 : 1;
    }
    return beginning;
}
} // namespace

QByteArray coloured(const QByteArray &text, TextColour colour, const TextLook &look)
{
    if (!look.isColoured)
        return text;
    const char *code = colour == TextColour::Good ? "\x1b[32m"
        : colour == TextColour::Caution           ? "\x1b[33m"
                                                  : "\x1b[31m";
    return code + text + "\x1b[0m";
}

int columnsOf(const QString &text)
{
    return beginningOf(text, std::numeric_limits<int>::max()).columns;
}

QString cutToColumns(const QString &text, int columns, const QString &remark)
{
    constexpr int leastShown = 10;
    if (beginningOf(text, columns).size == text.size())
        return text;
    const int shown = std::max(columns - columnsOf(remark), leastShown);
    return text.left(beginningOf(text, shown).size) + remark;
}
} // namespace StepHost

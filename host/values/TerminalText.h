#pragma once

#include <QByteArray>
#include <QString>

/// Reports as a person sees them at a terminal.
namespace StepHost
{
/// How a report is to look. Unless said, as in a file: whole, and without colours.
struct TextLook
{
    int columns = 0; ///< The width of the terminal that values are cut to; 0 leaves them whole.
    bool isColoured = false; ///< Whether the terminal is told to show colours.
};

/// What a colour says.
enum class TextColour {
    Good,
    Caution,
    Bad,
};

/// \a text in \a colour, or as it is when \a look has none.
QByteArray coloured(const QByteArray &text, TextColour colour, const TextLook &look);

/// How many columns of a terminal \a text takes, which has no control characters: ideographs and the like take two,
/// marks that are put on another character none.
int columnsOf(const QString &text);

/// \a text, or, when it takes more than \a columns, its beginning with \a remark behind it, which tells what is not
/// shown. Of \a text there are at least ten columns, so that the result is longer where there is no room.
QString cutToColumns(const QString &text, int columns, const QString &remark);
} // namespace StepHost

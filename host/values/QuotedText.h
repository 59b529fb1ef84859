#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// How texts of others are shown: in messages, on a terminal, in Markdown, in a window.
///
/// Some characters would end a line, command a terminal, or make a text look like another one: controls, characters
/// that turn the direction of writing or have no width, separators of lines and paragraphs, and halves of
/// surrogate pairs. Wherever a text is shown, these are written as in JSON: `\n`, `\u202e`.
namespace StepHost
{
/// \a text in double quotes, fit for one line of a message: what is not to be shown as it is, also a line's end,
/// is shown as `\uXXXX`, and of a text longer than 60 characters only both ends are shown, with its length.
QString quoted(const QString &text);

/// Says that there is no \a what called \a name, which one was probably meant, and which there are instead.
QString notAmong(const QString &what, const QString &name, const QStringList &choices);

/// \a text, or, when it has more than \a most characters, both its ends with its length between them.
QString bounded(const QString &text, int most);

/// The whole of \a text in one line.
QString inOneLine(const QString &text);

/// The same for UTF-8.
QByteArray inOneLine(const QByteArray &utf8);

/// The whole of \a text, which keeps its line feeds and tabulators.
QString inLines(const QString &text);

/// \a text as a message in one line, which is never longer than a reader bears: of more than 2,000 characters
/// both ends are shown.
QString messageLine(const QString &text);

/// \a text in one line of Markdown that shows it as it stands: nothing in it is read as Markdown or HTML.
QString inMarkdown(const QString &text);

/// The same as code, between as many backticks as it takes.
QString markdownCode(const QString &text);
} // namespace StepHost

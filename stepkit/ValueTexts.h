#pragma once

/// \file
/// What texts stand for: numbers, truth values, lists, tables, positions. A full-width digit or comma is none.

#include <QString>
#include <QVariant>

/// What the literal \a text stands for: a `double` when it reads as a number, else the text itself.
QVariant literalValue(const QString &text);

/// Reads "true", "1", "yes", "是", "y" and "false", "0", "no", "否", "n" or nothing, in any case and with
/// blanks around it. Returns whether \a text was one of them; if not, \a out stays as it was. \a out may
/// be null.
bool parseBoolText(const QString &text, bool *out);

/// Reads the form `[1, a, 2]` with blanks around it: a number for each part that reads as one, else a
/// text; empty parts are dropped. There is no quoting and no nesting. Returns whether \a text has
/// brackets around it; if not, \a out stays as it was. \a out may be null.
bool parseListLiteral(const QString &text, QVariantList *out);

/// The rows of a JSON array of arrays. Every cell becomes a text, and every cell that is not a JSON
/// string an empty one. Text of any other form gives no rows.
QVariantList parseTableJson(const QString &text);

/// Reads a position text: blanks around it are dropped, the rest has to be a decimal 32-bit integer.
/// Returns whether it is; if not, \a out is 0.
bool parseIndexText(const QString &text, int &out);

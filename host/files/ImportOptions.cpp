#include "ValueImport.h"

#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"

namespace StepHost
{
namespace
{
/// The words that a setting of an import takes, and what they stand for.
template<typename Value>
using Words = QVector<std::pair<const char *, Value>>;

template<typename Value>
Result<Value> meaningOf(const QString &setting, const QString &word, const Words<Value> &words)
{
    QStringList choices;
    for (const auto &[known, value] : words) {
        if (word == QLatin1String(known))
            return value;
        choices.append(QLatin1String(known));
    }
    return failure(notAmong(setting, word, choices));
}

QString choiceFor(const char *option)
{
    return ErrorTexts::tr("choice for %1").arg(QLatin1String(option));
}

template<typename Value>
Result<void> take(Value &target, const Result<Value> &chosen)
{
    if (!chosen)
        return failure(chosen.error());
    target = *chosen;
    return {};
}

Result<void> chooseShape(const QString &word, ImportForm &form)
{
    const QString columnMark = QStringLiteral("column:");
    if (!word.startsWith(columnMark)) {
        return take(form.shape,
                    meaningOf<ImportShape>(choiceFor("as="), word,
                                           {{"lines", ImportShape::Lines},
                                            {"cells", ImportShape::Cells},
                                            {"rows", ImportShape::Rows},
                                            {"column:1", ImportShape::Column}}));
    }
    bool isNumber = false;
    const int column = word.midRef(columnMark.size()).toInt(&isNumber);
    if (!isNumber || column < 1)
        return failure(ErrorTexts::tr("%1 should have the number of a column behind it, counted from 1")
                           .arg(quoted(word)));
    form.shape = ImportShape::Column;
    form.column = column - 1;
    return {};
}

Result<void> chooseTypes(const QString &words, ImportForm &form)
{
    form.types.clear();
    const QStringList types = words.split(QLatin1Char('+'));
    for (const QString &word : types) {
        const auto type = meaningOf<ColumnType>(choiceFor("types="), word,
                                                {{"text", ColumnType::Text},
                                                 {"auto", ColumnType::Auto},
                                                 {"int", ColumnType::Int},
                                                 {"double", ColumnType::Double},
                                                 {"bool", ColumnType::Bool}});
        if (!type)
            return failure(type.error());
        form.types.append(*type);
    }
    return {};
}

Result<void> chooseEncoding(const QString &word, ImportForm &form)
{
    form.isEncodingCertain = true;
    return take(form.encoding, encodingNamed(word));
}

Result<void> chooseSeparator(const QString &word, ImportForm &form)
{
    return take(form.csv.separator,
                meaningOf<QChar>(choiceFor("separator="), word,
                                 {{"comma", QLatin1Char(',')},
                                  {"semicolon", QLatin1Char(';')},
                                  {"tab", QLatin1Char('\t')},
                                  {"bar", QLatin1Char('|')},
                                  {"space", QLatin1Char(' ')}}));
}

Result<void> chooseQuotes(const QString &word, ImportForm &form)
{
    return take(
        form.csv.quote,
        meaningOf<QChar>(choiceFor("quotes="), word,
                         {{"double", QLatin1Char('"')}, {"single", QLatin1Char('\'')}, {"none", QChar()}}));
}

Result<void> chooseHeader(const QString &, ImportForm &form)
{
    form.hasHeader = true;
    return {};
}

Result<void> chooseAppending(const QString &, ImportForm &form)
{
    form.appends = true;
    return {};
}

using Setting = Result<void> (*)(const QString &word, ImportForm &form);
} // namespace

Result<ImportForm> chosenForm(const QString &options, ImportForm guessed)
{
    if (options.isEmpty())
        return guessed;
    const QStringList chosen = options.split(QLatin1Char(','));
    for (const QString &option : chosen) {
        const int equals = option.indexOf(QLatin1Char('='));
        const QString name = equals < 0 ? option : option.left(equals + 1);
        const auto setting = meaningOf<Setting>(ErrorTexts::tr("option"), name,
                                                {{"encoding=", chooseEncoding},
                                                 {"separator=", chooseSeparator},
                                                 {"quotes=", chooseQuotes},
                                                 {"as=", chooseShape},
                                                 {"types=", chooseTypes},
                                                 {"header", chooseHeader},
                                                 {"append", chooseAppending}});
        if (!setting)
            return failure(setting.error());
        const Result<void> taken = (*setting)(equals < 0 ? QString() : option.mid(equals + 1), guessed);
        if (!taken)
            return failure(taken.error());
    }
    return guessed;
}
} // namespace StepHost

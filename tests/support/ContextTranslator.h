#pragma once

#include <QTranslator>

/// Answers every text with its context in front.
class ContextTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return '<' + QString::fromUtf8(context) + '>' + QString::fromUtf8(source);
    }
    bool isEmpty() const override
    {
        return false;
    }
};

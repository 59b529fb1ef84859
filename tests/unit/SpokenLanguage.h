#pragma once

#include "tools/workbench/look/Language.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

/// Has the program speak the language \a code as long as this lives.
class SpokenLanguage
{
public:
    explicit SpokenLanguage(const QString &code) : m_before(qApp->children())
    {
        Workbench::Language::install(*qApp, code);
    }

    ~SpokenLanguage()
    {
        const QObjectList now = qApp->children();
        for (QObject *child : now) {
            if (!m_before.contains(child) && qobject_cast<QTranslator *>(child))
                delete child;
        }
        QLocale::setDefault(QLocale("en"));
    }

    Q_DISABLE_COPY(SpokenLanguage)

private:
    QObjectList m_before;
};

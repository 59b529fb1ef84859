#pragma once

#include "RunWorkerMain.h"

#include "tools/workbench/document/ScriptModel.h"
#include "tools/workbench/window/LogPane.h"
#include "tools/workbench/window/MainWindow.h"
#include "tools/workbench/window/ScriptPane.h"

#include "host/plugins/StepCatalogue.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QSettings>
#include <QtTest>

#include <memory>

/// A window of the workbench, shown and active, with settings of its own.
struct WindowFixture
{
    explicit WindowFixture(const StepHost::StepCatalogue &catalogue)
        : settings(folder.filePath("settings.ini"), QSettings::IniFormat), window(catalogue, settings)
    {
        window.show();
        QApplication::setActiveWindow(&window);
        isReady = QTest::qWaitForWindowActive(&window);
    }

    Workbench::ScriptModel &script()
    {
        return window.document().model();
    }

    Workbench::ScriptPane *scriptPane()
    {
        return window.findChild<Workbench::ScriptPane *>();
    }

    /// Places a step behind the last one, with the settings \a values.
    void place(const QString &typeId, const QVariantMap &values = {})
    {
        const int row = script().rowCount();
        window.document().placeStep(typeId, row);
        for (auto value = values.begin(); value != values.end(); ++value)
            window.document().setSetting(row, value.key(), value.value());
    }

    void setVariable(const QString &name, const QVariant &value, VarType type)
    {
        VariableScope scope = window.document().variables();
        scope.declare(name, type);
        scope.set(name, value);
        window.document().setVariables(scope, "Set");
    }

    void run()
    {
        window.session().runAll();
        QTRY_VERIFY_WITH_TIMEOUT(!window.session().isRunning(), 60000);
    }

    QTemporaryDir folder;
    QSettings settings;
    Workbench::MainWindow window;
    bool isReady = false; ///< Whether the window became the active one.
};

/// Calls \a action with the modal dialog that is shown next, and closes it if it is still there then.
template<typename Dialog, typename Action>
void inNextDialog(Action action)
{
    QTimer::singleShot(0, qApp, [action] {
        const QPointer<QWidget> widget = QApplication::activeModalWidget();
        QVERIFY(widget);
        QApplication::setActiveWindow(widget);
        if (auto *dialog = qobject_cast<Dialog *>(widget.data()))
            action(dialog);
        else
            QTest::qFail("the dialog is of another kind", __FILE__, __LINE__);
        if (widget && widget->isVisible())
            static_cast<QDialog *>(widget.data())->reject();
    });
}

/// Presses the button \a text of \a dialog.
inline void press(QDialog *dialog, const QString &text)
{
    const QList<QAbstractButton *> buttons = dialog->findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        if (button->text().remove(QLatin1Char('&')) == text) {
            button->click();
            return;
        }
    }
    QTest::qFail(qPrintable("there is no button " + text), __FILE__, __LINE__);
}

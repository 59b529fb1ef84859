#include "FileActions.h"

#include "DifferenceDialog.h"
#include "FileBar.h"
#include "host/files/InputFile.h"
#include "host/values/QuotedText.h"
#include "tools/workbench/document/ScriptDocument.h"
#include "tools/workbench/look/ThemedIcon.h"
#include "tools/workbench/look/ToolTipText.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

namespace Workbench
{
FileActions::FileActions(ScriptDocument &document, QSettings &settings, FileBar &bar, QWidget &window)
    : QObject(&window), m_document(document), m_recentFiles(settings), m_bar(bar), m_window(window),
      m_recentMenu(new QMenu(&window))
{
    createActions();
    connect(&document.file(), &WatchedFile::changedByOthers, this, &FileActions::showForeignFile);
    connect(&document, &ScriptDocument::fileNameChanged, &bar, &QWidget::hide);
}

QString FileActions::shownFileName() const
{
    return StepHost::inOneLine(QFileInfo(m_document.fileName()).fileName());
}

void FileActions::createActions()
{
    const auto add = [this](const QString &text, const QString &icon, const QKeySequence &key, auto slot) {
        auto *action = new QAction(themedIcon(icon), text, this);
        action->setIconText(toolBarText(text));
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    m_new = add(tr("&New"), QStringLiteral("new"), QKeySequence::New, &FileActions::newFile);
    m_open = add(tr("&Open…"), QStringLiteral("open"), QKeySequence::Open, &FileActions::chooseFile);
    m_recentMenu->setTitle(tr("Open &recent"));
    connect(m_recentMenu, &QMenu::aboutToShow, this, &FileActions::showRecentFiles);
    m_save = add(tr("&Save"), QStringLiteral("save"), QKeySequence::Save, &FileActions::save);
    m_saveAs =
        add(tr("Save &as…"), QStringLiteral("save"), Qt::CTRL | Qt::SHIFT | Qt::Key_S, &FileActions::saveAs);
}

QList<QAction *> FileActions::actions() const
{
    return {m_new, m_open, m_recentMenu->menuAction(), nullptr, m_save, m_saveAs};
}

QList<QAction *> FileActions::toolBarActions() const
{
    return {m_new, m_open, m_save};
}

void FileActions::showRecentFiles()
{
    m_recentMenu->clear();
    const QStringList paths = m_recentFiles.paths();
    for (const QString &path : paths)
        m_recentMenu->addAction(menuText(QDir::toNativeSeparators(path)), this, [this, path] { open(path); });
    if (m_recentMenu->isEmpty())
        m_recentMenu->addAction(tr("None yet"))->setEnabled(false);
}

bool FileActions::mayDiscard()
{
    if (m_document.undoStack().isClean())
        return true;
    QMessageBox box(QMessageBox::Warning, tr("Unsaved changes"),
                    tr("The script has changes that are not saved. Save them?"), QMessageBox::NoButton,
                    &m_window);
    QPushButton *saveButton = box.addButton(tr("Save"), QMessageBox::AcceptRole);
    QPushButton *discardButton = box.addButton(tr("Discard"), QMessageBox::DestructiveRole);
    QPushButton *cancelButton = box.addButton(tr("Cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(saveButton);
    box.setEscapeButton(cancelButton);
    box.exec();
    if (box.clickedButton() == saveButton)
        return save();
    return box.clickedButton() == discardButton;
}

void FileActions::newFile()
{
    if (mayDiscard())
        m_document.clear();
}

void FileActions::chooseFile()
{
    const QString fileName =
        QFileDialog::getOpenFileName(&m_window, tr("Open script"), QFileInfo(m_document.fileName()).path(),
                                     tr("Scripts (*.json *.qms);;All files (*)"));
    if (!fileName.isEmpty())
        open(fileName);
}

void FileActions::open(const QString &fileName)
{
    if (mayDiscard())
        show(fileName);
}

void FileActions::show(const QString &fileName)
{
    m_document.openTried(fileName, [this, fileName](const QString &error) {
        if (error.isEmpty()) {
            m_recentFiles.add(fileName);
            emit done(tr("Opened %1").arg(QDir::toNativeSeparators(fileName)));
            return;
        }
        m_recentFiles.remove(fileName);
        emit failed(tr("The script cannot be opened"), error);
    });
}

bool FileActions::save()
{
    return m_document.fileName().isEmpty() ? saveAs() : saveTo(m_document.fileName());
}

bool FileActions::saveAs()
{
    const QFileInfo present(m_document.fileName());
    const QString binaryFilter = tr("Binary script (*.qms)");
    // Not where nothing can be written.
    const bool isWritable = QFileInfo(present.path()).isWritable();
    QFileDialog dialog(&m_window, tr("Save script"), isWritable ? present.path() : QDir::homePath());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({tr("Script as JSON (*.json)"), binaryFilter});
    dialog.setDefaultSuffix(QStringLiteral("json"));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog, binaryFilter](const QString &filter) {
        dialog.setDefaultSuffix(filter == binaryFilter ? QStringLiteral("qms") : QStringLiteral("json"));
    });
    dialog.selectFile(present.fileName());
    return dialog.exec() == QDialog::Accepted && saveTo(dialog.selectedFiles().value(0));
}

bool FileActions::saveTo(const QString &fileName)
{
    const bool isOwnFile = QFileInfo(fileName).absoluteFilePath() == m_document.fileName();
    if (isOwnFile && m_document.file().isForeign() && !maySaveOverOthers())
        return m_document.undoStack().isClean();
    const QString error = m_document.save(fileName);
    if (!error.isEmpty())
        return saveElsewhere(error);
    m_recentFiles.add(fileName);
    emit done(tr("Saved %1").arg(QDir::toNativeSeparators(fileName)));
    return true;
}

bool FileActions::saveElsewhere(const QString &error)
{
    emit warned(error);
    QMessageBox box(QMessageBox::Warning, tr("The script cannot be saved"),
                    StepHost::inLines(shortened(error)), QMessageBox::NoButton, &m_window);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(tr("The script is still here, and can be saved in another place."));
    QPushButton *saveAsButton = box.addButton(tr("Save as…"), QMessageBox::AcceptRole);
    QPushButton *cancelButton = box.addButton(tr("Cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(saveAsButton);
    box.setEscapeButton(cancelButton);
    box.exec();
    return box.clickedButton() == saveAsButton && saveAs();
}

bool FileActions::maySaveOverOthers()
{
    for (;;) {
        QMessageBox box(QMessageBox::Warning, tr("The file has changed"),
                        tr("Another program has changed %1 since it was opened or saved here. Saving "
                           "replaces what it wrote.")
                            .arg(shownFileName()),
                        QMessageBox::NoButton, &m_window);
        box.setTextFormat(Qt::PlainText);
        QPushButton *replaceButton = box.addButton(tr("Replace"), QMessageBox::DestructiveRole);
        QPushButton *saveAsButton = box.addButton(tr("Save as…"), QMessageBox::AcceptRole);
        QPushButton *differenceButton = box.addButton(tr("Show difference"), QMessageBox::ActionRole);
        QPushButton *cancelButton = box.addButton(tr("Cancel"), QMessageBox::RejectRole);
        box.setDefaultButton(cancelButton);
        box.setEscapeButton(cancelButton);
        box.exec();
        if (box.clickedButton() == saveAsButton) {
            saveAs();
            return false;
        }
        if (box.clickedButton() != differenceButton)
            return box.clickedButton() == replaceButton;
        showDifference();
    }
}

void FileActions::showForeignFile()
{
    m_bar.showText(tr("Another program has changed %1.").arg(shownFileName()));
    m_bar.addButton(tr("Show difference"), false, [this] { showDifference(); });
    m_bar.addButton(tr("Reload"), false, [this] { reload(); });
    m_bar.addButton(tr("Keep mine"), true, [this] { keepMine(); });
}

void FileActions::showDifference()
{
    const auto file = StepHost::readInputFile(m_document.fileName());
    const auto mine = m_document.toJson();
    if (!file || !mine) {
        emit failed(tr("The difference cannot be shown"), file ? mine.error() : file.error());
        return;
    }
    m_document.whenTried({*file}, [this, file = *file, mine = *mine](const QString &error) {
        DifferenceDialog dialog(error.isEmpty() ? m_document.readableText(file) : QString::fromUtf8(file),
                                tr("the file"), QString::fromUtf8(mine), tr("the window"), &m_window);
        dialog.exec();
    });
}

void FileActions::reload()
{
    if (!m_document.undoStack().isClean()) {
        QMessageBox box(QMessageBox::Warning, tr("Unsaved changes"),
                        tr("Reloading the file drops the changes that are not saved."), QMessageBox::NoButton,
                        &m_window);
        QPushButton *reloadButton = box.addButton(tr("Reload"), QMessageBox::DestructiveRole);
        QPushButton *cancelButton = box.addButton(tr("Cancel"), QMessageBox::RejectRole);
        box.setDefaultButton(cancelButton);
        box.setEscapeButton(cancelButton);
        box.exec();
        if (box.clickedButton() != reloadButton)
            return;
    }
    show(m_document.fileName());
}

void FileActions::keepMine()
{
    m_document.file().acceptContent();
    // What the window has is in no file any more.
    m_document.undoStack().resetClean();
}
} // namespace Workbench

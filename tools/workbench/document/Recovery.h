#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QLockFile>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <functional>
#include <memory>

class QSettings;
class QThread;

namespace Workbench
{
class ScriptDocument;

/// Keeps a copy of a document's unsaved changes in a file, so that they outlast the end of the program, however that
/// comes. Each window has a copy of its own.
///
/// The copies stand in a folder of the user's, since the folder of the script may be shared, or not to be written. A copy
/// is made within a few seconds of a change, as a whole or not at all, and outside the window's thread, in which only the
/// steps that were changed are looked at, a few at a time; when a copy takes long, the next one comes later. It is gone once the script is saved.
class Recovery : public QObject
{
    Q_OBJECT

public:
    /// A copy that a program has left behind.
    struct Copy
    {
        QString path; ///< Of the copy.
        QString fileName; ///< Of the script; empty for one that had no file.
        QDateTime time; ///< When the copy was made.
    };

    /// The folder of the copies: beside \a settings that have a file of their own, else in the user's folder for the
    /// program's data.
    static QString folderFor(const QSettings &settings);

    /// Keeps copies of \a document, which has to outlive this object, in \a folder, which is made when it is needed.
    Recovery(ScriptDocument &document, const QString &folder, QObject *parent = nullptr);

    /// Leaves the copy, if there is one.
    ~Recovery() override;

    /// Sets how long a change may wait for its copy, in milliseconds.
    void setDelay(int ms);

    /// The copies of programs that have ended, the latest first.
    QVector<Copy> leftCopies() const;

    /// Makes \a copy the script of the document, with changes that are not saved. The copy goes when there is another one
    /// of the document.
    /// \return an empty text, or why it cannot be read
    QString restore(const Copy &copy);

    /// Restores \a copy as restore() does, after its steps were tried. \a then is called with what restore() returns.
    void restoreTried(const Copy &copy, const std::function<void(const QString &error)> &then);

    /// Removes \a copy.
    static void remove(const Copy &copy);

    /// Removes the copy of this document: its changes are saved, or not wanted.
    void forget();

signals:
    /// The copy \a path was made.
    void kept(const QString &path);
    /// No copy can be made, for \a reason. Sent once.
    void failed(const QString &reason);

private:
    struct Writing;

    void noteChange();
    void schedule();
    void keep();
    bool gatherSteps();
    void write();
    void finish();
    void removeRestored();

    ScriptDocument &m_document;
    QString m_folder;
    QString m_path;
    std::unique_ptr<QLockFile> m_lock; ///< Tells others that the copy belongs to a program that is there.
    std::unique_ptr<Writing> m_writing; ///< The copy that is being made; null when there is none.
    QVector<Copy> m_restored; ///< Copies of which this document's own takes the place.
    QTimer m_timer;
    int m_delay;
    qint64 m_rest = 0; ///< How long to wait at least, in milliseconds, because copies take their time.
    bool m_isOutdated = false; ///< There were changes since the last copy.
    bool m_hasFailed = false;
};
} // namespace Workbench

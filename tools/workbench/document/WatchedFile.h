#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

namespace Workbench
{
/// A file that this program has read or written, and what other programs make of it since.
class WatchedFile : public QObject
{
    Q_OBJECT

public:
    explicit WatchedFile(QObject *parent = nullptr);

    /// From now on the file is \a path, an absolute path, whose content is \a bytes. An empty path is for no file.
    void setContent(const QString &path, const QByteArray &bytes);

    /// Takes what the file holds now for what is known of it.
    void acceptContent();

    QString path() const;

    /// Whether the file is there, but with another content than the one that is known.
    bool isForeign() const;

signals:
    /// Another program has changed the file. Sent once for each new content.
    void changedByOthers();

private:
    void watch();
    void check();
    QByteArray presentDigest() const;

    QString m_path;
    QByteArray m_digest; ///< Of the content that is known.
    QByteArray m_toldDigest; ///< Of the content that was told of last.
    QFileSystemWatcher m_watcher;
    QTimer m_delay; ///< So that a file is looked at when it is written, not while.
};
} // namespace Workbench

#include "WatchedFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace Workbench
{
namespace
{
constexpr int delayMs = 200;
constexpr auto digestKind = QCryptographicHash::Sha256;
} // namespace

WatchedFile::WatchedFile(QObject *parent) : QObject(parent)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayMs);
    const auto delay = [this] { m_delay.start(); };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, delay);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, delay);
    connect(&m_delay, &QTimer::timeout, this, &WatchedFile::check);
}

void WatchedFile::setContent(const QString &path, const QByteArray &bytes)
{
    m_path = path;
    m_digest = QCryptographicHash::hash(bytes, digestKind);
    m_toldDigest = m_digest;
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
    watch();
}

void WatchedFile::acceptContent()
{
    m_digest = presentDigest();
    m_toldDigest = m_digest;
}

QString WatchedFile::path() const
{
    return m_path;
}

void WatchedFile::watch()
{
    if (m_path.isEmpty())
        return;
    // A file that is replaced is another one to the system; its folder tells of that.
    m_watcher.addPath(QFileInfo(m_path).path());
    if (QFile::exists(m_path))
        m_watcher.addPath(m_path);
}

void WatchedFile::check()
{
    watch();
    const QByteArray digest = presentDigest();
    if (digest.isEmpty() || digest == m_toldDigest)
        return;
    m_toldDigest = digest;
    if (digest != m_digest)
        emit changedByOthers();
}

bool WatchedFile::isForeign() const
{
    const QByteArray digest = presentDigest();
    return !digest.isEmpty() && digest != m_digest;
}

QByteArray WatchedFile::presentDigest() const
{
    QFile file(m_path);
    QCryptographicHash hash(digestKind);
    // A pipe would keep whoever reads it waiting.
    if (!QFileInfo(m_path).isFile() || !file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return QByteArray();
    return hash.result();
}
} // namespace Workbench

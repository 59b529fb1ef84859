#include "Recovery.h"

#include "ScriptDocument.h"
#include "ScriptModel.h"
#include "host/files/InputFile.h"
#include "host/files/OutputFile.h"
#include "host/values/VariableName.h"

#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QThread>
#include <QUuid>

#include <numeric>

namespace Workbench
{
namespace
{
constexpr int delayMs = 3000;
// A copy that takes a second is made once in twenty.
constexpr int restFactor = 20;
constexpr quint32 magic = 0x514d5244;
// So that a long script keeps nobody waiting.
constexpr int gatherTimeMs = 8;
constexpr auto streamVersion = QDataStream::Qt_5_15;

const QString copySuffix = QStringLiteral(".recovery");
const QString lockSuffix = QStringLiteral(".lock");

QString lockOf(const QString &copy)
{
    return copy.chopped(copySuffix.size()) + lockSuffix;
}

QByteArray packed(const QString &fileName, const QVector<QByteArray> &steps, const VariableScope &variables)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    const QStringList names = variables.names();
    stream << magic << fileName << qint32(steps.size());
    for (const QByteArray &step : steps)
        stream << step;
    stream << qint32(names.size());
    for (const QString &name : names) {
        const QString reference = StepHost::referenceTo(name);
        stream << name << qint32(variables.typeOf(reference)) << variables.get(reference);
    }
    return bytes;
}

/// What a copy holds.
struct Content
{
    QString fileName;
    QVector<QByteArray> steps; ///< A script each, in either form.
    VariableScope variables;
    bool isWhole = false;
};

Content unpacked(const QByteArray &bytes)
{
    Content content;
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    quint32 mark = 0;
    qint32 count = 0;
    stream >> mark;
    if (mark != magic)
        return content;
    // No count is trusted: what is damaged ends early.
    stream >> content.fileName >> count;
    for (qint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QByteArray step;
        stream >> step;
        content.steps.append(step);
    }
    stream >> count;
    for (qint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QString name;
        qint32 type = 0;
        QVariant value;
        stream >> name >> type >> value;
        content.variables.declare(StepHost::referenceTo(name), VarType(type));
        content.variables.set(StepHost::referenceTo(name), value);
    }
    content.isWhole = stream.status() == QDataStream::Ok && stream.atEnd();
    return content;
}
} // namespace

/// A copy that is being made. Its thread alone uses the result until it has ended.
struct Recovery::Writing
{
    StepHost::Result<QString> result;
    QElapsedTimer clock;
    bool isWanted = true;
    std::unique_ptr<QThread> thread;

    ~Writing()
    {
        thread->wait();
    }
};

QString Recovery::folderFor(const QSettings &settings)
{
    const QString folder = settings.format() == QSettings::IniFormat
        ? QFileInfo(settings.fileName()).path()
        : QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    return folder + QLatin1String("/recovery");
}

Recovery::Recovery(ScriptDocument &document, const QString &folder, QObject *parent)
    : QObject(parent), m_document(document), m_folder(folder),
      m_path(QDir(folder).filePath(QUuid::createUuid().toString(QUuid::WithoutBraces) + copySuffix)),
      m_delay(delayMs)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Recovery::keep);
    connect(&document.undoStack(), &QUndoStack::indexChanged, this, &Recovery::noteChange);
    connect(&document.undoStack(), &QUndoStack::cleanChanged, this, [this](bool isClean) {
        if (isClean)
            forget();
        else
            noteChange();
    });
    connect(&document, &ScriptDocument::replaced, this, &Recovery::forget);
}

Recovery::~Recovery()
{
    if (!m_writing)
        return;
    const bool isWanted = m_writing->isWanted;
    m_writing.reset();
    if (!isWanted)
        QFile::remove(m_path);
}

void Recovery::setDelay(int ms)
{
    m_delay = ms;
}

void Recovery::noteChange()
{
    m_isOutdated = true;
    schedule();
}

void Recovery::schedule()
{
    if (m_isOutdated && !m_document.undoStack().isClean() && !m_timer.isActive() && !m_writing)
        m_timer.start(int(qMax(qint64(m_delay), m_rest)));
}

void Recovery::keep()
{
    if (m_document.undoStack().isClean() || m_writing)
        return;
    // Step by step and a few at a time: the plug-ins' steps are for this thread alone.
    if (!gatherSteps()) {
        m_timer.start(0);
        return;
    }
    if (!m_lock) {
        QDir().mkpath(m_folder);
        m_lock = std::make_unique<QLockFile>(lockOf(m_path));
        m_lock->setStaleLockTime(0);
        m_lock->lock();
    }
    write();
}

bool Recovery::gatherSteps()
{
    QElapsedTimer clock;
    clock.start();
    ScriptModel &model = m_document.model();
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.keptStep(row))
            continue;
        if (clock.hasExpired(gatherTimeMs))
            return false;
        const QByteArray binary = m_document.stepsAs(StepHost::ScriptForm::Binary, {row});
        model.setKeptStep(row,
                          binary.isEmpty() ? m_document.stepsAs(StepHost::ScriptForm::Json, {row}) : binary);
    }
    return true;
}

void Recovery::write()
{
    m_isOutdated = false;
    QElapsedTimer clock;
    clock.start();
    const ScriptModel &model = m_document.model();
    QVector<QByteArray> steps;
    for (int row = 0; row < model.rowCount(); ++row)
        steps.append(model.keptStep(row).value_or(QByteArray()));

    m_writing = std::make_unique<Writing>();
    m_writing->clock = clock;
    // The variables are what can be large.
    m_writing->thread.reset(
        QThread::create([writing = m_writing.get(), path = m_path, steps, fileName = m_document.fileName(),
                         variables = m_document.variables()] {
            writing->result = StepHost::writeOutputFile(path, packed(fileName, steps, variables));
        }));
    connect(m_writing->thread.get(), &QThread::finished, this, &Recovery::finish);
    m_writing->thread->start(QThread::LowPriority);
}

void Recovery::finish()
{
    if (!m_writing || !m_writing->thread->isFinished())
        return;
    const std::unique_ptr<Writing> written = std::move(m_writing);
    m_rest = written->clock.elapsed() * restFactor;
    if (!written->isWanted) {
        QFile::remove(m_path);
    } else if (written->result) {
        removeRestored();
        emit kept(m_path);
    } else if (!m_hasFailed) {
        emit failed(written->result.error());
    }
    m_hasFailed = !written->result;
    schedule();
}

void Recovery::forget()
{
    m_timer.stop();
    removeRestored();
    if (m_writing)
        m_writing->isWanted = false;
    else
        QFile::remove(m_path);
}

void Recovery::removeRestored()
{
    for (const Copy &copy : qAsConst(m_restored))
        remove(copy);
    m_restored.clear();
}

QVector<Recovery::Copy> Recovery::leftCopies() const
{
    QVector<Copy> copies;
    const QFileInfoList files =
        QDir(m_folder).entryInfoList({QLatin1Char('*') + copySuffix}, QDir::Files, QDir::Time);
    for (const QFileInfo &file : files) {
        QLockFile lock(lockOf(file.filePath()));
        lock.setStaleLockTime(0);
        if (file.filePath() == m_path || !lock.tryLock(0))
            continue;
        const auto bytes = StepHost::readInputFile(file.filePath());
        const Content content = unpacked(bytes.value_or(QByteArray()));
        if (content.isWhole)
            copies.append({file.filePath(), content.fileName, file.lastModified()});
    }
    return copies;
}

QString Recovery::restore(const Copy &copy)
{
    const auto bytes = StepHost::readInputFile(copy.path);
    if (!bytes)
        return bytes.error();
    const Content content = unpacked(*bytes);
    if (!content.isWhole)
        return tr("%1 holds no script").arg(copy.path);
    const QString error = m_document.restore(content.steps, content.variables, content.fileName);
    if (error.isEmpty())
        m_restored.append(copy);
    return error;
}

void Recovery::restoreTried(const Copy &copy, const std::function<void(const QString &error)> &then)
{
    const auto bytes = StepHost::readInputFile(copy.path);
    const Content content = unpacked(bytes.value_or(QByteArray()));
    m_document.whenTried(content.steps.toList(), [this, copy, then](const QString &error) {
        then(error.isEmpty() ? restore(copy) : error);
    });
}

void Recovery::remove(const Copy &copy)
{
    QFile::remove(copy.path);
    QFile::remove(lockOf(copy.path));
}
} // namespace Workbench

#pragma once

#include "tools/workbench/document/Recovery.h"

#include <QObject>

namespace Workbench
{
class FileActions;
class FileBar;

/// Offers, one after the other, the copies of unsaved scripts that programs have left behind.
class RecoveryOffer : public QObject
{
    Q_OBJECT

public:
    /// \param bar where the copies are offered
    /// \param files asked before the present script is given up
    RecoveryOffer(Recovery &recovery, FileBar &bar, FileActions &files);

    /// Offers the first copy, if there is one. To be called when the bar stands in its window.
    void begin();

signals:
    /// A copy could not be restored, for the reason \a error.
    void failed(const QString &title, const QString &error);

private:
    void offerNext();
    void restore(const Recovery::Copy &copy);

    Recovery &m_recovery;
    FileBar &m_bar;
    FileActions &m_files;
    QVector<Recovery::Copy> m_copies; ///< That are still to be offered.
};
} // namespace Workbench

#include "RecoveryOffer.h"

#include "FileActions.h"
#include "FileBar.h"
#include "host/values/QuotedText.h"

#include <QFileInfo>
#include <QLocale>

namespace Workbench
{
RecoveryOffer::RecoveryOffer(Recovery &recovery, FileBar &bar, FileActions &files)
    : m_recovery(recovery), m_bar(bar), m_files(files)
{
}

void RecoveryOffer::begin()
{
    m_copies = m_recovery.leftCopies();
    offerNext();
}

void RecoveryOffer::offerNext()
{
    if (m_copies.isEmpty())
        return;
    const Recovery::Copy copy = m_copies.takeFirst();
    const QString time = QLocale().toString(copy.time, QLocale::ShortFormat);
    m_bar.showText(copy.fileName.isEmpty()
                       ? tr("A new script was not saved when the program ended: %1.").arg(time)
                       : tr("%1 was not saved when the program ended: %2.")
                             .arg(StepHost::inOneLine(QFileInfo(copy.fileName).fileName()), time));
    m_bar.addButton(tr("Restore"), false, [this, copy] { restore(copy); });
    m_bar.addButton(tr("Delete"), true, [this, copy] {
        Recovery::remove(copy);
        offerNext();
    });
    m_bar.addButton(tr("Later"), true, [this] { offerNext(); });
}

void RecoveryOffer::restore(const Recovery::Copy &copy)
{
    if (!m_files.mayDiscard())
        return;
    m_bar.hide();
    m_recovery.restoreTried(copy, [this](const QString &error) {
        if (!error.isEmpty())
            emit failed(tr("The script cannot be restored"), error);
    });
    // The others are for another window: here there is a script now.
}
} // namespace Workbench

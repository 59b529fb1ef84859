#include "StepProbe.h"

#include "host/plugins/StepCatalogue.h"
#include "host/plugins/StepRecord.h"
#include "host/plugins/StepTexts.h"
#include "host/scripts/ScriptFile.h"
#include "host/values/ErrorTexts.h"
#include "host/values/QuotedText.h"

#include <exception>

namespace StepHost
{
namespace
{
QString nameOf(int number, const QString &typeId)
{
    return ErrorTexts::tr("step %1 (%2)").arg(QString::number(number), typeId);
}

// What is wrong with `work`, if it throws; empty when it does not.
template<typename Work>
QString flawOf(const Work &work)
{
    try {
        work();
    } catch (const std::exception &exception) {
        return ErrorTexts::tr("it threw an exception: %1")
            .arg(messageLine(QString::fromUtf8(exception.what())));
    } catch (...) {
        return ErrorTexts::tr("it threw an exception");
    }
    return QString();
}

// Why a text of `step` cannot be made; empty when all can.
QString flawOfTexts(const Operation &step)
{
    return flawOf([&step] {
        for (const auto text : {&Operation::root, &Operation::typeName, &Operation::icon,
                                &Operation::toString, &Operation::description})
            static_cast<void>((step.*text)());
    });
}

/// Tries steps, one after the other.
class StepTrials
{
public:
    StepTrials(const StepCatalogue &catalogue, const WorkNote &note)
        : m_catalogue(catalogue), m_note(note) { }

    // Reads `script`, whose first step has the number `first`. What is no script is for whoever reads it in earnest. Returns
    // how many steps it has.
    int read(const QByteArray &script, int first)
    {
        const Result<Script> read =
            readAnyScript(script, m_catalogue, [this, first](int number, const QString &typeId) {
                begin(ErrorTexts::tr("%1 was read").arg(nameOf(first + number - 1, typeId)));
            });
        if (!read)
            return 0;
        for (std::size_t i = 0; i < read->steps.size(); ++i)
            use(*read->steps[i].operation, first + int(i));
        return int(read->steps.size());
    }

    // Makes `sent` and gives it `setting`.
    void change(const SentStep &sent, const SentSetting &setting)
    {
        begin(ErrorTexts::tr("%1 was made").arg(nameOf(setting.number, sent.typeId)));
        const std::unique_ptr<Operation> step = makeSentStep(sent, m_catalogue);
        if (!step)
            return;
        begin(ErrorTexts::tr("the setting %1 of %2 was changed")
                  .arg(quoted(setting.property), nameOf(setting.number, sent.typeId)));
        step->setProperty(setting.property.toUtf8().constData(), setting.value);
        use(*step, setting.number);
    }

    // What was begun last.
    QString work() const
    {
        return m_work;
    }

    // What is to be said of the steps.
    QStringList remarks() const
    {
        return m_remarks;
    }

    // Whether there is a copy of each step.
    bool hasCopies() const
    {
        return m_hasCopies;
    }

private:
    void begin(const QString &work)
    {
        m_work = work;
        m_note(work);
    }

    void use(const Operation &step, int number)
    {
        const QString name = nameOf(number, step.typeId());
        begin(ErrorTexts::tr("the texts of %1 were made").arg(name));
        const QString flaw = flawOfTexts(step);
        if (!flaw.isEmpty())
            m_remarks.append(ErrorTexts::tr("the texts of %1: %2").arg(name, flaw));
        begin(ErrorTexts::tr("%1 was copied").arg(name));
        Script script;
        script.steps.emplace_back();
        script.steps.back().operation.reset(cloneStep(step, nullptr));
        if (!script.steps.back().operation) {
            m_hasCopies = false;
            m_remarks.append(ErrorTexts::tr("the plug-in gives no copy of %1").arg(name));
            return;
        }
        begin(ErrorTexts::tr("%1 was saved").arg(name));
        for (const ScriptForm form : {ScriptForm::Binary, ScriptForm::Json})
            static_cast<void>(writeScript(script, form, m_catalogue));
    }

    const StepCatalogue &m_catalogue;
    const WorkNote &m_note;
    QString m_work;
    QStringList m_remarks;
    bool m_hasCopies = true;
};
} // namespace

std::unique_ptr<Operation> makeSentStep(const SentStep &sent, const StepCatalogue &catalogue)
{
    std::unique_ptr<Operation> step(catalogue.create(sent.typeId, nullptr));
    if (!step)
        return step;
    // A step that does not read its record has its settings all the same.
    static_cast<void>(loadWholeRecord(*step, sent.record));
    for (auto setting = sent.settings.begin(); setting != sent.settings.end(); ++setting)
        step->setProperty(setting.key().toUtf8().constData(), setting.value());
    return step;
}

QStringList probeTypes(const StepCatalogue &catalogue, const WorkNote &note)
{
    QStringList remarks;
    for (const QString &typeId : catalogue.typeIds()) {
        note(ErrorTexts::tr("a step %1 and its texts were made").arg(typeId));
        const std::unique_ptr<Operation> step(catalogue.create(typeId, nullptr));
        if (!step) {
            remarks.append(ErrorTexts::tr("the plug-in gives no copy of the step %1").arg(quoted(typeId)));
            continue;
        }
        const QString flaw = flawOfTexts(*step);
        if (!flaw.isEmpty())
            remarks.append(ErrorTexts::tr("the texts of the step %1: %2").arg(quoted(typeId), flaw));
    }
    return remarks;
}

Result<QStringList> carryOutTrial(const RunRequest &request, const StepCatalogue &catalogue,
                                  const WorkNote &note)
{
    StepTrials trials(catalogue, note);
    const QString flaw = flawOf([&] {
        int number = 1;
        for (const QByteArray &script : request.scripts)
            number += trials.read(script, number);
        for (const SentStep &step : request.steps)
            trials.change(step, request.setting);
    });
    if (!flaw.isEmpty())
        return failure(ErrorTexts::tr("%1, while %2").arg(flaw, trials.work()));
    if (!request.steps.empty() && !trials.hasCopies())
        return failure(trials.remarks().join(QLatin1String("; ")));
    return trials.remarks();
}
} // namespace StepHost

#include "HostBenchmarks.h"
#include "StepBenchmarks.h"
#include "Table.h"
#include "Targets.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace
{
constexpr int largestCheckedSize = 1000;

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

void configure(bool isQuick)
{
    // Repetitions take turns, so that a busy moment of the machine does not fall on one variant alone.
    static std::string arguments[] = {"bench", "--benchmark_enable_random_interleaving=true",
                                      isQuick ? "--benchmark_min_time=0.005" : "--benchmark_min_time=0.02",
                                      isQuick ? "--benchmark_repetitions=3" : "--benchmark_repetitions=7"};
    static char *pointers[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(),
                               arguments[3].data(), nullptr};
    int count = 4;
    benchmark::Initialize(&count, pointers);
}

void runRegistered(Results &results)
{
    benchmark::RunSpecifiedBenchmarks(&results);
    benchmark::ClearRegisteredBenchmarks();
}

bool writeJson(const QString &fileName, const QJsonObject &object)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(object).toJson()) < 0 || !file.flush()) {
        std::fprintf(stderr, "bench: cannot write %s: %s\n", qPrintable(fileName),
                     qPrintable(file.errorString()));
        return false;
    }
    return true;
}
} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription("Measures the list steps and the host, and compares with the targets.");
    parser.addHelpOption();
    const QCommandLineOption quick("quick", "Measure only what the targets ask about, with less care.");
    const QCommandLineOption json("json", "Write all figures to <file> too.", "file");
    parser.addOptions({quick, json});
    parser.addPositionalArgument("step", "Measure only the steps of these names, such as dedup.",
                                 "[step...]");
    parser.process(application);

    qInstallMessageHandler(ignoreMessage);
    configure(parser.isSet(quick));
    Results results;
    const QStringList steps = parser.positionalArguments();
    const std::vector<Case> cases = stepCases(parser.isSet(quick));
    printTableHead();
    for (const Case &oneCase : cases) {
        if (!steps.isEmpty() && !steps.contains(QString::fromStdString(oneCase.step)))
            continue;
        if (oneCase.size <= largestCheckedSize && !stepDoesWhatThePlainRuleDoes(oneCase)) {
            std::fprintf(stderr, "bench: %s: the step and its plain rule differ\n", oneCase.name().c_str());
            return 1;
        }
        registerBenchmarks(oneCase);
        runRegistered(results);
        printTableRow(oneCase, results);
    }
    registerHostBenchmarks();
    runRegistered(results);

    std::printf("\n");
    printGrowth(cases, results);
    std::printf("\n");
    const std::vector<Target> compared = targets(cases, results);
    printTargets(compared);
    const QJsonObject all{{"measurements", results.toJson()}, {"targets", toJson(compared)}};
    if (parser.isSet(json) && !writeJson(parser.value(json), all))
        return 1;
    return results.hasErrors() ? 1 : 0;
}

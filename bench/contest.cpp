#include "bench/contest.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace jotlet {
namespace {

constexpr int kRepetitions = 9;

// Keeps the medians that Google Benchmark works out, by full name.
class MedianReporter : public benchmark::ConsoleReporter {
public:
    MedianReporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& reports) override
    {
        for (const Run& run : reports)
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                medians[run.run_name.function_name] = run.GetAdjustedRealTime() * 1e-3;
        std::fputc('.', stderr);
    }

    std::map<std::string, double> medians;  // microseconds
};

void Register(const std::string& name, const std::function<double()>& work, int iterations)
{
    benchmark::RegisterBenchmark(name.c_str(),
                                 [work](benchmark::State& state) {
                                     for ([[maybe_unused]] auto iteration : state)
                                         state.SetIterationTime(work());
                                 })
        ->UseManualTime()
        ->Iterations(iterations)
        ->Repetitions(kRepetitions)
        ->ReportAggregatesOnly(false)
        ->Unit(benchmark::kNanosecond);
}

}  // namespace

double Timed(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Expect(const char* what, long got, long wanted)
{
    if (got == wanted)
        return;
    std::fprintf(stderr, "%s: %ld instead of %ld\n", what, got, wanted);
    std::exit(1);
}

int RunContests(const std::vector<Contest>& contests, int argc, char** argv)
{
    // In turns, so that a slow minute of the machine hits both sides.
    static char interleave[] = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, interleave);
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return -1;
    for (const Contest& contest : contests) {
        Register(contest.name + ":jotlet", contest.jotlet, contest.iterations);
        Register(contest.name + ":rival", contest.rival, contest.iterations);
    }
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    int missed = 0;
    std::string rivalName;
    for (const Contest& contest : contests) {
        const auto own = reporter.medians.find(contest.name + ":jotlet");
        const auto other = reporter.medians.find(contest.name + ":rival");
        if (own == reporter.medians.end() || other == reporter.medians.end())
            continue;
        if (contest.rivalName != rivalName) {
            rivalName = contest.rivalName;
            std::printf("\n%-58s %11s %11s %7s %8s\n", "Work on 10,000 notes (medians)", "Jotlet", rivalName.c_str(),
                        "ratio", "at most");
        }
        const double ratio = own->second / other->second;
        const bool holds = ratio <= contest.atMost;
        missed += holds ? 0 : 1;
        std::printf("%-58s %8.1f us %8.1f us %7.2f %8.1f%s\n", contest.work.c_str(), own->second, other->second, ratio,
                    contest.atMost, holds ? "" : "  MISSED");
    }
    return missed;
}

}  // namespace jotlet

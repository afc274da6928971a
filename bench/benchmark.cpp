// qorvane-bench: the library at every level that the processor has, and its peers, on Google Benchmark. A name is
// <function>/<contestant>/<n>, with a range other than the everyday one in brackets behind the function; the counter
// "element" is the time an element. What begins with "ranges/" are the complex functions on many ranges, against fewer
// contestants.
//
// The contestants take turns in random order, and the least of each one's short turns counts: other work on the machine
// can only lengthen a turn. What a process has its pages and branches share isn't chance within that process, so a
// figure that counts is the least of several processes too (bench/measure.py).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>

#include "bench/workloads.h"
#include "frame/dispatch.h"

namespace qorvane::bench {
namespace {

double seconds() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

// How many calls fill a turn, in whole walks. What disturbs a call can only lengthen it, so the least of some tells.
int64_t callsOfATurn(const Contestant& contestant, const Call& call) {
  constexpr double turn = 100e-6;
  for (int64_t calls = callsOfAWalk(call.len);; calls *= 2) {
    double least = 1;
    for (int i = 0; i < 3; ++i) {
      const double start = seconds();
      contestant.repeat(call, calls);
      least = std::min(least, seconds() - start);
    }
    if (least > turn / 2) return calls;
  }
}

// A chain of additions, one cycle each, so their rate is the core's clock.
double clockGigahertz() {
  double best = 0;
  for (int round = 0; round < 50; ++round) {
    uint64_t x = 0;
    const double start = seconds();
    for (int i = 0; i < 2000; ++i) asm volatile(".rept 100\n add $1, %0\n .endr" : "+r"(x));
    best = std::max(best, static_cast<double>(x) / (seconds() - start) * 1e-9);
  }
  return best;
}

// A workload's arrays are drawn when one of its benchmarks runs first.
struct Place {
  Workload workload;
  std::unique_ptr<Arrays> arrays;
};

void add(const std::shared_ptr<Place>& place, const std::string& name, int level, const Contestant* contestant) {
  const std::string title = place->workload.title + "/" + name + "/";
  benchmark::internal::Benchmark* entry = nullptr;
  for (int n : place->workload.lengths) {
    const auto run = [=, calls = std::make_shared<int64_t>(0)](benchmark::State& state) {
      if (level > 0) DispatchLevel = level;
      if (!place->arrays) place->arrays = std::make_unique<Arrays>(place->workload);
      const Call call = place->arrays->first(n);
      if (*calls == 0) *calls = callsOfATurn(*contestant, call);
      contestant->repeat(call, *calls / 4);  // the turn before has left the caches to others
      while (state.KeepRunningBatch(*calls)) contestant->repeat(call, *calls);
      state.counters["element"] = benchmark::Counter(
          static_cast<double>(n), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    };
    entry = benchmark::RegisterBenchmark((title + std::to_string(n)).c_str(), run);
    entry->UseRealTime()->ComputeStatistics(
        "least", [](const std::vector<double>& times) { return *std::min_element(times.begin(), times.end()); });
    entry->ReportAggregatesOnly();
  }
}

// The library at these levels, and the teams that have the function.
void addContestants(Workload workload, std::span<const int> levels, std::span<const Team* const> teams) {
  const std::string_view stem = workload.function->stem;
  const auto place = std::make_shared<Place>(Place{std::move(workload), nullptr});
  for (int level : levels)
    if (level <= DispatchLevel) add(place, "level " + std::to_string(level), level, find(library, stem));
  for (const Team* team : teams)
    if (const Contestant* peer = find(*team, stem); peer && team->runsHere()) add(place, team->name, 0, peer);
}

void registerAll() {
  constexpr int levels[] = {1, 2, 3, 4, 5};
  const Team* teams[] = {&cLibrary,    &sleefSse4,  &sleefAvx,    &sleefAvx2,     &sleefAvx512,
                         &libmvecSse4, &libmvecAvx, &libmvecAvx2, &libmvecAvx512, &bareAvx};
  for (const Workload& workload : workloads()) addContestants(workload, levels, teams);
  const Team* few[] = {&unfused, &cLibrary};
  for (const Workload& workload : complexRanges()) {
    std::vector<int> firstLevels;  // of each program
    for (size_t i = 0; i < workload.function->programCount; ++i)
      firstLevels.push_back(workload.function->programs[i].firstLevel);
    addContestants(workload, firstLevels, few);
  }
}

std::string machine() {
  std::ifstream in("/proc/cpuinfo");
  std::string name, family, model;
  for (std::string line; std::getline(in, line) && !line.empty();) {
    const size_t colon = line.find(": ");
    if (colon == std::string::npos) continue;
    const std::string value = line.substr(colon + 2);
    if (line.rfind("model name", 0) == 0) name = value;
    if (line.rfind("cpu family", 0) == 0) family = value;
    if (line.rfind("model\t", 0) == 0) model = value;
  }
  return name + ", family " + family + ", model " + model;
}

}  // namespace
}  // namespace qorvane::bench

int main(int count, char** arguments) {
  // Of an option given twice, the last one counts.
  std::vector<std::string> ours = {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=50",
                                   "--benchmark_min_time=0"};
  std::vector<char*> all = {arguments[0]};
  for (std::string& option : ours) all.push_back(option.data());
  all.insert(all.end(), arguments + 1, arguments + count);
  int allCount = static_cast<int>(all.size());
  all.push_back(nullptr);
  benchmark::Initialize(&allCount, all.data());
  if (benchmark::ReportUnrecognizedArguments(allCount, all.data())) return 1;
  qorvane::bench::pinToOneCore();
  benchmark::AddCustomContext("machine", qorvane::bench::machine());
  benchmark::AddCustomContext("GHz", std::to_string(qorvane::bench::clockGigahertz()));
  qorvane::bench::registerAll();
  return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}

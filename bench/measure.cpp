// The contestants of a row run in turns, a slice at a time, for many rounds; what counts is each
// one's best slice. Other work on the machine can only make a slice longer, and the turns give
// every contestant the same share of the quiet moments.
#include <sched.h>
#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "bench/measurements.h"
#include "frame/dispatch.h"

namespace qorvane::bench {
namespace {

double seconds() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

struct Runner {
  std::string name;
  int level;  // 0: a peer
  const Contestant* contestant;
  int64_t times = 1;
  double best = 1e9;  // seconds a call

  double slice(const Call& call) {
    if (level > 0) DispatchLevel = level;
    const double start = seconds();
    contestant->repeat(call, times);
    const double taken = seconds() - start;
    best = std::min(best, taken / static_cast<double>(times));
    return taken;
  }
};

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

void measureRow(std::vector<Runner>& runners, const Call& call, int rounds, double slice) {
  for (Runner& runner : runners) {
    runner.times = 1;
    runner.best = 1e9;
    for (double taken; (taken = runner.slice(call)) < slice;)
      runner.times =
          std::max(runner.times + 1, static_cast<int64_t>(static_cast<double>(runner.times) *
                                                          std::min(10.0, 1.1 * slice / std::max(taken, 1e-9))));
    runner.best = 1e9;
  }
  for (int round = 0; round < rounds; ++round)
    for (Runner& runner : runners) runner.slice(call);
}

}  // namespace

double Measurements::at(const Row& row, const std::string& contestant) const {
  const auto columns = nanoseconds.find(row);
  if (columns == nanoseconds.end()) return 0;
  const auto cell = columns->second.find(contestant);
  return cell == columns->second.end() ? 0 : cell->second;
}

Measurements measureAll(const std::vector<std::string>& only, const Effort& effort) {
  const int highest = DispatchLevel;
  Measurements result;
  for (int level = 1; level <= highest; ++level) result.contestants.push_back("level " + std::to_string(level));
  const Team* teams[] = {&cLibrary, &sleefSse4, &sleefAvx, &sleefAvx2, &sleefAvx512, &bareAvx};
  for (const Team* team : teams)
    if (team->runsHere()) result.contestants.push_back(team->name);

  std::vector<Workload> chosen;
  for (const Workload& workload : workloads())
    if (only.empty() || std::find(only.begin(), only.end(), workload.stem) != only.end()) chosen.push_back(workload);

  // In several sweeps over all the rows, because the machine may be busy for longer than a row
  // takes.
  constexpr int sweeps = 10;
  const double start = seconds();
  double lastWord = start;
  Disturbance& disturbance = result.disturbance;
  disturbance.neighbours = neighboursOf(sched_getcpu());
  for (int sweep = 0; disturbance.quiet < sweeps && sweep < 2 * sweeps; ++sweep) {
    const ProcessorTime before = timeOf(disturbance.neighbours);
    for (const Workload& workload : chosen) {
      const Arrays arrays(workload);
      std::vector<Runner> runners;
      for (int level = 1; level <= highest; ++level)
        runners.push_back({"level " + std::to_string(level), level, find(library, workload.stem)});
      for (const Team* team : teams)
        if (const Contestant* peer = find(*team, workload.stem); peer && team->runsHere())
          runners.push_back({team->name, 0, peer});
      for (int n : lengths) {
        measureRow(runners, arrays.first(n), (effort.rounds + sweeps - 1) / sweeps, effort.slice);
        const Row row = {workload.stem, workload.label, n};
        if (sweep == 0) result.rows.push_back(row);
        auto& columns = result.nanoseconds[row];
        for (const Runner& runner : runners) {
          const double time = runner.best / n * 1e9;
          const auto [cell, isNew] = columns.try_emplace(runner.name, time);
          if (!isNew) cell->second = std::min(cell->second, time);
        }
        if (const double now = seconds(); now - lastWord > 1) {
          std::fprintf(stderr, "\r\033[Ksweep %d, %d disturbed: %s %s, n = %d; %.0f s", sweep + 1,
                       disturbance.disturbed, workload.stem, workload.label.c_str(), n, now - start);
          lastWord = now;
        }
      }
      result.clock = std::max(result.clock, clockGigahertz());
    }
    ++(isDisturbed(before, timeOf(disturbance.neighbours)) ? disturbance.disturbed : disturbance.quiet);
  }
  std::fprintf(stderr, "\n");
  DispatchLevel = highest;
  return result;
}

}  // namespace qorvane::bench

// qorvane-bench: every served function at every level that the processor has, on Google Benchmark.
// The names are <function>/level<L>/<n>; the counter "element" is the time an element. For
// comparisons with other libraries see qorvane-compare, which measures all of them in turns.
#include <benchmark/benchmark.h>

#include <map>
#include <memory>

#include "bench/workloads.h"
#include "frame/dispatch.h"

namespace qorvane::bench {
namespace {

void registerAll() {
  const int highest = DispatchLevel;
  for (const Workload& workload : workloads()) {
    const auto arrays = std::make_shared<Arrays>(workload);
    const Contestant* function = find(library, workload.stem);
    for (int level = 1; level <= highest; ++level) {
      std::string name = workload.stem;
      if (!workload.label.empty()) name += "[" + workload.label + "]";
      auto run = [=](benchmark::State& state) {
        DispatchLevel = level;
        const Call call = arrays->first(static_cast<int>(state.range(0)));
        while (state.KeepRunningBatch(100)) function->repeat(call, 100);
        state.counters["element"] = benchmark::Counter(
            static_cast<double>(call.len), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
      };
      benchmark::internal::Benchmark* entry =
          benchmark::RegisterBenchmark((name + "/level" + std::to_string(level)).c_str(), run);
      for (int n : lengths) entry->Arg(n);
    }
  }
}

}  // namespace
}  // namespace qorvane::bench

int main(int count, char** arguments) {
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  qorvane::bench::pinToOneCore();
  qorvane::bench::registerAll();
  benchmark::RunSpecifiedBenchmarks();
}

#include "bench/workloads.h"

#include <sched.h>

namespace qorvane::bench {
namespace {

// Arguments that take more reduction.
constexpr struct {
  std::string_view stem, range;
} further[] = {
    {"sin", "to 2^16"},        {"cos", "to 2^16"},        {"sinCos", "to 2^16"},
    {"sin", "huge arguments"}, {"cos", "huge arguments"}, {"sinCos", "huge arguments"},
};

constexpr size_t lineLength = 64, numbersInLine = lineLength / sizeof(double);

}  // namespace

const std::vector<Workload>& workloads() {
  static const std::vector<Workload> all = [] {
    std::vector<Workload> list;
    for (const Served& function : served())
      list.push_back({function.stem.data(), "", &accuracy::rangesOf(function.stem)[0], function.signature});
    for (const auto& [stem, name] : further)
      for (const Served& function : served())
        for (const accuracy::Range& range : accuracy::rangesOf(stem))
          if (function.stem == stem && range.name == name)
            list.push_back({function.stem.data(), std::string(name), &range, function.signature});
    return list;
  }();
  return all;
}

Arrays::Arrays(const Workload& workload)
    : stride(static_cast<size_t>(longest * workload.signature.parts) + lineLength),
      memory(new double[4 * stride + numbersInLine]()) {
  accuracy::Random random{1};
  accuracy::drawArguments(*workload.range, workload.signature, random, longest, {at(0), at(1)}, scalar.data());
}

double* Arrays::at(size_t array) const {
  const uintptr_t lineStart = (reinterpret_cast<uintptr_t>(memory.get()) + lineLength - 1) / lineLength * lineLength;
  return reinterpret_cast<double*>(lineStart) + array * stride;
}

const Contestant* find(const Team& team, const std::string& stem) {
  for (int i = 0; i < team.count; ++i)
    if (team.first[i].stem == stem) return team.first + i;
  return nullptr;
}

void pinToOneCore() {
  cpu_set_t set;
  CPU_ZERO(&set);
  CPU_SET(sched_getcpu(), &set);
  sched_setaffinity(0, sizeof set, &set);
}

}  // namespace qorvane::bench

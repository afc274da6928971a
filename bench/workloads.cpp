#include "bench/workloads.h"

#include <sched.h>

#include <utility>

namespace qorvane::bench {
namespace {

// Arguments that take more reduction.
constexpr struct {
  std::string_view stem, range;
} further[] = {
    {"sin", "to 2^16"},        {"cos", "to 2^16"},        {"sinCos", "to 2^16"},
    {"sin", "huge arguments"}, {"cos", "huge arguments"}, {"sinCos", "huge arguments"},
};

constexpr int lengths[] = {1, 3, 4, 8, 100, 1000, 100000};
constexpr size_t lineLength = 64, numbersInLine = lineLength / sizeof(double);

}  // namespace

std::vector<Workload> workloads() {
  std::vector<Workload> list;
  for (const Served& function : served())
    list.push_back({std::string(function.stem), &function, &accuracy::rangesOf(function.stem)[0], lengths});
  for (const auto& [stem, name] : further)
    for (const Served& function : served())
      for (const accuracy::Range& range : accuracy::rangesOf(stem))
        if (function.stem == stem && range.name == name)
          list.push_back({std::string(stem).append("[").append(name).append("]"), &function, &range, lengths});
  return list;
}

Arrays::Arrays(const Workload& workload)
    : stride(static_cast<size_t>(workload.lengths.back() * workload.function->signature.parts) + lineLength),
      memory(new double[4 * stride + numbersInLine]()) {
  accuracy::Random random{1};
  const auto count = static_cast<size_t>(workload.lengths.back());
  accuracy::drawArguments(*workload.range, workload.function->signature, random, count, {at(0), at(1)}, scalar.data());
  for (size_t i = 0; workload.turned && i < count; ++i) std::swap(at(0)[2 * i], at(0)[2 * i + 1]);
}

double* Arrays::at(size_t array) const {
  const uintptr_t lineStart = (reinterpret_cast<uintptr_t>(memory.get()) + lineLength - 1) / lineLength * lineLength;
  return reinterpret_cast<double*>(lineStart) + array * stride;
}

const Contestant* find(const Team& team, std::string_view stem) {
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

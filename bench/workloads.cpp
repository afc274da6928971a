#include "bench/workloads.h"

#include <sched.h>

#include <cmath>
#include <random>

namespace qorvane::bench {
namespace {

constexpr Workload::Range unused = {1, 1, false}, positive = {1e-10, 1e10, true}, moderate = {-1e6, 1e6, false};

// Ranges without slow cases, as a caller would have them. A function that isn't here gets (0.25,
// 0.75).
constexpr Workload everyday[] = {
    {"exp", "", {-700, 700, false}, unused},
    {"ln", "", positive, unused},
    {"log10", "", positive, unused},
    {"pow", "", {0.1, 10, true}, {-20, 20, false}},
    {"powx", "", {0.1, 10, true}, {2.5, 2.5, false}},
    {"inv", "", positive, unused},
    {"div", "", positive, positive},
    {"sqrt", "", positive, unused},
    {"invSqrt", "", positive, unused},
    {"cbrt", "", positive, unused},
    {"invCbrt", "", positive, unused},
    {"sin", "", {-100, 100, false}, unused},
    {"cos", "", {-100, 100, false}, unused},
    {"sinCos", "", {-100, 100, false}, unused},
    {"tan", "", {-100, 100, false}, unused},
    {"floor", "", moderate, unused},
    {"ceil", "", moderate, unused},
    {"trunc", "", moderate, unused},
    {"round", "", moderate, unused},
    {"rint", "", moderate, unused},
    {"nearbyInt", "", moderate, unused},
    {"modf", "", moderate, unused},
};
// Arguments that take more reduction.
constexpr Workload special[] = {
    {"sin", "to 65536", {-65536, 65536, false}, unused},    {"cos", "to 65536", {-65536, 65536, false}, unused},
    {"sinCos", "to 65536", {-65536, 65536, false}, unused}, {"sin", "near 1e300", {1e299, 1e301, true}, unused},
    {"cos", "near 1e300", {1e299, 1e301, true}, unused},    {"sinCos", "near 1e300", {1e299, 1e301, true}, unused},
};

void fill(double* values, const Workload::Range& range, uint64_t seed) {
  std::mt19937_64 random(seed);
  for (int i = 0; i < longest; ++i) {
    const double share = std::ldexp(static_cast<double>(random() >> 11), -53);
    values[i] = range.logarithmic ? range.low * std::pow(range.high / range.low, share)
                                  : range.low + share * (range.high - range.low);
  }
}

constexpr size_t stride = longest + 64, lineLength = 64;

}  // namespace

const std::vector<Workload>& workloads() {
  static const std::vector<Workload> all = [] {
    std::vector<Workload> list;
    for (int i = 0; i < library.count; ++i) {
      Workload workload = {library.first[i].stem, "", {0.25, 0.75, false}, {0.25, 0.75, false}};
      for (const Workload& known : everyday)
        if (known.stem == std::string(workload.stem)) workload = known;
      list.push_back(workload);
    }
    for (const Workload& workload : special)
      if (find(library, workload.stem)) list.push_back(workload);
    return list;
  }();
  return all;
}

Arrays::Arrays(const Workload& workload) : memory(new double[4 * stride + lineLength]()) {
  fill(at(0), workload.a, 1);
  fill(at(1), workload.b, 2);
}

double* Arrays::at(int array) const {
  const uintptr_t lineStart = (reinterpret_cast<uintptr_t>(memory.get()) + lineLength - 1) / lineLength * lineLength;
  return reinterpret_cast<double*>(lineStart) + static_cast<size_t>(array) * stride;
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

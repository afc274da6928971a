// The arguments of the speed measurements.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "bench/contestants.h"
#include "tools/ranges.h"

namespace qorvane::bench {

// A function on a range of its arguments.
struct Workload {
  const char* stem;
  std::string label;  // the range's name; empty: the function's everyday range
  const accuracy::Range* range;
  Signature signature;
};

// The everyday workloads of the served functions in the order of frame/functions.inc, then those of
// ranges that take other paths.
const std::vector<Workload>& workloads();

constexpr int lengths[] = {1, 3, 4, 8, 100, 1000, 100000};
constexpr int longest = 100000;

// The arrays of a workload; the same for every run. They begin at a cache line each, at different
// places of a page.
class Arrays {
 public:
  explicit Arrays(const Workload& workload);
  Call first(int n) const { return {{at(0), at(1)}, {at(2), at(3)}, {scalar[0], scalar[1]}, n, {}, {}}; }

 private:
  double* at(size_t array) const;
  size_t stride;
  std::unique_ptr<double[]> memory;
  std::array<double, 2> scalar{};
};

const Contestant* find(const Team& team, const std::string& stem);

// Stays on one processor core.
void pinToOneCore();

}  // namespace qorvane::bench

// The arguments of the speed measurements.
#pragma once
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "bench/contestants.h"
#include "tools/ranges.h"

namespace qorvane::bench {

// A function on a range of its arguments.
struct Workload {
  std::string title;  // the function, and in brackets a range other than its everyday one
  const Served* function;
  const accuracy::Range* range;
  std::span<const int> lengths;  // that are measured, in their order
  bool turned = false;           // drawn numbers a + bi become b + ai
};

// The everyday workloads of the served functions in the order of frame/functions.inc, then those of
// ranges that take other paths.
std::vector<Workload> workloads();

// The complex functions' ranges of docs/performance.md; titles begin with "ranges/".
std::vector<Workload> complexRanges();

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

const Contestant* find(const Team& team, std::string_view stem);

// Stays on one processor core.
void pinToOneCore();

}  // namespace qorvane::bench

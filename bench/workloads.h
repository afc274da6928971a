// The arguments of the speed measurements.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "bench/contestants.h"

namespace qorvane::bench {

// A function on a range of arguments.
struct Workload {
  const char* stem;
  const char* label;  // empty: the function's everyday range
  struct Range {
    double low, high;
    bool logarithmic;  // spread evenly over the exponents
  } a, b;
};

// The everyday workloads of the served functions in the order of frame/functions.inc, then the
// special ones.
const std::vector<Workload>& workloads();

constexpr int lengths[] = {1, 8, 100, 1000, 100000};
constexpr int longest = 100000;

// The arrays of a workload; the same for every run. They begin at a cache line each, at different
// places of a page.
class Arrays {
 public:
  explicit Arrays(const Workload& workload);
  Work first(int n) const { return {at(0), at(1), at(1)[0], at(2), at(3), n}; }

 private:
  double* at(int array) const;
  std::unique_ptr<double[]> memory;
};

const Contestant* find(const Team& team, const std::string& stem);

// Stays on one processor core.
void pinToOneCore();

}  // namespace qorvane::bench

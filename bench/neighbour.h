// The processor that may share a core with the one that measures.
#pragma once
#include <string>
#include <vector>

namespace qorvane::bench {

// The processors that share a core with `processor`. Virtual machines often hide that; where nothing is declared, the
// other one of an even and odd pair is taken, because they number the threads of a core so.
std::vector<int> neighboursOf(int processor);

// The time, in ticks since the machine's start, that these processors have worked, and all of their time.
struct ProcessorTime {
  long long busy = 0, all = 0;
};
ProcessorTime timeOf(const std::vector<int>& processors);

// How a run of sweeps went. A sweep in which the neighbours worked for more than a tenth of the time is a disturbed one.
struct Disturbance {
  std::vector<int> neighbours;
  int quiet = 0, disturbed = 0;  // sweeps
};
bool isDisturbed(const ProcessorTime& before, const ProcessorTime& after);
// What a reader has to know of it; empty if nothing.
std::string remark(const Disturbance& disturbance);

}  // namespace qorvane::bench

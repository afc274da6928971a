#include "bench/neighbour.h"

#include <algorithm>
#include <fstream>
#include <numeric>
#include <sstream>

namespace qorvane::bench {

std::vector<int> neighboursOf(int processor) {
  std::vector<int> neighbours;
  std::ifstream in("/sys/devices/system/cpu/cpu" + std::to_string(processor) + "/topology/thread_siblings_list");
  for (std::string part; std::getline(in, part, ',');) {  // such as 0,64 or 0-1
    std::istringstream range(part);
    int first = 0, last = 0;
    char dash;
    if (!(range >> first)) continue;
    if (!(range >> dash >> last)) last = first;
    for (int i = first; i <= last; ++i)
      if (i != processor) neighbours.push_back(i);
  }
  if (neighbours.empty()) neighbours.push_back(processor ^ 1);
  return neighbours;
}

ProcessorTime timeOf(const std::vector<int>& processors) {
  ProcessorTime sum;
  std::ifstream in("/proc/stat");
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    const bool counts = std::any_of(processors.begin(), processors.end(),
                                    [&](int processor) { return name == "cpu" + std::to_string(processor); });
    if (!counts) continue;
    long long ticks[8] = {};  // user, nice, system, idle, waiting for input and output, interrupts (2), stolen
    for (long long& t : ticks) words >> t;
    const long long all = std::accumulate(ticks, ticks + 8, 0ll);
    sum.all += all;
    sum.busy += all - ticks[3] - ticks[4];
  }
  return sum;
}

bool isDisturbed(const ProcessorTime& before, const ProcessorTime& after) {
  return 10 * (after.busy - before.busy) > after.all - before.all;
}

std::string remark(const Disturbance& disturbance) {
  if (disturbance.disturbed == 0) return "";
  std::string names;
  for (int neighbour : disturbance.neighbours) names += (names.empty() ? "CPU " : ", CPU ") + std::to_string(neighbour);
  const std::string text = "A busy neighbour (" + names + ") disturbed " + std::to_string(disturbance.disturbed) +
                           " of " + std::to_string(disturbance.quiet + disturbance.disturbed) + " sweeps.";
  return disturbance.quiet > 0 ? text : text + " Loops that fill the core's pipes suffer most: don't trust the ratios.";
}

}  // namespace qorvane::bench

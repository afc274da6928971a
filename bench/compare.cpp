// qorvane-compare: the library against its peers in one run. Prints the times, and the ratios that
// the library sets itself as bars.
//   qorvane-compare [--functions exp,ln,...] [--rounds N] [--write SOURCE-TREE]
// --write renews the table in docs/performance.md and the charts beside it.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "bench/measurements.h"

int main(int count, char** arguments) {
  using namespace qorvane::bench;
  std::vector<std::string> only;
  std::string sourceTree;
  Effort effort;
  for (int i = 1; i < count; ++i) {
    const std::string option = arguments[i];
    const char* value = i + 1 < count ? arguments[++i] : nullptr;
    if (option == "--functions" && value) {
      std::istringstream list(value);
      for (std::string stem; std::getline(list, stem, ',');) only.push_back(stem);
    } else if (option == "--rounds" && value && std::atoi(value) > 0) {
      effort.rounds = std::atoi(value);
    } else if (option == "--write" && value) {
      sourceTree = value;
    } else {
      std::fprintf(stderr, "usage: %s [--functions exp,ln,...] [--rounds N] [--write SOURCE-TREE]\n", arguments[0]);
      return 2;
    }
  }
  pinToOneCore();
  const Measurements measurements = measureAll(only, effort);
  printTable(measurements);
  printBars(measurements);
  return sourceTree.empty() || writeDocuments(measurements, sourceTree) ? 0 : 1;
}

// qorvane-compare: the library against its peers in one run. Prints the times, and the ratios that the library sets itself
// as bars.
#include <getopt.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "bench/measurements.h"
#include "tools/options.h"

namespace {
using namespace qorvane::bench;

constexpr char program[] = "qorvane-compare";
constexpr char usage[] =
    "usage: qorvane-compare [OPTIONS]\n"
    "Measures the library at every level of this processor, and its peers, in one run.\n"
    "  --functions LIST     functions with commas between them (default: all served ones)\n"
    "  --rounds N           turns of each contestant (default 100)\n"
    "  --write SOURCE-TREE  renews the table in docs/performance.md there, and the charts beside it\n";

constexpr option longOptions[] = {{"functions", required_argument, nullptr, 'f'},
                                  {"rounds", required_argument, nullptr, 'r'},
                                  {"write", required_argument, nullptr, 'w'},
                                  {"help", no_argument, nullptr, 'h'},
                                  {nullptr, 0, nullptr, 0}};

struct Options {
  std::vector<std::string> only;
  std::string sourceTree;
  Effort effort;
};

void addFunctions(std::vector<std::string>& only, const char* names) {
  std::istringstream list(names);
  for (std::string stem; std::getline(list, stem, ',');) {
    if (find(library, stem) == nullptr) {
      std::string served;
      for (int i = 0; i < library.count; ++i) served.append(i > 0 ? ", " : " ").append(library.first[i].stem);
      options::stop(program, std::string("no function ").append(stem).append(" is served; there are").append(served));
    }
    only.push_back(stem);
  }
  if (only.empty()) options::stop(program, "--functions takes at least one function");
}

Options readOptions(int count, char** arguments) {
  Options o;
  for (int which; (which = getopt_long(count, arguments, "", longOptions, nullptr)) != -1;) {
    switch (which) {
      case 'f': addFunctions(o.only, optarg); break;
      case 'r':
        if (const auto rounds = options::wholeNumber(optarg, 1, 1000000))
          o.effort.rounds = static_cast<int>(*rounds);
        else
          options::stop(program, std::string("--rounds takes a whole number from 1 to 1000000, not ") + optarg);
        break;
      case 'w':
        o.sourceTree = optarg;
        if (!std::ifstream(o.sourceTree + "/docs/performance.md"))
          options::stop(program, "there is no docs/performance.md in " + o.sourceTree);
        break;
      case 'h': std::fputs(usage, stdout); std::exit(0);
      default: options::stop(program);
    }
  }
  if (optind < count) options::stop(program, std::string("an option is expected, not ") + arguments[optind]);
  return o;
}

}  // namespace

int main(int count, char** arguments) {
  const Options o = readOptions(count, arguments);
  pinToOneCore();
  const Measurements measurements = measureAll(o.only, o.effort);
  printTable(measurements);
  printBars(measurements);
  return o.sourceTree.empty() || writeDocuments(measurements, o.sourceTree) ? 0 : 1;
}

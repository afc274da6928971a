// The command line of qorvane-accuracy.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "tools/accuracy_measure.h"

namespace accuracy {

struct Options {
  std::vector<const Function*> functions;
  int level = 0;  // 0: all
  std::string range, data;
  int64_t count = 1000000;
  uint64_t seed = 1;
  bool hunting = false, list = false;
  std::vector<double> at;
};

// Tells what is wrong and ends the program with status 2 if something is.
Options readOptions(int count, char** arguments);
// For what shows later.
[[noreturn]] void stop(const std::string& mistake);

}  // namespace accuracy

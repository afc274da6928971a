// The served functions, callable in one way: a row of frame/functions.inc each.
#pragma once
#include <array>
#include <span>
#include <string_view>

#include "frame/dispatch.h"
#include "tools/call.h"

namespace qorvane {

// A run of levels that one kernel serves, named by the ending of its source.
struct Program {
  std::string_view name;
  int firstLevel, lastLevel;
};
constexpr size_t mostPrograms = 3;

struct Served {
  std::string_view name;  // the exported one
  std::string_view stem, shape, family;
  std::array<Program, mostPrograms> programs;
  size_t programCount;
  Signature signature;
  nuvStatus (*plain)(const Call&);  // at DispatchLevel
  nuvStatus (*twin)(const Call&);

  // The index of the program of a level; level 0 runs what level 1 does.
  constexpr size_t programAt(int level) const {
    size_t program = 0;
    while (level > programs[program].lastLevel) ++program;
    return program;
  }
};

std::span<const Served> served();

// Sets DispatchLevel for as long as it lives.
class AtLevel {
 public:
  explicit AtLevel(int level) : saved(DispatchLevel) { DispatchLevel = level; }
  AtLevel(const AtLevel&) = delete;
  AtLevel& operator=(const AtLevel&) = delete;
  ~AtLevel() { DispatchLevel = saved; }

 private:
  int32_t saved;
};

}  // namespace qorvane

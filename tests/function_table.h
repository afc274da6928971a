// The served functions as the tests see them: a row of frame/functions.inc each, with a row of
// tests/contracts.inc for each of its programs.
#pragma once
#include <array>
#include <cstdint>
#include <vector>

#include "tools/served.h"

namespace qorvane::test {

enum class CheckClass { pointersFirst, lengthFirst };
enum class MxcsrClass { none, clearMode, clearRounding, forceDown, forceUp, forceToZero };
enum class X87Class { none, fixX87, fixX87Double };
enum class Neighbours { none, blocksReread, wholeBlocks, groupsOf4 };

// Sets of statuses.
constexpr unsigned nothing = 0, overflow = 1, underflow = 2, pole = 4, outOfDomain = 8;
constexpr unsigned asSet(nuvStatus status) {
  return status == nuvStatusOverflow      ? overflow
         : status == nuvStatusUnderflow   ? underflow
         : status == nuvStatusPole        ? pole
         : status == nuvStatusOutOfDomain ? outOfDomain
                                          : nothing;
}

struct Contract {
  std::string_view stem, program;
  CheckClass check;
  MxcsrClass mxcsr;
  X87Class x87;
  unsigned gives, raises;
  Neighbours neighbours;
  bool usesEstimates;

  // Whether an argument outside the fast range may change the last bit of its neighbours' results,
  // or the sign of their zeros.
  bool dependsOnBlock() const { return neighbours == Neighbours::wholeBlocks || neighbours == Neighbours::groupsOf4; }
};

struct Function : Served {
  std::array<Contract, mostPrograms> contracts;

  const Contract& at(int level) const { return contracts[programAt(level)]; }
  // The number of doubles in `elements` elements.
  size_t reals(int32_t elements) const { return static_cast<size_t>(elements) * static_cast<size_t>(signature.parts); }
  nuvStatus operator()(const Call& c) const { return plain(c); }
};

const std::vector<Function>& functions();

// The same call for the twin: every array is handed over moved by its offset, in elements, and the
// offset brings it back. The offsets are those of the inputs, then of the outputs.
Call forTwin(const Function& f, Call c, const std::array<int32_t, 4>& offsets);

// Whether two results for the same element may stand at this level: the same bits, NaNs being one;
// where the function depends on blocks, also neighbouring numbers and zeros.
bool sameResult(const Contract& contract, double a, double b);

}  // namespace qorvane::test

// The arguments over which the bits of a function are recorded.
#pragma once
#include <array>
#include <vector>

#include "tests/arguments.h"
#include "tools/ranges.h"

namespace qorvane::test {

// One element at which a bit of some constant or table row matters that no other recorded argument shows.
struct Witness {
  std::string_view stem;
  accuracy::Point reals;
};
const std::vector<Witness>& witnesses();

// Mixed arguments, `count` of the function's own ranges in arrays that end in tails, and the arguments of the worst
// errors and of the witnesses, each for itself as a block with a tail.
std::vector<Inputs> recordedInputs(const Function& f, int32_t count);

// Copies of one element.
Inputs copiesOf(const Function& f, const accuracy::Point& reals);

}  // namespace qorvane::test

// Arguments of many elements, for functions of any shape.
#pragma once
#include <array>
#include <cstdint>
#include <vector>

#include "tests/function_table.h"

namespace qorvane::test {

struct Inputs {
  std::array<std::vector<double>, 2> in;
  std::array<double, 2> value;
};

// Numbers of a seeded mixture that reaches every path of every function: moderate ones, all
// exponents, any bit patterns, special values.
std::vector<double> mixedNumbers(uint64_t seed, size_t count);

Inputs mixedInputs(const Function& f, uint64_t seed, int32_t count);

// From the function's everyday range, which it sends to no rare path: stretches of them go through
// the pipelines.
Inputs ordinaryInputs(const Function& f, uint64_t seed, int32_t count);

}  // namespace qorvane::test

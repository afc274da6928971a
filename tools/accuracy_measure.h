// Measuring the served functions against exact values.
#pragma once
#include <mpfr.h>

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/ranges.h"
#include "tools/references.h"

namespace accuracy {

// A row of the table of functions.
struct Function : Served {
  const Reference* reference;

  size_t reals() const { return static_cast<size_t>(signature.realsIn()); }
  size_t outputs() const { return static_cast<size_t>(signature.realsOut()); }
  // The numbers from this one on are the scalar's: the same for a whole call.
  size_t ownReals() const { return static_cast<size_t>(signature.inputs * signature.parts); }
};

// Every row; stops the program if one has no reference or no range, or a range doesn't fit it.
const std::vector<Function>& servedFunctions();
// By stem, or by the exported name with or without nuvs; null if it isn't served.
const Function* findFunction(std::string_view name);

// The levels of this processor that run one program.
struct LevelGroup {
  int first, last;
};
std::vector<LevelGroup> levelGroups(const Function& function);
std::string text(const LevelGroup& group);

// One result: of a complex function one of its two components. The error is signed and counts units in the last place of the exact result's binade,
// 2^-1074 below the normal range.
struct Finding {
  Point x{};
  size_t output = 0;
  double result = 0;
  double error = 0;
};

// The judgement of a result.
struct Judgement {
  double error;
  bool correct;  // correctly rounded
};
Judgement judgeExactly(const Function& function, const Finding& finding);
// The quick error; not sure if the quick value can't tell.
double quickError(double result, long double quick, bool& sure);

// The exact value, to so many digits.
std::string exactValue(const Function& function, const Finding& finding, int digits);

// The numbers of an element in hexadecimal.
std::string argumentText(const Function& function, const Point& x);

// All outputs at one argument, alone (count 1) or in a vector of copies; the one with the largest
// error.
Finding evaluateAt(const Function& function, int level, const Point& x, int32_t count);

// A measurement counts the results that are at most so far off.
constexpr std::array errorClasses = {0.5, 0.51, 0.55, 0.6, 0.75, 1.0};
struct Measurement {
  int64_t results = 0, correct = 0;
  std::array<int64_t, errorClasses.size()> within{};
  Finding worst;
};
using Progress = std::function<void(int64_t argumentsDone)>;

// `count` arguments of the range.
Measurement measure(const Function& function, int level, const Range& range, int64_t count, uint64_t seed,
                    const Progress& progress);

// Looks for larger errors: samples half of `count` arguments, then searches around the worst of
// them, in ever narrower windows. Worst first, judged exactly.
std::vector<Finding> hunt(const Function& function, int level, const Range& range, int64_t count, uint64_t seed,
                          const Progress& progress);

// Arguments with their results and quick values, evaluated in one call.
constexpr int32_t blockLength = 1024;
struct Block {
  int32_t count;
  std::array<std::array<double, 2 * blockLength>, 2> in, out;
  std::array<double, 2> scalar;
  std::array<std::array<long double, blockLength>, 2> quick;
};
// Full blocks, but short ones where a block has one scalar, and where all is judged exactly.
int32_t blockLengthOf(const Function& function);
void draw(const Function& function, const Range& range, Random& random, Block& block);
void evaluate(const Function& function, int level, Block& block);
// The number r of element i.
double& realAt(const Function& function, Block& block, size_t i, size_t r);
// Without its error.
Finding findingAt(const Function& function, Block& block, size_t i, size_t output);
// With the quick error, or the exact one where that isn't sure.
Finding judgedAt(const Function& function, Block& block, size_t i, size_t output);

}  // namespace accuracy

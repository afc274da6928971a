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
struct Function {
  std::string_view name, stem;
  bool sameSecond;  // the second argument is one for a whole call
  bool hasSecond;
  int outputs;
  const void* kernels[6];  // which program a level runs
  void (*call)(int level, const double* a, const double* b, double* const* outputs, int32_t len);
  const Reference* reference;
};

// Every row; stops the program if one has no reference or no range.
const std::vector<Function>& servedFunctions();
// By stem, or by the exported name without nuvs; null if it isn't served.
const Function* findFunction(std::string_view name);

// Neighbouring levels of this processor that run one program.
struct LevelGroup {
  int first, last;
};
std::vector<LevelGroup> levelGroups(const Function& function);
std::string text(const LevelGroup& group);

// One result. The error is signed and counts units in the last place of the exact result's binade,
// 2^-1074 below the normal range.
struct Finding {
  double a = 0, b = 0;
  int output = 0;
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

// Both outputs at one argument, alone (count 1) or in a vector of copies; the one with the larger
// error.
Finding evaluateAt(const Function& function, int level, double a, double b, int32_t count);

struct Measurement {
  int64_t results = 0, correct = 0;
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
  std::array<double, blockLength> a, b, results[2];
  std::array<long double, blockLength> quick[2];
};
void draw(const Function& function, const Range& range, Random& random, Block& block);
void evaluate(const Function& function, int level, Block& block);
// Without its error.
inline Finding findingAt(const Block& block, size_t i, size_t output) {
  return {block.a[i], block.b[i], static_cast<int>(output), block.results[output][i], 0};
}
// With the quick error, or the exact one where that isn't sure.
Finding judgedAt(const Function& function, const Block& block, size_t i, size_t output);

}  // namespace accuracy

// The served functions as the tests see them: one row of frame/functions.inc each, callable in one
// way whatever the shape.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "frame/include/qorvane.h"

namespace qorvane::test {

enum class Shape { realUnary, realBinary, realSplit, realScalar };
enum class CheckClass { pointersFirst, lengthFirst };
enum class StateClass {
  none,
  clearMode,
  clearRounding,
  forceDown,
  forceUp,
  forceToZero,
  fixX87AndClearMode,
  fixX87AndClearRounding
};
enum class Exception { none, blocksReread, wholeBlocks, groupsOf4 };

struct Variant {
  CheckClass check;
  StateClass state;
  bool raisesFlags;
};

struct Function {
  std::string name;
  Shape shape;
  Variant levels1To4, level5;
  Exception exception;
  void* plain;
  void* twin;

  const Variant& at(int level) const { return level == 5 ? level5 : levels1To4; }
  // Whether an argument outside the fast range may change the last bit of its neighbours' results,
  // or the sign of their zeros.
  bool dependsOnBlock(int level) const {
    return exception == Exception::wholeBlocks || (exception == Exception::groupsOf4 && level < 5);
  }
  bool hasSecondInput() const { return shape == Shape::realBinary; }
  bool hasSecondOutput() const { return shape == Shape::realSplit; }

  // The arrays that the shape has no place for are not looked at; `value` is the scalar's.
  nuvStatus operator()(const double* x, const double* y, double value, double* a, double* b, int32_t len) const;
  // The same through the twin: every array is handed over `shift` elements off, and the offsets
  // bring it back.
  nuvStatus throughTwin(const double* x, const double* y, double value, double* a, double* b, int32_t len,
                        int32_t shift) const;
};

const std::vector<Function>& functions();

// Whether two results for the same element may stand: the same bits, NaNs being one; where the
// function depends on blocks, also neighbouring numbers and zeros.
bool sameResult(const Function& f, double a, double b);

// A seeded mixture that reaches every path of every function: moderate numbers, all exponents, any
// bit patterns, special values.
std::vector<double> mixedArguments(uint64_t seed, int count);

// From 1/16 to 16, which no function sends to its rare paths: stretches of them go through the
// pipelines.
std::vector<double> ordinaryArguments(uint64_t seed, int count);

}  // namespace qorvane::test

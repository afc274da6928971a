// The bars that the library sets itself: a time over another one of the same run. They inform;
// noise on a shared machine fails no build.
#include <cstdio>

#include "bench/measurements.h"

namespace qorvane::bench {
namespace {

struct Side {
  const char *stem, *label, *contestant;
};
struct Bar {
  Side ours;
  int n;
  const char* peer;  // a contestant at the same function, unless `other` names another function
  double most;
  const char* other = nullptr;
  const char* otherLabel = "";
};

constexpr Bar bars[] = {
    {{"exp", "", "level 5"}, 1000, "SLEEF AVX", 0.50},
    {{"exp", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"exp", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"exp", "", "level 5"}, 8, "C library", 0.7},
    {{"exp", "", "level 5"}, 1, "C library", 2.0},
    {{"ln", "", "level 5"}, 1000, "SLEEF AVX", 0.32},
    {{"ln", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"ln", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"log10", "", "level 5"}, 1000, "SLEEF AVX", 0.32},
    {{"log10", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"log10", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"pow", "", "level 5"}, 1000, "SLEEF AVX", 0.28},
    {{"pow", "", "level 5"}, 1000, "C library", 0.32},
    {{"pow", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"pow", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"powx", "", "level 5"}, 1000, "level 5", 0.9, "pow"},
    {{"powx", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"inv", "", "level 5"}, 1000, "bare AVX", 1.1},
    {{"inv", "", "level 5"}, 100000, "bare AVX", 1.05},
    {{"div", "", "level 5"}, 1000, "bare AVX", 1.1},
    {{"div", "", "level 5"}, 100000, "bare AVX", 1.05},
    {{"floor", "", "level 5"}, 1000, "bare AVX", 1.15},
    {{"floor", "", "level 5"}, 100000, "bare AVX", 1.05},
    {{"ceil", "", "level 5"}, 1000, "bare AVX", 1.15},
    {{"ceil", "", "level 5"}, 100000, "bare AVX", 1.05},
    {{"trunc", "", "level 5"}, 1000, "bare AVX", 1.15},
    {{"trunc", "", "level 5"}, 100000, "bare AVX", 1.05},
    {{"rint", "", "level 5"}, 1000, "bare AVX", 1.15},
    {{"rint", "", "level 5"}, 100000, "bare AVX", 1.05},
    {{"nearbyInt", "", "level 5"}, 1000, "bare AVX", 1.15},
    {{"nearbyInt", "", "level 5"}, 100000, "bare AVX", 1.05},
    {{"sqrt", "", "level 5"}, 1000, "bare AVX", 1.0},
    {{"invSqrt", "", "level 5"}, 1000, "bare AVX", 0.75},
    {{"round", "", "level 5"}, 1000, "C library", 0.25},
    {{"modf", "", "level 5"}, 1000, "C library", 0.3},
    {{"cbrt", "", "level 5"}, 1000, "SLEEF AVX", 0.25},
    {{"invCbrt", "", "level 5"}, 1000, "level 5", 1.1, "cbrt"},
    {{"cbrt", "", "level 1"}, 1000, "level 5", 1.8},
    {{"invSqrt", "", "level 1"}, 1000, "level 5", 1.8},
    {{"sqrt", "", "level 1"}, 1000, "level 5", 1.8},
    {{"sqrt", "", "level 4"}, 1000, "level 5", 1.8},
    {{"sin", "", "level 5"}, 1000, "SLEEF AVX", 0.38},
    {{"sin", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"sin", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"cos", "", "level 5"}, 1000, "SLEEF AVX", 0.38},
    {{"cos", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"cos", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"sinCos", "", "level 5"}, 1000, "SLEEF AVX", 0.45},
    {{"sinCos", "", "level 5"}, 1000, "level 5", 1.5, "sin"},
    {{"sinCos", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"sin", "to 2^16", "level 5"}, 1000, "level 5", 1.05, "sin"},
    {{"sin", "huge arguments", "level 5"}, 1000, "level 5", 5.0, "sin"},
    {{"cos", "huge arguments", "level 5"}, 1000, "level 5", 5.0, "cos"},
    {{"sinCos", "huge arguments", "level 5"}, 1000, "level 5", 5.0, "sinCos"},
    {{"tan", "", "level 5"}, 1000, "SLEEF AVX", 0.75},
    {{"tan", "", "level 1"}, 1000, "SLEEF AVX", 0.75},
    {{"acosh", "", "level 5"}, 1000, "SLEEF AVX", 0.35},
    {{"acosh", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"acosh", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"acosh", "", "level 4"}, 1000, "SLEEF SSE4", 0.6},
    {{"acosh", "", "level 5"}, 8, "C library", 0.8},
    {{"acosh", "", "level 5"}, 1, "C library", 2.5},
    {{"asinh", "", "level 5"}, 1000, "SLEEF AVX", 0.35},
    {{"asinh", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"asinh", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"asinh", "", "level 4"}, 1000, "SLEEF SSE4", 0.6},
    {{"asinh", "", "level 5"}, 8, "C library", 0.8},
    {{"asinh", "", "level 5"}, 1, "C library", 2.5},
    {{"atanh", "", "level 5"}, 1000, "SLEEF AVX", 0.5},
    {{"atanh", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"atanh", "", "level 5"}, 8, "C library", 0.8},
    {{"atanh", "", "level 5"}, 1, "C library", 2.5},
    {{"asin", "", "level 5"}, 1000, "SLEEF AVX", 0.45},
    {{"asin", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"asin", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"asin", "", "level 5"}, 8, "C library", 0.8},
    {{"asin", "", "level 5"}, 1, "C library", 2.5},
    {{"acos", "", "level 5"}, 1000, "SLEEF AVX", 0.45},
    {{"acos", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"acos", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"acos", "", "level 5"}, 8, "C library", 0.8},
    {{"acos", "", "level 5"}, 1, "C library", 2.5},
    {{"atan", "", "level 5"}, 1000, "SLEEF AVX", 0.35},
    {{"atan", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"atan", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"atan", "", "level 5"}, 8, "C library", 0.8},
    {{"atan", "", "level 5"}, 1, "C library", 2.5},
    {{"atan2", "", "level 5"}, 1000, "SLEEF AVX", 0.35},
    {{"atan2", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"atan2", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"atan2", "", "level 5"}, 8, "C library", 0.8},
    {{"atan2", "", "level 5"}, 1, "C library", 2.5},
    {{"sinh", "", "level 5"}, 1000, "SLEEF AVX", 0.30},
    {{"sinh", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"sinh", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"sinh", "", "level 5"}, 8, "C library", 0.8},
    {{"sinh", "", "level 5"}, 1, "C library", 2.5},
    {{"cosh", "", "level 5"}, 1000, "SLEEF AVX", 0.30},
    {{"cosh", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"cosh", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"cosh", "", "level 5"}, 8, "C library", 0.8},
    {{"cosh", "", "level 5"}, 1, "C library", 2.5},
    {{"tanh", "", "level 5"}, 1000, "SLEEF AVX", 0.30},
    {{"tanh", "", "level 5"}, 1000, "SLEEF AVX-512", 1.0},
    {{"tanh", "", "level 1"}, 1000, "SLEEF SSE4", 0.6},
    {{"tanh", "", "level 5"}, 8, "C library", 0.8},
    {{"tanh", "", "level 5"}, 1, "C library", 2.5},
    {{"complexExp", "", "level 5"}, 1000, "C library", 0.40},
    {{"complexExp", "", "level 1"}, 1000, "C library", 0.75},
    {{"complexSin", "", "level 5"}, 1000, "C library", 0.27},
    {{"complexSin", "", "level 1"}, 1000, "C library", 0.45},
    {{"complexSin", "", "level 5"}, 4, "C library", 1.0},
    {{"complexSin", "", "level 1"}, 4, "C library", 1.0},
    {{"complexCos", "", "level 5"}, 1000, "C library", 0.27},
    {{"complexCos", "", "level 1"}, 1000, "C library", 0.45},
    {{"complexCos", "", "level 5"}, 4, "C library", 1.0},
    {{"complexCos", "", "level 1"}, 4, "C library", 1.0},
    {{"complexTan", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexSinh", "", "level 5"}, 1000, "C library", 0.27},
    {{"complexSinh", "", "level 1"}, 1000, "C library", 0.45},
    {{"complexSinh", "", "level 5"}, 4, "C library", 1.0},
    {{"complexSinh", "", "level 1"}, 4, "C library", 1.0},
    {{"complexCosh", "", "level 5"}, 1000, "C library", 0.27},
    {{"complexCosh", "", "level 1"}, 1000, "C library", 0.45},
    {{"complexCosh", "", "level 5"}, 4, "C library", 1.0},
    {{"complexCosh", "", "level 1"}, 4, "C library", 1.0},
    {{"complexTanh", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexLog10", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexPow", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexPowx", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexAsin", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexAcos", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexAtan", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexAsinh", "", "level 5"}, 1000, "C library", 3.5},
    {{"complexAcosh", "", "level 5"}, 1000, "C library", 3.5},
    {{"erf", "", "level 5"}, 1000, "SLEEF AVX", 0.15},
    {{"erf", "", "level 1"}, 1000, "SLEEF SSE4", 0.35},
    {{"erf", "", "level 5"}, 8, "C library", 0.8},
    {{"erf", "", "level 5"}, 1, "C library", 2.5},
    {{"erfInv", "", "level 5"}, 1000, "level 5", 1.5, "erf"},
    {{"erfc", "", "level 5"}, 1000, "SLEEF AVX", 0.25},
    {{"erfc", "", "level 1"}, 1000, "SLEEF SSE4", 0.35},
    {{"erfc", "", "level 5"}, 8, "C library", 0.8},
    {{"erfc", "", "level 5"}, 1, "C library", 2.5},
};

}  // namespace

void printBars(const Measurements& measurements) {
  std::printf("\nBars (time over time of the same run; only those whose both sides were measured)\n");
  for (const Bar& bar : bars) {
    const Row ours = {bar.ours.stem, bar.ours.label, bar.n},
              theirs = {bar.other ? bar.other : bar.ours.stem, bar.other ? bar.otherLabel : bar.ours.label, bar.n};
    const double time = measurements.at(ours, bar.ours.contestant), peer = measurements.at(theirs, bar.peer);
    if (time == 0 || peer == 0) continue;
    std::printf("  %-10s %-14s %-8s n = %-6d / %-13s %-7s %6.3f, at most %.2f  %s\n", bar.ours.stem, bar.ours.label,
                bar.ours.contestant, bar.n, bar.peer, bar.other ? bar.other : "", time / peer, bar.most,
                time / peer <= bar.most ? "met" : "MISSED");
  }
}

}  // namespace qorvane::bench

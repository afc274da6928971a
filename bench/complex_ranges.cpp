// The ranges over which docs/performance.md compares the complex functions with the C library's: parts that take another
// path there, or elements that their lanes leave to slower routines.
#include <limits>

#include "bench/workloads.h"

namespace qorvane::bench {
namespace {

using accuracy::Arguments, accuracy::pairs, accuracy::Range, accuracy::uniform, accuracy::whole;

constexpr Range range(std::string_view name, const Arguments& re, const Arguments& im) {
  return {"", name, pairs(re, im), {}, 0};
}
// Magnitudes from low to high, of both signs.
constexpr Arguments sized(double low, double high) { return accuracy::signedMagnitudes(low, high); }
// ±1 (1 ± 2^t), with a small other part.
constexpr Arguments nextToOne = accuracy::single(accuracy::Kind::nearUnitCircle, -50, -6);
constexpr double infinity = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
constexpr Arguments zero = uniform(0, 0), infinite = sized(infinity, infinity), within1 = uniform(-1, 1),
                    within2 = uniform(-2, 2), within20 = uniform(-20, 20), small = sized(0x1p-50, 0x1p-6),
                    tiny = sized(accuracy::smallestNormal, 0x1p-100), any = sized(0x1p-99, 0x1p99),
                    huge = sized(0x1p500, accuracy::largest);
constexpr Range nearUnitCircle = {"", "near the unit circle", accuracy::nearUnitCircle(-50, -8), {}, 0};

// The real part is the one that these functions are hyperbolic in.
constexpr Range hyperbolic[] = {
    range("parts within 20", within20, within20),
    range("parts within 1", within1, within1),
    range("parts of any size to 256", sized(0x1p-99, 256), sized(0x1p-99, 256)),
    range("parts below 2^-100", tiny, tiny),
    range("hyperbolic part 0", zero, within20),
    range("trigonometric part 0", within20, zero),
    range("hyperbolic part from 256 to 700", sized(256, 700), within20),
    range("of these, from 354 to 373", sized(354, 373), within20),
    range("hyperbolic part from 1024 up", sized(1024, accuracy::largest), within20),
    range("trigonometric part from 256 to 10^5", within20, sized(256, 1e5)),
    range("trigonometric part from 10^5 to 10^8", within20, sized(1e5, 1e8)),
    range("trigonometric part from 10^8 up", within20, sized(1e8, accuracy::largest)),
};
// The cuts are on the real axis.
constexpr Range inverse[] = {
    range("parts within 20", within20, within20),
    range("parts within 1", within1, within1),
    range("parts of any size", sized(0x1p-59, 0x1p59), sized(0x1p-59, 0x1p59)),
    range("parts below 2^-100", tiny, tiny),
    range("parts from 2^60 up", sized(0x1p60, accuracy::largest), sized(0x1p60, accuracy::largest)),
    nearUnitCircle,
    range("next to ±1 (Asinh, Atan: ±i)", nextToOne, small),
    range("near the cuts", within20, sized(0x1p-50, 0x1p-10)),
    range("on the axis of the cuts, within 20", within20, zero),
    range("the same, within 1", within1, zero),
    range("on the other axis", zero, within20),
};
constexpr Range logarithms[] = {
    range("parts within 20", within20, within20),
    range("parts of any size", any, any),
    nearUnitCircle,
    range("next to ±1", nextToOne, small),
    range("next to ±i", small, nextToOne),
    range("real numbers", within20, zero),
    range("imaginary numbers", zero, within20),
    range("one in 16 real", within20, whole(-8, 8)),
    range("a part from 2^500 up", huge, any),
    range("zeros", zero, zero),
    range("infinities", infinite, within20),
};
constexpr Range exponentials[] = {
    range("parts within 20", within20, within20),
    range("parts of any size to 512", sized(0x1p-99, 512), sized(0x1p-99, 512)),
    range("imaginary numbers", zero, within20),
    range("real numbers", within20, zero),
    range("real parts within 700", uniform(-700, 700), within20),
    range("real parts from -745 to -708", uniform(-745, -708), within20),
    range("angles from 512 to 10^5", within20, sized(512, 1e5)),
    range("angles from 10^5 to 10^8", within20, sized(1e5, 1e8)),
    range("NaNs", uniform(nan, nan), within20),
};
// Bases, exponents.
constexpr Arguments numbers = pairs(within20, within20), ordinary = pairs(within2, within2),
                    wholes = pairs(whole(-4, 4), zero), low = sized(0x1p-60, 0x1p-3);
constexpr Range powers[] = {
    range("parts within 20", numbers, ordinary),
    range("parts of any size", pairs(any, any), ordinary),
    range(nearUnitCircle.name, nearUnitCircle.arguments, ordinary),
    range("real bases", pairs(within20, zero), ordinary),
    range("imaginary bases", pairs(zero, within20), ordinary),
    range("positive bases, real exponents", pairs(uniform(0, 20), zero), pairs(within2, zero)),
    range("whole powers of negative numbers", pairs(uniform(-20, 0), zero), wholes),
    range("whole powers of ±1", pairs(sized(1, 1), zero), wholes),
    range("whole powers of ±i", pairs(zero, sized(1, 1)), wholes),
    range("exponents' parts within 50", numbers, pairs(uniform(-50, 50), uniform(-50, 50))),
    range("exponents' parts from 2^-60 to 2^-3", numbers, pairs(low, low)),
    range("a part from 2^500 up", pairs(huge, any), ordinary),
};

constexpr struct {
  std::string_view stem;
  std::span<const Range> ranges;
  bool turned;
} functions[] = {
    {"complexExp", exponentials, false}, {"complexLn", logarithms, false},   {"complexLog10", logarithms, false},
    {"complexSqrt", logarithms, false},  {"complexPow", powers, false},      {"complexPowx", powers, false},
    {"complexSin", hyperbolic, true},    {"complexCos", hyperbolic, true},   {"complexTan", hyperbolic, true},
    {"complexSinh", hyperbolic, false},  {"complexCosh", hyperbolic, false}, {"complexTanh", hyperbolic, false},
    {"complexAsin", inverse, false},     {"complexAcos", inverse, false},    {"complexAtan", inverse, true},
    {"complexAsinh", inverse, true},     {"complexAcosh", inverse, false},
};
constexpr int lengths[] = {1, 4, 1000};

}  // namespace

std::vector<Workload> complexRanges() {
  std::vector<Workload> list;
  for (const auto& [stem, ranges, turned] : functions)
    for (const Served& function : served())
      if (function.stem == stem)
        for (const Range& range : ranges) {
          std::string title = "ranges/";
          title.append(stem).append("[").append(range.name).append("]");
          list.push_back({std::move(title), &function, &range, lengths, turned});
        }
  return list;
}

}  // namespace qorvane::bench

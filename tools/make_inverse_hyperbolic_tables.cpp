// Writes hyperbolic/ln_256_tables.inc and hyperbolic/ln_64_tables.inc: logarithms and reciprocals
// of 1 + i/256, for arithmetic in extended precision, and of short reciprocals of 1 + i/64, for
// arithmetic in pairs of numbers; hyperbolic/half_log_tables.inc; and
// hyperbolic/log_of_sum_tables.inc, reciprocals whose logarithms are nearly short.
#include <algorithm>
#include <cmath>

#include "tools/table_writer.h"

namespace {
using namespace tables;

void writeTable256(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_inverse_hyperbolic_tables.cpp.\n\n"
               "// Row i, x = 1 + i/256: high = ln(x) cut toward zero, low = RN(ln(x) - high), RN(1/x), 0\n"
               "alignas(64) constexpr Float64 lnTable256[256][4] = {\n");
  for (int i = 0; i < 256; ++i) {
    const Exact x = 1 + i / 256.0, log = call(mpfr_log, x);
    const double reciprocal = nearest(Exact(1) / x), high = mpfr_get_d(log.value, MPFR_RNDZ);
    // Row 1 has a low part 3 units off, 2^-116: the bits of results are defined with it.
    const double low = i == 1 ? number(0x3c02821ad5a6d350) : nearest(log - Exact(high));
    if (i == 1)
      require(0x3f6ff00aa2b10bc0, high, "lnTable256", i), require(0x3fefe01fe01fe020, reciprocal, "lnTable256", i);
    if (i == 128) {
      require(0x3fd9f323ecbf984b, high, "lnTable256", i), require(0x3c8e56d1aecde80a, low, "lnTable256", i);
      require(0x3fe5555555555555, reciprocal, "lnTable256", i);
    }
    writeRow(out, {high, low, reciprocal, 0});
  }
  std::fprintf(out, "};\n");
}

void writeTable64(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_inverse_hyperbolic_tables.cpp.\n\n"
               "// Row i, c = 1 / (1 + i/64) to 11 significant bits: c/2, high = -ln(c) to a multiple of 2^-37,\n"
               "// of 2^-42 in row 64, low = RN(-ln(c) - high), 0. A row's reciprocal serves significands in [2, 4).\n"
               "alignas(64) constexpr Float64 lnTable64[65][4] = {\n");
  for (int i = 0; i <= 64; ++i) {
    const Exact reciprocal = roundSignificant(Exact(1) / Exact(1 + i / 64.0), 11);
    const Exact log = -call(mpfr_log, reciprocal);
    const double c = nearest(reciprocal), high = nearest(roundToUnit(log, i == 64 ? -42 : -37)) + 0.0,
                 low = nearest(log - Exact(high)) + 0.0;
    if (i == 1) {
      require(0x3fef800000000000, c, "lnTable64", i), require(0x3f90205658a00000, high, "lnTable64", i);
      require(0xbd894f716c1b8bdf, low, "lnTable64", i);
    }
    if (i == 64) {
      require(0x3fe0000000000000, c, "lnTable64", i), require(0x3fe62e42fefa3800, high, "lnTable64", i);
      require(0x3d2ef35793c76730, low, "lnTable64", i);
    }
    writeRow(out, {c / 2, high, low, 0});
  }
  std::fprintf(out, "};\n");
}

void writeHalfLogs(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_inverse_hyperbolic_tables.cpp.\n\n"
               "// Row i, x = 1 + i/128: high = -ln(x)/2 to a multiple of 2^-44, low = RN(-ln(x)/2 - high)\n"
               "alignas(64) constexpr Float64 halfLogTable[128][2] = {\n");
  for (int i = 0; i < 128; ++i) {
    const Exact value = call(mpfr_log, Exact(1 + i / 128.0)) / Exact(-2), high = roundToUnit(value, -44);
    writeRow(out, {nearest(high) + 0.0, nearest(value - high) + 0.0});
  }
  std::fprintf(out, "};\n");
}

Exact minusLog(int64_t c) { return -call(mpfr_log, Exact(std::ldexp(static_cast<double>(c), -32))); }

// What x is beyond an integer, in units of 2^-64: sums and differences of such numbers wrap around.
uint64_t fraction(const Exact& x) {
  return mpfr_get_ui(((x - roundToUnit(x, 0, MPFR_RNDD)) * 0x1p64).value, MPFR_RNDD);
}
uint64_t fraction(long double x) { return static_cast<uint64_t>(static_cast<int64_t>((x - std::rint(x)) * 0x1p64L)); }

// One logarithm in a million is nearly a multiple of 2^-47. In each block of candidates the first one's
// is exact, and the next ones' come from its three differences, good to 2^-30 of that unit.
void writeLogsOfSum(FILE* out) {
  std::fprintf(
      out,
      "// Written by tools/make_inverse_hyperbolic_tables.cpp.\n\n"
      "// Row i: c/2, and -ln(c) to a multiple of 2^-47, which is within 2^-65.89 of it: c is that multiple of\n"
      "// 2^-32 within 2^-12 of 1 / (1 + (i + 1/2)/256), relatively, whose logarithm is nearest to one of 2^-47.\n"
      "alignas(64) constexpr Float64 logOfSumTable[256][2] = {\n");
  for (int i = 0; i < 256; ++i) {
    const int64_t middle = std::llround(std::ldexp(1 / (1 + (i + 0.5) / 256), 32)), last = middle + (middle >> 12);
    uint64_t least = ~uint64_t{0};
    int64_t best = middle;
    for (int64_t c = middle - (middle >> 12); c <= last;) {
      const long double h = 1 / static_cast<long double>(c), h2 = h * h, h3 = h2 * h;
      uint64_t value = fraction(minusLog(c) * 0x1p47), first = fraction((h2 / 2 - h - h3 / 3) * 0x1p47L);
      uint64_t second = fraction((h2 - 2 * h3) * 0x1p47L);
      const uint64_t third = fraction(-2 * h3 * 0x1p47L);
      for (const int64_t end = std::min(c + 4096, last + 1); c < end; ++c) {
        const uint64_t distance = std::min(value, -value);
        if (distance < least) least = distance, best = c;
        value += first, first += second, second += third;
      }
    }
    writeRow(out, {std::ldexp(static_cast<double>(best), -33), nearest(roundToUnit(minusLog(best), -47))});
  }
  std::fprintf(out, "};\n");
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"ln_256_tables.inc", writeTable256},
                              {"ln_64_tables.inc", writeTable64},
                              {"half_log_tables.inc", writeHalfLogs},
                              {"log_of_sum_tables.inc", writeLogsOfSum}});
}

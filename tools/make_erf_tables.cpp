// Writes the tables of errorfn/: fits of erf, of its inverse and of exp(a^2) erfc(a) on many short
// intervals. All are polynomials of least relative error; their coefficients are rounded at the
// end, each by itself.
#include <cmath>

#include "tools/minimax.h"

namespace {
using namespace tables;

// A slot that is known from elsewhere. It is kept where the fit comes out a little otherwise, which
// it may do in low parts and in high coefficients, where thousands of units don't count; a larger
// difference is a mistake.
struct Known {
  int row, slot;
  uint64_t bits;
};
constexpr int64_t allowedUnits = 4096;

void keepKnown(const char* name, int row, std::vector<double>& slots, std::initializer_list<Known> knownSlots) {
  for (const Known& known : knownSlots) {
    if (known.row != row) continue;
    const int64_t units = static_cast<int64_t>(pattern(slots[known.slot]) - known.bits);
    if (units > allowedUnits || units < -allowedUnits) require(known.bits, slots[known.slot], name, row);
    slots[known.slot] = number(known.bits);
  }
}

void writeLongRow(FILE* out, const std::vector<double>& slots) {
  std::fprintf(out, "  {");
  for (size_t k = 0; k < slots.size(); ++k)
    std::fprintf(out, "%sfromBits(0x%016" PRIx64 ")", k == 0 ? "" : k % 4 == 0 ? ",\n   " : ", ", pattern(slots[k]));
  std::fprintf(out, "},\n");
}

double truncated(const Exact& x, int bits) { return nearest(roundSignificant(x, bits, MPFR_RNDZ)); }

Exact twoOverRootPi() {
  Exact pi;
  mpfr_const_pi(pi.value, MPFR_RNDN);
  return Exact(2) / call(mpfr_sqrt, pi);
}

// Where row 1 to 45 begins: eight rows a binade.
double erfRowBegin(int row) { return number(static_cast<uint64_t>(0x3fbe0000 + row * 0x20000) << 32); }
constexpr uint64_t erfRoundsToOneFrom = 0x4017afb48dc96627;

// slots 2 to 11: the coefficients of u to u^10. Row 0 has no value at its centre and the exact
// slope.
void fitErfAtZero(std::vector<double>& slots) {
  const Interval interval = {0, 0.125};
  const Polynomial f = interpolate([](const Exact& u) { return call(mpfr_erf, u) / u; }, interval, 30);
  const Polynomial p = fitRelative(f, {twoOverRootPi()}, 2, 9, interval);
  for (int k = 0; k < 10; ++k) slots[k + 2] = nearest(p[k]);
}

void fitErf(int row, std::vector<double>& slots) {
  const double low = erfRowBegin(row), high = row == 44 ? number(erfRoundsToOneFrom) : erfRowBegin(row + 1);
  const double centre = nearest((Exact(low) + Exact(high)) / 2);
  const Interval interval = {Exact(low) - centre, Exact(high) - centre};
  const Polynomial f = interpolate([=](const Exact& u) { return call(mpfr_erf, centre + u); }, interval, 40);
  const Polynomial p = fitRelative(f, {}, 0, 10, interval);
  slots[1] = truncated(p[0], 53);
  slots[0] = nearest(p[0] - slots[1]);
  for (int k = 1; k <= 10; ++k) slots[k + 1] = nearest(p[k]);
  slots[12] = -centre;
}

void writeErfTables(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_erf_tables.cpp.\n\n"
               "// Row 0: |x| < 1/8. Rows 1 to 44: eight a binade, up to 6. Row 45: from 6 up.\n"
               "// With u = |x| + slot 12, erf|x| = slot 1 + slot 0 + slot 2 * u + ... + slot 11 * u^10.\n"
               "alignas(64) constexpr Float64 erfRows[46][16] = {\n");
  const std::initializer_list<Known> known = {
      {0, 2, 0x3ff20dd750429b6d},  {0, 4, 0xbfd812746b036d44},  {0, 6, 0x3fbce2f223001aff},
      {1, 0, 0x3c39587ffb20c7e1},  {1, 1, 0x3fc311fc15f56d14},  {1, 2, 0x3ff1bd07cdd189ac},
      {1, 12, 0xbfc1000000000000}, {2, 0, 0x3c65e6e9b9bbf407},  {2, 1, 0x3fc548642321d7c6},
      {2, 2, 0x3ff1a91e5a748165},  {2, 12, 0xbfc3000000000000}, {20, 0, 0x3c898fdddad0b2f4},
      {20, 1, 0x3fe61955607dd15d}, {20, 2, 0x3fe58a445da7c74c}, {20, 12, 0xbfe7000000000000},
      {44, 0, 0x3c9f8b5498f87987}, {44, 1, 0x3feffffffffffff9}, {44, 2, 0x3d016dc7d9a4732d},
      {44, 12, 0xc016d7da46e4b314}};
  for (int row = 0; row < 46; ++row) {
    std::vector<double> slots(16);
    if (row == 0) fitErfAtZero(slots);
    if (row >= 1 && row <= 44) fitErf(row, slots);
    if (row == 45) slots[1] = 1;
    keepKnown("erfRows", row, slots, known);
    writeLongRow(out, slots);
  }
  std::fprintf(out, "};\n");
}

// The y with erfc(y) = w, w in (0, 1).
Exact inverseErfc(const Exact& w) {
  const double target = nearest(w);
  double y = 0;
  for (double step = 4; step > 1e-12; step /= 2)
    if (std::erfc(y + step) > target) y += step;
  Exact root = y;
  for (int i = 0; i < 5; ++i) {  // Newton's method doubles the digits: from 36 bits to more than 300
    const Exact slope = twoOverRootPi() * call(mpfr_exp, -(root * root));
    root = root + (call(mpfr_erfc, root) - w) / slope;
  }
  return root;
}

void writeErfInvTables(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_erf_tables.cpp.\n\n"
               "// Row i: the i-th quarter binade of w = 1 - |x| below 1, with the distance t in [-1/8, 1/8]\n"
               "// from its middle in units of its binade. erfinv(x) / x = F15 + F16 * t +\n"
               "// (F0 + F1 * t + ... + F14 * t^14); F15 and F16 have 26 bits.\n"
               "alignas(64) constexpr Float64 erfInvRows[212][17] = {\n");
  const std::initializer_list<Known> known = {
      {0, 0, 0x3e2597e16ee728c9},   {0, 1, 0x3dcb07c7a181557b},    {0, 2, 0x3fae153d5b9946f6},
      {0, 3, 0xbf708b9ca446b940},   {0, 15, 0x3fec636950000000},   {0, 16, 0xbf8dd36898000000},
      {211, 0, 0x3e37ea3f46f987cf}, {211, 15, 0x40176a2948000000}, {211, 16, 0xbfb32a3aa0000000}};
  for (int row = 0; row < 212; ++row) {
    const int quarter = 3 - row % 4, exponent = -1 - row / 4;  // w = 2^exponent * (1 + quarter / 4 + 1 / 8 + t)
    Exact scale, centre = Exact(1) + Exact(quarter) / Exact(4) + Exact(0.125);
    mpfr_set_ui_2exp(scale.value, 1, exponent, MPFR_RNDN);
    const Interval interval = {Exact(-0.125), Exact(0.125)};
    const Polynomial f = interpolate(
        [&](const Exact& t) {
          const Exact w = scale * (centre + t);
          return inverseErfc(w) / (Exact(1) - w);
        },
        interval, 40);
    const Polynomial p = fitRelative(f, {}, 0, 14, interval);
    std::vector<double> slots(17);
    for (int part = 0; part < 2; ++part) {
      slots[15 + part] = nearest(roundSignificant(p[part], 26));
      slots[part] = nearest(p[part] - Exact(slots[15 + part]));
    }
    for (int k = 2; k <= 14; ++k) slots[k] = nearest(p[k]);
    keepKnown("erfInvRows", row, slots, known);
    writeLongRow(out, slots);
  }
  std::fprintf(out, "};\n");
}

void writeErfcTables(FILE* out) {
  constexpr double centres[29] = {0, 0.25, 0.3125, 0.375, 0.4375, 0.5, 0.625, 0.75, 0.875, 1,  1.25, 1.5, 1.75, 2, 2.5,
                                  3, 3.5,  4,      5,     6,      7,   8,     10,   12,    14, 16,   20,  24,   28};
  std::fprintf(out,
               "// Written by tools/make_erf_tables.cpp.\n\n"
               "// Row 0: a < 1/4. Rows 1 to 27: four a binade, up to 28. With the distance t from the row's\n"
               "// lower end, exp(a^2) erfc(a) = slot 1 + slot 0 + (slot 3 + slot 2) * t + slot 4 * t^2 + ...\n"
               "// + slot 15 * t^13; the low 33 bits of slots 1 and 3 are clear.\n"
               "alignas(64) constexpr Float64 erfcRows[28][16] = {\n");
  const std::initializer_list<Known> known = {
      {0, 0, 0x3eafffffffffffe6},  {0, 1, 0x3feffffe00000000},  {0, 2, 0xbeb50429b6d0c1d5},
      {0, 3, 0xbff20dd600000000},  {0, 4, 0x3feffffffffffff5},  {1, 0, 0x3eacda2ea91e4c1a},
      {1, 1, 0x3fe8a6ac00000000},  {1, 2, 0xbeab9b3c19130fba},  {1, 3, 0xbfe7c85600000000},
      {1, 4, 0x3fe2b497df35fa2e},  {13, 0, 0x3e91b52c775ec42a}, {13, 1, 0x3fd0586600000000},
      {13, 2, 0xbe74efd3f72141e8}, {13, 3, 0xbfbb570200000000}, {13, 4, 0x3fa5672b9ea13da2},
      {27, 0, 0x3e411a78c3ffe56f}, {27, 1, 0x3f980d1e00000000}, {27, 2, 0xbe01e36a8918353c},
      {27, 3, 0xbf5001a600000000}, {27, 4, 0x3f054964558f642d}};
  for (int row = 0; row < 28; ++row) {
    const Exact centre = centres[row];
    const Interval interval = {-Exact(1) / Exact(10000), Exact(centres[row + 1]) - centre + Exact(1) / Exact(10000)};
    const Polynomial f = interpolate(
        [&](const Exact& t) {
          const Exact a = centre + t;
          return call(mpfr_erfc, a) * call(mpfr_exp, a * a);
        },
        interval, 45);
    const Polynomial p = fitRelative(f, {}, 0, 13, interval);
    std::vector<double> slots(16);
    for (int part = 0; part < 2; ++part) {
      slots[2 * part + 1] = number(pattern(truncated(p[part], 53)) >> 33 << 33);
      slots[2 * part] = nearest(p[part] - Exact(slots[2 * part + 1]));
    }
    for (int k = 2; k <= 13; ++k) slots[k + 2] = nearest(p[k]);
    keepKnown("erfcRows", row, slots, known);
    writeLongRow(out, slots);
  }
  std::fprintf(
      out,
      "};\n\n// Row j, {high, low}: high = 2^(j/128) to the nearest multiple of 2^-25, low = RN(2^(j/128) - high)\n"
      "alignas(64) constexpr Float64 erfcExpTable[128][2] = {\n");
  const std::initializer_list<Known> knownPowers = {{1, 0, 0x3ff0163da8000000},  {1, 1, 0x3e3fb33356d84a67},
                                                    {2, 0, 0x3ff02c9a40000000},  {2, 1, 0xbe3887f9f1190835},
                                                    {64, 0, 0x3ff6a09e68000000}, {64, 1, 0xbe380c4336f74d05}};
  for (int j = 0; j < 128; ++j) {
    const Exact exact = call(mpfr_exp2, Exact(j) / Exact(128)), high = roundToUnit(exact, -25);
    std::vector<double> row = {nearest(high), nearest(exact - high)};
    for (const Known& slot : knownPowers)
      if (slot.row == j) require(slot.bits, row[slot.slot], "erfcExpTable", j);
    writeRow(out, {row[0], row[1]});
  }
  std::fprintf(out, "};\n");
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"erf_tables.inc", writeErfTables},
                              {"erfinv_tables.inc", writeErfInvTables},
                              {"erfc_tables.inc", writeErfcTables}});
}

// Writes hyperbolic/cosh_tables.inc, sinh_tables.inc and tanh_tables.inc.
#include "tools/fit_polynomial.h"

namespace {
using namespace tables;

Exact ln2() {
  Exact r;
  mpfr_const_log2(r.value, MPFR_RNDN);
  return r;
}
Exact powerOfTwo(int n) { return Exact(__builtin_ldexp(1.0, n)); }

// A row over several lines. Zeros are written +0.
void writeWideRow(FILE* out, const double* columns, int count) {
  for (int i = 0; i < count; ++i) {
    const char* const before = i == 0 ? "  {" : i % 4 == 0 ? "   " : " ";
    std::fprintf(out, "%sfromBits(0x%016" PRIx64 ")%s", before, pattern(columns[i] == 0 ? 0.0 : columns[i]),
                 i == count - 1 ? "},\n"
                 : i % 4 == 3   ? ",\n"
                                : ",");
  }
}

void writeCosh(FILE* out) {
  const auto half = [](int j) { return call(mpfr_exp2, Exact(j) / Exact(128)) / Exact(2); };
  std::fprintf(out,
               "// Written by tools/make_hyperbolic_tables.cpp.\n\n"
               "// Row j: high = RN(2^(j/128) / 2), low = RN(2^(j/128) / 2 - high)\n"
               "alignas(64) constexpr Float64 coshTable128[128][2] = {\n");
  for (int j = 0; j < 128; ++j) {
    const double high = nearest(half(j)), low = nearest(half(j) - Exact(high));
    if (j == 1) require(0x3fe0163da9fb3335, high, "coshTable128", j);
    if (j == 1) require(0x3c8b61299ab8cdb7, low, "coshTable128", j);
    writeRow(out, {high, low});
  }
  std::fprintf(out,
               "};\n\n"
               "// RN(2^(-j/128) / 2)\n"
               "alignas(64) constexpr Float64 coshInverseTable128[128] = {\n");
  for (int j = 0; j < 128; ++j) {
    const double inverse = nearest(half(-j));
    if (j == 1) require(0x3fdfd3c22b8f71f1, inverse, "coshInverseTable128", j);
    std::fprintf(out, "  fromBits(0x%016" PRIx64 "),\n", pattern(inverse));
  }
  std::fprintf(out, "};\n");
}

struct SinhRow {
  double e[8];
};

// sinh(m + r) = e0 + e1 r + ... + e7 r^7 about m = i ln 2 / 8. e0 and e1 are rounded first and e2
// to e7 fitted to what they leave, so that away from m the higher terms make up for the error of
// e0, which would be up to half a unit in the last place of the result everywhere. Least squares of
// the relative error: they give 8 % of the results another last bit than the exact one, and the
// largest error of the kernel 0.99 ulp; the fit with the least largest error of the polynomial
// gives 14 % and 1.18 ulp, because what it minimises then stands at m, where no other term reaches
// it.
SinhRow fitSinh(int i, const std::vector<Exact>& nodes) {
  const Exact middle = Exact(i) * ln2() / Exact(8), halfWidth = ln2() / Exact(16);
  // Multiples of ln 2 have the exact values (2^n - 2^-n) / 2 and (2^n + 2^-n) / 2; the sine of row
  // 216 is a tie.
  const bool isWhole = i % 8 == 0;
  const Exact up = powerOfTwo(i / 8 - 1), down = powerOfTwo(-i / 8 - 1);
  SinhRow row = {
      {nearest(isWhole ? up - down : call(mpfr_sinh, middle)), nearest(isWhole ? up + down : call(mpfr_cosh, middle))}};
  std::vector<Sample> samples;
  for (const Exact& node : nodes) {
    const Exact r = node * halfWidth, value = call(mpfr_sinh, middle + r);
    samples.push_back({node, value - Exact(row.e[0]) - Exact(row.e[1]) * r, Exact(1) / value});
  }
  const std::vector<Exact> c = leastSquares(samples, 2, 7);
  for (int k = 2; k < 8; ++k) row.e[k] = nearest(c[k - 2] / integerPower(halfWidth, k));
  return row;
}

void writeSinh(FILE* out) {
  // Rows 0 and 1 are an odd series in a itself, e0 + e1 a + a^3 (e2 + e3 a^2 + ... + e7 a^10), for
  // a up to 3 ln 2 / 16; these and row 2 were fitted before.
  constexpr uint64_t given[3][8] = {
      {0, 0x3ff0000000000000, 0x3fc5555555555555, 0x3f81111111111f3e,  //
       0x3f2a01a016b6dd67, 0x3ec71e3c853d177f, 0x3e522e9439e95d3d, 0x3e84b525531b70dc},
      {0x3b792ed7a4eb7f9f, 0x3ff0000000000000, 0x3fc5555555555555, 0x3f81111111111a4d,  //
       0x3f2a01a01850be39, 0x3ec71e0ae7094157, 0x3e576ddf40ac3213, 0x3e6e9ecfe4c85d2f},
      {0x3fc64ab8f61134fa, 0x3ff03da6eb6f9076, 0x3fb64ab8f61135c3, 0x3fc5a78939ea0b7e,  //
       0x3f7db8f69c6fe818, 0x3f8152d43101f555, 0x3f2fb4b93d671dfa, 0x3f2a653b035954f8},
  };
  std::fprintf(out,
               "// Written by tools/make_hyperbolic_tables.cpp.\n\n"
               "// Row i, e0 to e7: about m = i ln 2 / 8, sinh(m + r) = e0 + e1 r + e2 r^2 + ... + e7 r^7 with\n"
               "// e0 = RN(sinh m), e1 = RN(cosh m). Rows 0 and 1 are for the argument a itself:\n"
               "// sinh a = e0 + e1 a + a^3 (e2 + e3 a^2 + ... + e7 a^10).\n"
               "alignas(64) constexpr Float64 sinhPolyTable[256][8] = {\n");
  const std::vector<Exact> nodes = chebyshevNodes(24);
  for (int i = 0; i < 256; ++i) {
    SinhRow row;
    if (i >= 2) row = fitSinh(i, nodes);
    if (i == 2)
      require(given[2][0], row.e[0], "sinhPolyTable e0", i), require(given[2][1], row.e[1], "sinhPolyTable e1", i);
    if (i < 3)
      for (int k = 0; k < 8; ++k) row.e[k] = number(given[i][k]);
    if (i == 8)
      require(pattern(0.75), row.e[0], "sinhPolyTable e0", i), require(pattern(1.25), row.e[1], "sinhPolyTable e1", i);
    if (i == 216) require(0x4190000000000000, row.e[0], "sinhPolyTable e0", i);
    if (i == 248)
      require(0x41d0000000000000, row.e[0], "sinhPolyTable e0", i),
          require(0x41d0000000000000, row.e[1], "sinhPolyTable e1", i);
    writeWideRow(out, row.e, 8);
  }
  std::fprintf(out, "};\n");
}

struct TanhRow {
  double column[16];
};

// tanh(centre + t) = B + C + A t + k2 t^2 + ... + k10 t^10 with the least largest relative error.
// Coefficients are rounded one after the other, and the higher ones fitted to what that leaves, as
// long as it matters.
TanhRow fitTanh(int i, const std::vector<Exact>& nodes) {
  const auto start = [](int row) { return number(uint64_t{0x3fbe0000 + (static_cast<uint64_t>(row) << 17)} << 32); };
  const double centre = (start(i) + start(i + 1)) / 2;
  const Exact halfWidth((start(i + 1) - start(i)) / 2);
  const Exact value = call(mpfr_tanh, Exact(centre)), high(nearest(value));
  // The low part of row 1 was fitted before: it is 6e-30 from the remainder.
  const Exact low(i == 1 ? number(0x3c3708a564fad29a) : nearest(value - high));
  TanhRow row = {{nearest(low), nearest(high), nearest(Exact(1) - value * value)}};

  std::vector<Sample> samples;
  for (const Exact& node : nodes) {
    const Exact t = node * halfWidth, v = call(mpfr_tanh, Exact(centre) + t);
    samples.push_back({node, v - high - low - Exact(row.column[2]) * t, Exact(1) / v});
  }
  constexpr int degree = 10, lastRoundedAlone = 4, turns = 50;
  for (int k = 2; k <= degree; ++k) {
    const bool last = k > lastRoundedAlone;
    const std::vector<Exact> c = leastMaximum(samples, k, degree, turns);
    for (int n = k; n <= (last ? degree : k); ++n) row.column[n + 1] = nearest(c[n - k] / integerPower(halfWidth, n));
    if (last) break;
    for (Sample& s : samples) s.target = s.target - Exact(row.column[k + 1]) * integerPower(halfWidth * s.node, k);
  }
  row.column[12] = -centre;
  row.column[13] = 1;
  return row;
}

void writeTanh(FILE* out) {
  // Row 0 serves magnitudes below 0.125 and was fitted before.
  const TanhRow first = {{0, 0, 1, number(0xbd197dead79668d3), number(0xbfd555555553af3c), number(0xbe052f7cca134846),
                          number(0x3fc11111563849d6), number(0xbeb038623673ffb2), number(0xbfab9f685e64022e),
                          number(0xbf2a54e2b28f2207), number(0x3f97cfb9328a230e), number(0xbf75ca6d61723e02), 0, 1}};
  const TanhRow one = {{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}};
  std::fprintf(
      out,
      "// Written by tools/make_hyperbolic_tables.cpp.\n\n"
      "// Row i, for magnitudes with high words from 0x3fbe0000 + (i << 17) up to those of the next row: about\n"
      "// their middle, tanh(middle + t) = B + C + A t + k2 t^2 + ... + k10 t^10.\n"
      "//   C, B, A, k2 / k3 to k6 / k7 to k10 / -middle, 1.0, 0, 0\n"
      "// Row 0 serves all smaller magnitudes, about 0; row 59 serves all from 20 up, where tanh rounds to 1.\n"
      "alignas(128) constexpr Float64 tanhPolyTable[60][16] = {\n");
  const std::vector<Exact> nodes = chebyshevNodes(50);
  for (int i = 0; i < 60; ++i) {
    const TanhRow row = i == 0 ? first : i == 59 ? one : fitTanh(i, nodes);
    if (i == 1) {
      require(0x3fc0e6973998da48, row.column[1], "tanhPolyTable B", i);
      require(0x3fef712eb25c0888, row.column[2], "tanhPolyTable A", i);
      require(0xbfc1000000000000, row.column[12], "tanhPolyTable -middle", i);
    }
    writeWideRow(out, row.column, 16);
  }
  std::fprintf(out, "};\n");
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(
      count, arguments,
      {{"cosh_tables.inc", writeCosh}, {"sinh_tables.inc", writeSinh}, {"tanh_tables.inc", writeTanh}});
}

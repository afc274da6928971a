// Writes the tables of the complex functions: those of the kernels in extended precision in
// complex/extended/, and those of the vector kernel of Exp in complex/.
#include <cmath>
#include <vector>

#include "tools/extended_tables.h"

namespace {
using namespace tables;

void beginTable(FILE* out, const char* comment) {
  std::fprintf(out, "// Written by tools/make_complex_tables.cpp.\n\n%s\n", comment);
}

void writeExp256(FILE* out) {
  beginTable(out,
             "// Row j + 128: 2^(j/256) as high and low part, the high part to the nearest number of 32 bits (in\n"
             "// row 127 + 128 the next one above), the low part rounded to nearest.\n"
             "const ExpRow expTable256[257] = {");
  for (int j = -128; j <= 128; ++j) {
    const Exact exact = call(mpfr_exp2, Exact(j) / Exact(256));
    Exact high = roundSignificant(exact, 32);
    if (j == 127) high = high + Exact(std::ldexp(1.0, -31));
    const double low = nearest(exact - high);
    const struct {
      int row;
      uint64_t high, low;
    } known[] = {{-128, 0x3fe6a09e66800000, 0xbd98866dee9a09d9},
                 {0, 0x3ff0000000000000, 0},
                 {1, 0x3ff00b1afa600000, 0xbdd50d04a7b5953b},
                 {127, 0x3ff690f4b1c00000, 0xbe00b563e7fb4265},
                 {128, 0x3ff6a09e66800000, 0xbda8866dee9a09d9}};
    for (const auto& k : known)
      if (k.row == j) require(k.high, nearest(high), "expTable256", j), require(k.low, low, "expTable256", j);
    writeRow(out, {nearest(high), low});
  }
  std::fprintf(out, "};\n");
}

void writeFourOverPi(FILE* out) {
  constexpr int words = 262;
  beginTable(out,
             "// 4/pi: the integer part, and the fraction in words of 64 bits, for the exponents of all\n"
             "// extended-precision numbers.\n"
             "alignas(64) constexpr uint64_t fourOverPi[] = {");
  mpfr_t value;
  mpfr_init2(value, 64 * words + 64);
  mpfr_const_pi(value, MPFR_RNDN);
  mpfr_ui_div(value, 4, value, MPFR_RNDN);
  mpfr_mul_2si(value, value, 64 * (words - 1), MPFR_RNDN);
  mpz_t digits, word;
  mpz_inits(digits, word, nullptr);
  mpfr_get_z(digits, value, MPFR_RNDD);
  for (int i = 0; i < words; ++i) {
    mpz_fdiv_q_2exp(word, digits, static_cast<mp_bitcnt_t>(64 * (words - 1 - i)));
    mpz_fdiv_r_2exp(word, word, 64);
    std::fprintf(out, "%s0x%016" PRIx64 ",%s", i % 5 == 0 ? "  " : " ", mpz_get_ui(word),
                 i % 5 == 4 || i == words - 1 ? "\n" : "");
  }
  std::fprintf(out, "};\n");
  mpz_clears(digits, word, nullptr);
  mpfr_clear(value);
}

void writeTan(FILE* out) {
  beginTable(out,
             "// Row i: tan(i pi/32) as high and low part, the high part to the nearest number of 32 bits, the low\n"
             "// part rounded to nearest.\n"
             "const TanRow tanTable[9] = {");
  for (int i = 0; i <= 8; ++i) {
    const Exact exact = i == 8 ? Exact(1) : call(mpfr_tan, pi() * Exact(i) / Exact(32)),
                high = roundSignificant(exact, 32);
    writeRow(out, {nearest(high), nearest(exact - high)});
  }
  std::fprintf(out, "};\n");
}

// (tanh x - x) / x^3 as a function of t = x^2.
Exact tanhSeries(const Exact& t) {
  const Exact x = call(mpfr_sqrt, t);
  return (call(mpfr_tanh, x) - x) / (x * t);
}

void writeTanhTail(FILE* out) {
  constexpr int count = 14;
  beginTable(out,
             "// The coefficients of x^3, x^5, ..., x^29 of tanh x on [0, 0.5], those of x^3 and x^5 less -1365/4096\n"
             "// and 273/2048; the polynomial's error is below 2^-76 of tanh x.\n"
             "constexpr Constant tanhTail[14] = {");
  std::vector<Exact> c = interpolate(tanhSeries, count, Exact(0), Exact(0.25));
  c[0] = c[0] + Exact(1365) / Exact(4096);
  c[1] = c[1] - Exact(273) / Exact(2048);
  for (int i = 0; i < count; ++i)
    std::fprintf(out, "  %s,  // %.12g, of x^%d\n", extendedText(c[i]).c_str(), nearest(c[i]), 2 * i + 3);
  std::fprintf(out, "};\n");
}

// The sine of j pi/32, exactly zero where it is zero.
Exact sineOfThirtySeconds(int j) { return j % 32 == 0 ? Exact(0) : call(mpfr_sin, pi() * Exact(j) / Exact(32)); }

void writeExpTables(FILE* out) {
  beginTable(out,
             "// Row j: Th = RN(2^(j/64)), and RN((2^(j/64) - Th) / Th).\n"
             "alignas(64) constexpr Float64 expTable64[64][2] = {");
  for (int j = 0; j < 64; ++j) {
    const Exact exact = call(mpfr_exp2, Exact(j) / Exact(64)), high(nearest(exact));
    writeRow(out, {nearest(high), nearest((exact - high) / high)});
  }
  std::fprintf(out,
               "};\n\n"
               "// Row j, t = j pi/32: cos t - Ch, Sh = RN(sin t), sin t - Sh, and Ch, which is cos t rounded to the\n"
               "// nearest power of two; exact zeros where sine and cosine are zero. 16 rows more repeat the first.\n"
               "alignas(64) constexpr Float64 sineTable64[80][4] = {\n");
  for (int j = 0; j < 80; ++j) {
    const Exact s = sineOfThirtySeconds(j), c = sineOfThirtySeconds(j + 16);
    const Exact sineHi(nearest(s)), cosineHi = roundSignificant(c, 1);
    writeRow(out, {nearest(c - cosineHi), nearest(sineHi), nearest(s - sineHi), nearest(cosineHi)});
  }
  std::fprintf(out, "};\n");
}

// The number as a head of 26 bits and the rest, two numbers of a row.
void putPair(std::vector<double>& row, const Exact& x) {
  const Exact head = roundSignificant(x, 26);
  row.push_back(nearest(head)), row.push_back(nearest(x - head));
}

void writeCertifiedTables(FILE* out) {
  beginTable(out,
             "// Row j: 2^(j/64) and 2^(-j/64), each as its nearest number of 26 bits and the rest.\n"
             "const HyperbolicRow hyperbolicRows[64] = {");
  for (int j = 0; j < 64; ++j) {
    std::vector<double> row;
    for (const int n : {j, -j}) putPair(row, call(mpfr_exp2, Exact(n) / Exact(64)));
    writeRow(out, {row[0], row[1], row[2], row[3]});
  }
  std::fprintf(out,
               "};\n\n"
               "// Row j: sine and cosine of j pi/256, likewise; exact zeros where they are zero.\n"
               "const TrigonometricRow trigonometricRows[512] = {\n");
  for (int j = 0; j < 512; ++j) {
    std::vector<double> row;
    for (const int n : {j, j + 128})
      putPair(row, n % 256 == 0 ? Exact(0) : call(mpfr_sin, pi() * Exact(n) / Exact(256)));
    writeRow(out, {row[0], row[1], row[2], row[3]});
  }
  std::fprintf(out, "};\n");
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"exp_256_table.inc", writeExp256},
                              {"four_over_pi_table.inc", writeFourOverPi},
                              {"tan_table.inc", writeTan},
                              {"tanh_tail_table.inc", writeTanhTail},
                              {"complex_exp_tables.inc", writeExpTables},
                              {"certified_tables.inc", writeCertifiedTables}});
}

// Writes the split sines and cosines, trig/sin_cos_tables.inc for levels 1 to 4 and
// trig/sin_cos_512_tables.inc for level 5, and the bits of 4/pi and 1/(2 pi) that the reductions of
// large arguments read, trig/pi_over_2_tables.inc and trig/revolutions_tables.inc.
#include <cmath>

#include "tools/table_writer.h"

namespace {
using namespace tables;

Exact pi() {
  Exact r;
  mpfr_const_pi(r.value, MPFR_RNDN);
  return r;
}

// sin(2 pi j / rows), exactly zero where it is zero.
Exact sine(int j, int rows) {
  return j % (rows / 2) == 0 ? Exact(0) : call(mpfr_sin, pi() * Exact(2.0 * j) / Exact(rows));
}
Exact cosine(int j, int rows) { return sine(j + rows / 4, rows); }

struct SplitSine {
  double sineHi, sineLo, cosineHi, cosineLo;
};
SplitSine splitSine(int j, int rows, mpfr_rnd_t cutOfSineLo) {
  const Exact s = sine(j, rows), c = cosine(j, rows);
  const double sineHi = nearest(s), cosineHi = nearest(roundSignificant(c, 1));
  return {sineHi, nearest(roundSignificant(s - Exact(sineHi), 24, cutOfSineLo)), cosineHi,
          nearest(c - Exact(cosineHi))};
}

// A quarter turn is added at the end: the cosine's row is found there without reducing its index.
void openTable(FILE* out, const char* comment, const char* name, int rows) {
  std::fprintf(out, "%s\nalignas(64) constexpr Float64 %s[%d][4] = {\n", comment, name, rows + rows / 4);
}

void writeNarrow(FILE* out, const char* comment, const char* name, int rows) {
  openTable(out, comment, name, rows);
  for (int j = 0; j < rows + rows / 4; ++j) {
    const SplitSine row = splitSine(j, rows, MPFR_RNDN);
    if (rows == 64 && j == 1) {
      require(0xbf73b92e176d6d31, row.cosineLo, name, j), require(0x3fb917a6bc29b42c, row.sineHi, name, j);
      require(0xbc3e2718e0000000, row.sineLo, name, j), require(0x3ff0000000000000, row.cosineHi, name, j);
    }
    writeRow(out, {row.cosineLo, row.sineHi, row.sineLo, row.cosineHi});
  }
  std::fprintf(out, "};\n");
}

void writeWide(FILE* out, const char* comment, const char* name) {
  constexpr int rows = 512;
  openTable(out, comment, name, rows);
  for (int j = 0; j < rows + rows / 4; ++j) {
    const SplitSine row = splitSine(j, rows, MPFR_RNDZ);
    if (j == 1) {
      require(0xbf13bd2c8da49511, row.cosineLo, name, j), require(0x3ff0000000000000, row.cosineHi, name, j);
      require(0x3f8921d1fcdec784, row.sineHi, name, j), require(0x3c29878ea0000000, row.sineLo, name, j);
    }
    writeRow(out, {row.cosineLo, row.cosineHi, row.sineHi, row.sineLo});
  }
  std::fprintf(out, "};\n");
}

constexpr const char* rowRule =
    "// Written by tools/make_trig_tables.cpp. Row j of N stands for t = 2 pi j / N:\n"
    "//   sineHi = RN(sin t), sineLo = the 24 leading bits of sin t - sineHi,\n"
    "//   cosineHi = cos t rounded to the nearest power of two (0 for 0), cosineLo = RN(cos t - cosineHi).\n"
    "// N / 4 rows more repeat the first ones.\n\n";

void writeNarrowTables(FILE* out) {
  std::fputs(rowRule, out);
  writeNarrow(out, "// N = 64: cosineLo, sineHi, sineLo (rounded to nearest), cosineHi", "trigTable64", 64);
  writeNarrow(out, "\n// N = 128: the same", "trigTable128", 128);
}

void writeWideTable(FILE* out) {
  std::fputs(rowRule, out);
  writeWide(out, "// N = 512: cosineLo, cosineHi, sineHi, sineLo (cut toward zero)", "trigTable512");
}

// floor(numerator / pi * 2^shift) modulo 2^bits, for shift up to 1300.
struct Integer {
  mpz_t value;
  Integer() { mpz_init(value); }
  Integer(const Integer&) = delete;
  Integer& operator=(const Integer&) = delete;
  ~Integer() { mpz_clear(value); }
};
void bitsOfQuotient(Integer& r, double numerator, int shift, unsigned bits) {
  mpfr_t quotient;
  mpfr_init2(quotient, 1500);
  mpfr_const_pi(quotient, MPFR_RNDN);
  mpfr_d_div(quotient, numerator, quotient, MPFR_RNDN);
  mpfr_mul_2si(quotient, quotient, shift, MPFR_RNDN);
  mpfr_get_z(r.value, quotient, MPFR_RNDD);
  mpz_fdiv_r_2exp(r.value, r.value, bits);
  mpfr_clear(quotient);
}

void writeChunks(FILE* out) {
  std::fprintf(out, "// Written by tools/make_trig_tables.cpp.\n\n");

  const char* chunks = "fourOverPiChunks";
  std::fprintf(out,
               "// 4/pi in groups of 25 bits, times 2^200: slot 1 has the integer bit and 24 bits after the point, "
               "slot k the 25 bits down to the weight\n"
               "// 2^(176 - 25 (k - 1)); slots 0, 50 and 51 are 0.\n"
               "constexpr Float64 %s[52] = {\n",
               chunks);
  for (int k = 0; k < 52; ++k) {
    Integer group;
    if (k >= 1 && k <= 49) bitsOfQuotient(group, 4, 24 + 25 * (k - 1), 25);
    const double slot = std::ldexp(mpz_get_d(group.value), 176 - 25 * (k - 1));
    if (k == 1) require(0x4c745f3060000000, slot, chunks, k);
    if (k == 2) require(0x4aeb939100000000, slot, chunks, k);
    if (k == 3) require(0x494529fc20000000, slot, chunks, k);
    if (k == 49) require(0x016aeafc20000000, slot, chunks, k);
    std::fprintf(out, "%sfromBits(0x%016" PRIx64 "),%s", k % 4 == 0 ? "  " : " ", pattern(slot),
                 k % 4 == 3 ? "\n" : "");
  }
  std::fprintf(out, "};\n");
}

void writeWords(FILE* out) {
  const char* words = "invTwoPiByExponent";
  std::fprintf(out,
               "// Written by tools/make_trig_tables.cpp.\n\n"
               "// Row e is floor(2^(e - 1075 + 192) / (2 pi)) modulo 2^192, its highest word first: what 1/(2 pi) has "
               "for an argument with the biased "
               "exponent e, once\n"
               "// whole revolutions are left out of the product.\n"
               "constexpr uint64_t %s[2048][3] = {\n",
               words);
  for (int e = 0; e < 2048; ++e) {
    Integer bits, part;
    bitsOfQuotient(bits, 0.5, e - 1075 + 192, 192);
    uint64_t row[3];
    for (unsigned i = 0; i < 3; ++i) {
      mpz_fdiv_q_2exp(part.value, bits.value, 64 * (2 - i));
      mpz_fdiv_r_2exp(part.value, part.value, 64);
      row[i] = mpz_get_ui(part.value);
    }
    const auto known = [&](int i, uint64_t expected) { require(expected, number(row[i]), words, e); };
    if (e == 800) known(0, 0), known(1, 0), known(2, 0);
    if (e == 900) known(2, 0x517c);
    if (e == 1023) known(0, 0x28b), known(1, 0xe60db9391054a7f0), known(2, 0x9d5f47d4d377036d);
    if (e == 2047) known(0, 0x9eeb1faf97c5ecf4);
    std::fprintf(out, "  {0x%016" PRIx64 ", 0x%016" PRIx64 ", 0x%016" PRIx64 "},\n", row[0], row[1], row[2]);
  }
  std::fprintf(out, "};\n");
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"sin_cos_tables.inc", writeNarrowTables},
                              {"sin_cos_512_tables.inc", writeWideTable},
                              {"pi_over_2_tables.inc", writeChunks},
                              {"revolutions_tables.inc", writeWords}});
}

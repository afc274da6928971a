// Writes explog/ln_tables.inc and explog/log10_tables.inc: short reciprocals, and the logarithms
// that belong to them, split in two.
#include "tools/table_writer.h"

namespace {
using namespace tables;

Exact ln(const Exact& x) { return call(mpfr_log, x); }
Exact log10(const Exact& x) { return call(mpfr_log10, x); }
Exact bits(uint64_t u) { return Exact(number(u)); }

const Exact lnLn2HiA = bits(0x3fe62e42fefa3800), lnLn2LoA = bits(0x3d2ef35793c76730);
const Exact lnLn2HiB = bits(0x3fe62e42fefa0000), lnLn2LoB = bits(0x3d7cf79abc9e0000);
const Exact log10Log2HiA = bits(0x3fd34413509f7800), log10Log2LoA = bits(0x3d1fef311f12b358);
const Exact log10Log2HiB = bits(0x3fd34413509f0000), log10Log2LoB = bits(0x3d7e7fbcc47c0000);
const Exact log10Log2HiS = bits(0x3fd34413509f8000), log10Log2LoS = bits(0xbd380433b83b532a);
const Exact scale(0.43359375);  // C0 = 444 / 1024, close to log10 e

// A reciprocal, and a logarithm as high + low.
struct Row {
  Exact reciprocal, high, low;
};
struct Known {
  int row;
  uint64_t reciprocal, high, low;
};

void check(const char* name, int i, const Row& row, std::initializer_list<Known> knownRows) {
  for (const Known& known : knownRows)
    if (known.row == i) {
      require(known.reciprocal, nearest(row.reciprocal), name, i);
      require(known.high, nearest(row.high), name, i);
      require(known.low, nearest(row.low), name, i);
    }
}

// All three in a row, {reciprocal, high, low}.
void writeSpecial(FILE* out, const char* comment, const char* name, Row (*rowOf)(int),
                  std::initializer_list<Known> knownRows) {
  std::fprintf(out, "%s\nalignas(64) constexpr Float64 %s[65][3] = {\n", comment, name);
  for (int i = 0; i <= 64; ++i) {
    const Row row = rowOf(i);
    check(name, i, row, knownRows);
    writeRow(out, {nearest(row.reciprocal), nearest(row.high), nearest(row.low)});
  }
  std::fprintf(out, "};\n\n");
}

// The reciprocals in a table of their own.
void writeMantissa(FILE* out, const char* reciprocalComment, const char* reciprocalName, const char* logComment,
                   const char* logName, Row (*rowOf)(int), std::initializer_list<Known> knownRows) {
  std::fprintf(out, "%s\nalignas(64) constexpr Float64 %s[513] = {\n", reciprocalComment, reciprocalName);
  for (int i = 0; i <= 512; ++i)
    std::fprintf(out, "  fromBits(0x%016" PRIx64 "),\n", pattern(nearest(rowOf(i).reciprocal)));
  std::fprintf(out, "};\n\n%s\nalignas(64) constexpr Float64 %s[513][2] = {\n", logComment, logName);
  for (int i = 0; i <= 512; ++i) {
    const Row row = rowOf(i);
    check(logName, i, row, knownRows);
    writeRow(out, {nearest(row.high), nearest(row.low)});
  }
  std::fprintf(out, "};\n\n");
}

Row lnMantissaRow(int i) {
  const Exact reciprocal = roundSignificant(Exact(512) / Exact(512 + i), 23);
  const Exact t = i % 512 == 0 ? Exact(0) : i < 256 ? -ln(reciprocal) : -ln(reciprocal) - ln(Exact(2));
  const Exact high = roundSignificant(t, 25, MPFR_RNDZ);
  return {reciprocal, high, t - high};
}

Row lnSpecialRow(int i) {
  const Exact reciprocal = roundSignificant(Exact(64) / Exact(64 + i), 11), t = -ln(reciprocal);
  if (i == 0) return {reciprocal, Exact(0), Exact(0)};
  if (i == 64) return {reciprocal, lnLn2HiA, lnLn2LoA};
  const Exact high = roundToUnit(t, -37);
  return {reciprocal, high, t - high};
}

Row log10MantissaRow(int i) {
  const Exact reciprocal = roundSignificant(Exact(512) / Exact(512 + i), 13), t = -log10(reciprocal);
  if (i == 0) return {scale, Exact(0), Exact(0)};
  if (i == 512) return {scale * reciprocal, log10Log2HiA, log10Log2LoA};
  const Exact high = roundSignificant(t, nearest(t) < 0x1p-4 ? 34 : 38, MPFR_RNDZ);
  return {scale * reciprocal, high, t - high};
}

Row log10SpecialRow(int i) {
  const Exact reciprocal = roundSignificant(Exact(64) / Exact(64 + i), 11), t = -log10(reciprocal);
  if (i == 0) return {scale, Exact(0), Exact(0)};
  if (i == 64) return {scale * reciprocal, log10Log2HiS, log10Log2LoS};
  const Exact high = roundToUnit(t, -37);
  return {scale * reciprocal, high, t - high};
}

// The logarithm of first / 2 * 2 / R less 1023 times that of 2, so that the biased exponent times
// the logarithm of 2 completes it. `t` is the logarithm of last / R; at R = last / 2 it is taken
// for log2Hi + log2Lo, which makes an argument just below 1 cancel exactly.
Row integerRow(bool isHalf, const Exact& t, const Exact& log2Hi, const Exact& log2Lo) {
  const Exact h = isHalf ? log2Hi : roundToUnit(t, -40);
  const Exact rest = isHalf ? log2Lo : t - h;
  return {Exact(0), h - Exact(1023) * log2Hi, rest - Exact(1023) * log2Lo};
}

void writeLnTables(FILE* out) {
  std::fprintf(out, "// Written by tools/make_log_tables.cpp. f stands for the significands that a row serves.\n\n");
  writeMantissa(out, "// Row i, f = 1 + i/512: RN(1/f) to 23 significant bits", "lnTableReciprocal",
                "// Row i: t = -ln(lnTableReciprocal[i]), less ln 2 from i = 256 up; {high, low}: high = t cut toward "
                "zero to 25 significant bits, low = RN(t - high)",
                "lnTableMantissa", lnMantissaRow,
                {{0, 0x3ff0000000000000, 0, 0},
                 {1, 0x3feff00800000000, 0x3f5ff7faa0000000, 0x3dc35622ccf14f08},
                 {255, 0x3fe55c7440000000, 0x3fd9ddcab0000000, 0x3e494dcedce024d8},
                 {256, 0x3fe5555540000000, 0xbfd26961d0000000, 0xbe134db72783bd62},
                 {512, 0x3fe0000000000000, 0, 0}});

  std::fprintf(out,
               "// Row R - 512 for R = 512 ... 1024, {high, low}: h = ln(1024/R) to the nearest multiple of 2^-40, "
               "high = h - 1023 HiB, low = RN(ln(1024/R) - "
               "h - 1023 LoB),\n"
               "// with ln 2 = HiB + LoB as in ln_avx.cpp; ln(1024/512) counts as exactly that, with h = HiB\n"
               "alignas(64) constexpr Float64 lnTableInteger[513][2] = {\n");
  for (int r = 512; r <= 1024; ++r) {
    const Row row = integerRow(r == 512, ln(Exact(1024) / Exact(r)), lnLn2HiB, lnLn2LoB);
    check("lnTableInteger", r, row,
          {{512, 0, 0xc086232bdd7a8300, 0xbe1ce91eef3fb100},
           {513, 0, 0xc086232fdc7ad828, 0xbe1cefcffda73b6a},
           {1023, 0, 0xc08628b56dfa36d0, 0xbe1cf2074d5ba303},
           {1024, 0, 0xc08628b76e3a4180, 0xbe1cf05cd5eed880}});
    writeRow(out, {nearest(row.high), nearest(row.low)});
  }
  std::fprintf(out, "};\n\n");

  writeSpecial(out,
               "// Row i, f = 1 + i/64, {reciprocal, high, low}: reciprocal = RN(1/f) to 11 significant bits, high = "
               "-ln(reciprocal) to the nearest multiple of 2^-37,\n"
               "// low = RN(-ln(reciprocal) - high); row 64 has ln 2 in the split of the exponent's term",
               "lnTableSpecial", lnSpecialRow,
               {{0, 0x3ff0000000000000, 0, 0},
                {1, 0x3fef800000000000, 0x3f90205658a00000, 0xbd894f716c1b8bdf},
                {64, 0x3fe0000000000000, 0x3fe62e42fefa3800, 0x3d2ef35793c76730}});
}

void writeLog10Tables(FILE* out) {
  std::fprintf(
      out,
      "// Written by tools/make_log_tables.cpp. f stands for the significands that a row serves, C0 for 444/1024.\n\n");
  writeMantissa(out, "// Row i, f = 1 + i/512: C0 times RN(1/f) to 13 significant bits", "log10TableReciprocal",
                "// Row i: t = log10(C0 / log10TableReciprocal[i]); {high, low}: high = t cut toward zero to 34 "
                "significant bits below 2^-4, to 38 from there up,\n"
                "// low = RN(t - high); row 512 has log10 2 in the split of the exponent's term",
                "log10TableMantissa", log10MantissaRow,
                {{0, 0x3fdbc00000000000, 0, 0},
                 {1, 0x3fdbb22000000000, 0x3f4bd27045b80000, 0x3d2f4092c3ad69a4},
                 {2, 0x3fdba44000000000, 0x3f5bd96a1d780000, 0x3d3672f0a347b624},
                 {255, 0x3fd285c800000000, 0x3fc678cc14c18000, 0x3d68b5e021ba1398},
                 {511, 0x3fcbc6f000000000, 0x3fd33d2150110000, 0x3d0233630c6b638c},
                 {512, 0x3fcbc00000000000, 0x3fd34413509f7800, 0x3d1fef311f12b358}});

  std::fprintf(out,
               "// {high, low} for R = 222 ... 444, of which the row number is the top of R's pattern: rows for every "
               "half from 222 to 255, of which only the "
               "integers'\n"
               "// are used, then for every integer. h = log10(444/R) to the nearest multiple of 2^-40, high = h - "
               "1023 HiB, low = RN(log10(444/R) - h - 1023 LoB),\n"
               "// with log10 2 = HiB + LoB as in log10_avx.cpp; log10(444/222) counts as exactly that, with h = HiB\n"
               "alignas(64) constexpr Float64 log10TableInteger[257][2] = {\n");
  for (int r = 222; r <= 444; ++r) {
    const Row row = integerRow(r == 222, log10(Exact(444) / Exact(r)), log10Log2HiB, log10Log2LoB);
    check("log10TableInteger", r, row,
          {{222, 0, 0xc0733a7146f6b080, 0xbe1e707ce619c200},
           {256, 0, 0xc0733b6ec42d4d20, 0xbe1e785c9c4620d4},
           {444, 0, 0xc0733f424bcad840, 0xbe1e781cd54ae100}});
    writeRow(out, {nearest(row.high), nearest(row.low)});
    if (r < 256) writeRow(out, {0, 0});
  }
  std::fprintf(out, "};\n\n");

  writeSpecial(out,
               "// Row i, f = 1 + i/64, {reciprocal, high, low}: reciprocal = C0 times RN(1/f) to 11 significant bits, "
               "t = log10(C0 / reciprocal), high = t to "
               "the nearest\n"
               "// multiple of 2^-37, low = RN(t - high); row 64 has log10 2 in the split of the exponent's term",
               "log10TableSpecial", log10SpecialRow,
               {{0, 0x3fdbc00000000000, 0, 0},
                {1, 0x3fdb510000000000, 0x3f7c03a80b000000, 0xbd7a1fac7d2ae08e},
                {64, 0x3fcbc00000000000, 0x3fd34413509f8000, 0xbd380433b83b532a}});
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"ln_tables.inc", writeLnTables}, {"log10_tables.inc", writeLog10Tables}});
}

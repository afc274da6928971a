// Writes explog/pow_tables.inc and explog/pow_special_tables.inc: reciprocals and their logarithms
// to base 2, and powers of two.
#include <iterator>

#include "tools/table_writer.h"

namespace {
using namespace tables;

struct Known {
  int row;
  uint64_t first, second;
};

constexpr double log2eHi = 0x1.7154740000000p+0;

// A column of reciprocals, and the table of the logarithms that belong to it.
struct Pair {
  const char* reciprocalName;
  const char* reciprocalRule;
  const char* logName;
  const char* logRule;
  int rows;
  Exact (*reciprocal)(int i);
  Exact (*logarithm)(int i, const Exact& reciprocal);
  Exact (*highOf)(const Exact& logarithm);
  std::initializer_list<Known> knownReciprocals, knownLogs;
};

void writePair(FILE* out, const Pair& p) {
  std::fprintf(out, "// %s\nextern constexpr Float64 %s[%d] = {\n", p.reciprocalRule, p.reciprocalName, p.rows);
  for (int i = 0; i < p.rows; ++i) {
    const double reciprocal = nearest(p.reciprocal(i));
    for (const Known& known : p.knownReciprocals)
      if (known.row == i) require(known.first, reciprocal, p.reciprocalName, i);
    std::fprintf(out, "  fromBits(0x%016" PRIx64 "),\n", pattern(reciprocal));
  }
  std::fprintf(out, "};\n\n// %s\nalignas(64) extern constexpr Float64 %s[%d][2] = {\n", p.logRule, p.logName, p.rows);
  for (int i = 0; i < p.rows; ++i) {
    const Exact exact = p.logarithm(i, p.reciprocal(i)), high = p.highOf(exact);
    const double low = nearest(exact - high);
    for (const Known& known : p.knownLogs)
      if (known.row == i) require(known.first, nearest(high), p.logName, i), require(known.second, low, p.logName, i);
    writeRow(out, {nearest(high), low});
  }
  std::fprintf(out, "};\n\n");
}

Exact log2(const Exact& x) { return call(mpfr_log2, x); }
Exact cutTo21Bits(const Exact& x) { return roundSignificant(x, 21, MPFR_RNDZ); }
Exact cutTo42Places(const Exact& x) { return roundToUnit(x, -42, MPFR_RNDZ); }

void writePowTables(FILE* out) {
  std::fprintf(out, "// Written by tools/make_pow_tables.cpp. L = 0x3ff7154740000000, log2 e to 23 bits.\n\n");
  writePair(
      out,
      {.reciprocalName = "powRcpTable",
       .reciprocalRule = "Row i: L / (1 + i/1024), rounded to 23 significant bits.",
       .logName = "powLog2Table",
       .logRule = "Row i: t = log2(L / powRcpTable[i]), less 1 from row 512 up, as high = t cut toward zero to 21 "
                  "significant bits, low = RN(t - high).",
       .rows = 1025,
       .reciprocal = [](int i) { return roundSignificant(Exact(log2eHi) / (Exact(1) + Exact(i) / Exact(1024)), 23); },
       .logarithm = [](int i, const Exact& reciprocal) { return log2(Exact(log2eHi) / reciprocal) - Exact(i >= 512); },
       .highOf = cutTo21Bits,
       .knownReciprocals = {{0, 0x3ff7154740000000, 0},
                            {1, 0x3ff70f8340000000, 0},
                            {512, 0x3feec709c0000000, 0},
                            {1024, 0x3fe7154740000000, 0}},
       .knownLogs = {{0, 0, 0},
                     {1, 0x3f5712e100000000, 0x3e0ee8a22f7c5987},
                     {511, 0x3fe2b05000000000, 0x3e9970145df6a281},
                     {512, 0xbfda8ff900000000, 0xbe86302155df0de3},
                     {1024, 0, 0}}});

  const Known known[] = {{0, 0x3ff0000000000000, 0},
                         {1, 0x3ff0163da9fb3335, 0x3c9b61299ab8cdb7},
                         {2, 0x3ff02c9a3e778061, 0xbc719083535b085d}};
  std::fprintf(out,
               "// Row j: 2^(j/128) as high = RN(2^(j/128)), low = RN(2^(j/128) - high).\nalignas(64) extern constexpr "
               "Float64 powExp2Table[128][2] = {\n");
  for (int j = 0; j < 128; ++j) {
    const Exact exact = call(mpfr_exp2, Exact(j) / Exact(128));
    const double high = nearest(exact), low = nearest(exact - Exact(high));
    if (j < std::ssize(known))
      require(known[j].first, high, "powExp2Table", j), require(known[j].second, low, "powExp2Table", j);
    writeRow(out, {high, low});
  }
  std::fprintf(out, "};\n");
}

// A quotient just below 1 has the lower exponent, so that its index counts half steps down from the
// last row.
Exact around1(int i, int rows, int lastAbove, double step) {
  return i <= lastAbove ? Exact(1 + i * step) : Exact(1 - (rows - 1 - i) * (step / 2));
}

void writeSpecialTables(FILE* out) {
  std::fprintf(out, "// Written by tools/make_pow_tables.cpp. L = 0x3ff7154740000000, log2 e to 23 bits.\n\n");
  writePair(out,
            {.reciprocalName = "powStage1Rcp",
             .reciprocalRule = "Row i: 1 / (1 + i/32), rounded to 15 significant bits.",
             .logName = "powStage1Log",
             .logRule = "Row i: t = -log2(powStage1Rcp[i]), less 1 from row 16 up, as high = t cut toward zero to a "
                        "multiple of 2^-42, low = RN(t - high).",
             .rows = 33,
             .reciprocal = [](int i) { return roundSignificant(Exact(1) / Exact(1 + i / 32.), 15); },
             .logarithm = [](int i, const Exact& reciprocal) { return log2(Exact(1) / reciprocal) - Exact(i >= 16); },
             .highOf = cutTo42Places,
             .knownReciprocals = {{0, 0x3ff0000000000000, 0}, {1, 0x3fef07c000000000, 0}, {2, 0x3fee1e0000000000, 0}},
             .knownLogs = {{0, 0, 0}, {1, 0x3fa6bb01a01f0000, 0x3d3c995e7439db71}, {32, 0, 0}}});
  writePair(
      out,
      {.reciprocalName = "powStage2Rcp",
       .reciprocalRule =
           "Row i: 1 / F rounded to 15 significant bits, F = 1 + i/512 up to row 15, 1 - (32 - i)/1024 from row 16 up.",
       .logName = "powStage2Log",
       .logRule =
           "Row i: t = -log2(powStage2Rcp[i]) as high = t cut toward zero to a multiple of 2^-42, low = RN(t - high).",
       .rows = 33,
       .reciprocal = [](int i) { return roundSignificant(Exact(1) / around1(i, 33, 15, 1 / 512.), 15); },
       .logarithm = [](int, const Exact& reciprocal) { return log2(Exact(1) / reciprocal); },
       .highOf = cutTo42Places,
       .knownReciprocals = {{0, 0x3ff0000000000000, 0},
                            {1, 0x3feff00000000000, 0},
                            {2, 0x3fefe00000000000, 0},
                            {32, 0x3ff0000000000000, 0}},
       .knownLogs = {{0, 0, 0}, {1, 0x3f671b0ea4280000, 0x3d497f689876ef47}}});
  writePair(out, {.reciprocalName = "powStage3Rcp",
                  .reciprocalRule = "Row i: L / F rounded to 21 significant bits, F = 1 + i/32768 up to row 40, 1 - "
                                    "(128 - i)/65536 from row 41 up; L in rows 0 and 128.",
                  .logName = "powStage3Log",
                  .logRule = "Row i: t = log2(L / powStage3Rcp[i]) as high = t cut toward zero to a multiple of 2^-42, "
                             "low = RN(t - high).",
                  .rows = 129,
                  .reciprocal =
                      [](int i) {
                        return i % 128 == 0 ? Exact(log2eHi)
                                            : roundSignificant(Exact(log2eHi) / around1(i, 129, 40, 1 / 32768.), 21);
                      },
                  .logarithm = [](int, const Exact& reciprocal) { return log2(Exact(log2eHi) / reciprocal); },
                  .highOf = cutTo42Places,
                  .knownReciprocals = {{0, 0x3ff7154740000000, 0},
                                       {1, 0x3ff7151900000000, 0},
                                       {2, 0x3ff714eb00000000, 0},
                                       {128, 0x3ff7154740000000, 0}},
                  .knownLogs = {{0, 0, 0}, {1, 0x3f07201750000000, 0x3d099925641f4f36}, {128, 0, 0}}});
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"pow_tables.inc", writePowTables}, {"pow_special_tables.inc", writeSpecialTables}});
}

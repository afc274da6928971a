// Writes algebraic/sqrt_tables.inc and algebraic/cbrt_tables.inc: seeds of square roots, and cube
// roots at the centres of 32 rows in three sections.
#include "tools/table_writer.h"

namespace {
using namespace tables;

void writeSqrtTables(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_root_tables.cpp.\n\n"
               "// Entry j + 256p is 1 / sqrt((1 + j/256)(1 + p)), rounded to nearest at 11 significant bits; p is 0 "
               "or 1. The last one closes the table at 4.\n"
               "alignas(64) constexpr Float64 sqrtSeedTable[513] = {");
  for (int i = 0; i <= 512; ++i) {
    const int p = i >= 256, j = i - 256 * p;
    const double seed = nearest(roundSignificant(Exact(1) / call(mpfr_sqrt, Exact(1 + j / 256.0) * Exact(1 + p)), 11));
    constexpr struct {
      int row;
      uint64_t seed;
    } known[] = {{0, 0x3ff0000000000000},   {1, 0x3feff00000000000},   {2, 0x3fefe00000000000},
                 {256, 0x3fe6a00000000000}, {511, 0x3fe0040000000000}, {512, 0x3fe0000000000000}};
    for (const auto& row : known)
      if (row.row == i) require(row.seed, seed, "sqrtSeedTable", i);
    std::fprintf(out, "%sfromBits(0x%016" PRIx64 "),", i % 4 == 0 ? "\n  " : " ", pattern(seed));
  }
  std::fprintf(out, "\n};\n");
}

// 1 / c cut to 64 bits: the low parts of the cube roots belong to its reciprocal instead of c. They
// are good to 2^-65 of the root either way.
Exact nearlyCentre(const Exact& centre) { return Exact(1) / roundSignificant(Exact(1) / centre, 64, MPFR_RNDZ); }

void writeCubeRoots(FILE* out, const char* comment, const char* name, bool inverse, uint64_t firstHigh,
                    uint64_t firstLow) {
  std::fprintf(out, "%s\nalignas(64) constexpr Float64 %s[96][4] = {\n", comment, name);
  for (int section = 0; section < 3; ++section)
    for (int j = 0; j < 32; ++j) {
      const Exact centre(1 + (2 * j + 1) / 64.0), power(1 << section);
      const double reciprocal = nearest(Exact(-1) / centre);
      const auto root = [&](const Exact& c) {
        const Exact r = call(mpfr_cbrt, c * power);
        return inverse ? Exact(1) / r : r;
      };
      const double high = nearest(root(centre));
      const double low = nearest(root(inverse ? centre : nearlyCentre(centre)) - Exact(high));
      if (section == 0 && j == 0) {
        require(0xbfef81f81f81f820, reciprocal, name, j);
        require(firstHigh, high, name, j), require(firstLow, low, name, j);
      }
      writeRow(out, {reciprocal, -nearest(centre), high, low});
    }
  std::fprintf(out, "};\n\n");
}

void writeCbrtTables(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_root_tables.cpp. Row 32r + j stands for c = 1 + (2j + 1)/64 in the section of "
               "2^r and begins with RN(-1/c), -c.\n"
               "// A row is 32 bytes, so that its index scaled by 32 is its offset.\n\n");
  writeCubeRoots(out,
                 "// RN(-1/c), -c, high = RN(cbrt(2^r c)), low = RN(cbrt(2^r / w) - high), where w is 1/c cut toward "
                 "zero to 64 significant bits",
                 "cbrtTable", false, 0x3ff01539221d4c97, 0x3c76ee36f173d5fa);
  writeCubeRoots(out, "// RN(-1/c), -c, high = RN(1 / cbrt(2^r c)), low = RN(1 / cbrt(2^r c) - high)", "invCbrtTable",
                 true, 0x3fefd5c5bf0441da, 0x3c5333601309b626);
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"sqrt_tables.inc", writeSqrtTables}, {"cbrt_tables.inc", writeCbrtTables}});
}

// Writes explog/exp_tables.inc: the powers 2^(j/64), split in three ways.
#include "tools/table_writer.h"

namespace {
using namespace tables;

struct Known {
  int row;
  uint64_t high, low;
};

Exact power(int j) { return call(mpfr_exp2, Exact(j) / Exact(64)); }

void writeSplit(FILE* out, const char* comment, const char* name, Exact (*highOf)(const Exact&), bool relative,
                std::initializer_list<Known> knownRows) {
  std::fprintf(out, "%s\nalignas(64) constexpr Float64 %s[64][2] = {\n", comment, name);
  for (int j = 0; j < 64; ++j) {
    const Exact exact = power(j), high = highOf(exact), rest = exact - high;
    const double low = nearest(relative ? rest / high : rest);
    for (const Known& known : knownRows)
      if (known.row == j) require(known.high, nearest(high), name, j), require(known.low, low, name, j);
    writeRow(out, {nearest(high), low});
  }
  std::fprintf(out, "};\n\n");
}

Exact cutTo44Places(const Exact& x) { return roundToUnit(x, -44, MPFR_RNDZ); }
Exact toNearest(const Exact& x) { return Exact(nearest(x)); }

void writeExpTables(FILE* out) {
  std::fprintf(
      out,
      "// Written by tools/make_exp_tables.cpp. Row j of each table stands for 2^(j/64), as high and low part.\n\n");
  writeSplit(out, "// high = 2^(j/64) cut toward zero to 44 bits after the binary point, low = RN(2^(j/64) - high)",
             "expTableSplit", cutTo44Places, false,
             {{0, 0x3ff0000000000000, 0},
              {1, 0x3ff02c9a3e778000, 0x3d183b9bdf2b293e},
              {32, 0x3ff6a09e667f3b00, 0x3d29921165f626ce},
              {63, 0x3fffa7c1819e9000, 0x3d2b05d214fce965}});
  writeSplit(out, "// high = RN(2^(j/64)), low = RN(2^(j/64) - high)", "expTableNearest", toNearest, false,
             {{0, 0x3ff0000000000000, 0},
              {1, 0x3ff02c9a3e778061, 0xbc719083535b085d},
              {32, 0x3ff6a09e667f3bcd, 0xbc9bdd3413b26456},
              {63, 0x3fffa7c1819e90d8, 0x3c874853f3a5931e}});
  writeSplit(out, "// high = RN(2^(j/64)), low = RN((2^(j/64) - high) / high)", "expTableRelative", toNearest, true,
             {{0, 0x3ff0000000000000, 0},
              {1, 0x3ff02c9a3e778061, 0xbc7160139cd8dc5d},
              {32, 0x3ff6a09e667f3bcd, 0xbc93b3efbf5e2228},
              {63, 0x3fffa7c1819e90d8, 0x3c77893b4d91cd9d}});
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments, {{"exp_tables.inc", writeExpTables}});
}

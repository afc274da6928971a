// Writes complex/complex_ln_tables.inc: reciprocals and logarithms for the logarithm of a squared modulus, and the angles that
// its argument is taken relative to.
#include "tools/table_writer.h"

namespace {
using namespace tables;

// Short reciprocals C of 1 + j/64 and -ln C as high, a multiple of 2^-37 (2^-42 in row 64, for exact products with
// exponents), and low.
void writeLogTable(FILE* out) {
  std::fprintf(out,
               "// C = 1/(1 + j/64) to a multiple of 2^-10, and -ln C as high + low.\n"
               "alignas(32) constexpr Float64 complexLnTable[65][4] = {\n");
  for (int j = 0; j <= 64; ++j) {
    const Exact c = roundToUnit(Exact(64) / Exact(64 + j), -10), exact = call(mpfr_log, Exact(1) / c);
    const Exact high = roundToUnit(exact, j == 64 ? -42 : -37);
    const double low = nearest(exact - high);
    if (j == 1) require(0x3f90205658a00000, nearest(high), "high", j), require(0xbd894f716c1b8bdf, low, "low", j);
    if (j == 2) require(pattern(0.9697265625), nearest(c), "C", j);
    if (j == 64) require(0x3fe62e42fefa3800, nearest(high), "high", j), require(0x3d2ef35793c76730, low, "low", j);
    writeRow(out, {nearest(c), nearest(high), low, 0.0});
  }
  std::fprintf(out, "};\n\n");
}

void writeAngleTable(FILE* out) {
  std::fprintf(out,
               "// atan v for v = 0, 1/2, 1, 3/2 and pi/2 as high + low.\n"
               "constexpr Float64 complexLnAngles[5][2] = {\n");
  Exact infinity;
  mpfr_set_inf(infinity.value, 1);
  for (const Exact& v : {Exact(0), Exact(0.5), Exact(1), Exact(1.5), infinity}) {
    const Exact angle = call(mpfr_atan, v), high(nearest(angle));
    writeRow(out, {nearest(high), nearest(angle - high)});
  }
  std::fprintf(out, "};\n");
}

void writeTables(FILE* out) {
  std::fprintf(out, "// Written by tools/make_complex_log_tables.cpp.\n\n");
  writeLogTable(out);
  writeAngleTable(out);
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments, {{"complex_ln_tables.inc", writeTables}});
}

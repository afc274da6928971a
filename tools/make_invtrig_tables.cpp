// Writes the fixed points of the inverse tangents: invtrig/atan_tables.inc for their kernels,
// invtrig/atan2_tables.inc for the scalar routine of atan2.
#include "tools/table_writer.h"

namespace {
using namespace tables;

struct Split {
  double hi, lo;
};
Split splitAtan(double c) {
  const Exact exact = call(mpfr_atan, Exact(c));
  const double hi = nearest(exact);
  return {hi, nearest(exact - Exact(hi))};
}
Split splitHalfPi() {
  Exact exact;
  mpfr_const_pi(exact.value, MPFR_RNDN);
  exact = exact / Exact(2);
  const double hi = nearest(exact);
  return {hi, nearest(exact - Exact(hi))};
}

// The intervals of the ratio t, the greatest first: down from their lower end each has its point.
struct Interval {
  double c;
  bool isInverted;  // atan t = pi/2 - atan(1/t)
  uint64_t knownHi, knownLo;
};
constexpr Interval intervals[] = {
    {1.0, true, 0x3ff921fb54442d18, 0x3c91a62633145c07},
    {1.5, false, 0x3fef730bd281f69b, 0x3c7007887af0cbbd},
    {1.0, false, 0x3fe921fb54442d18, 0x3c81a62633145c07},
    {0.5, false, 0x3fddac670561bb4f, 0x3c7a2b7f222f65e2},
    {0.0, false, 0, 0},
};
Split pointOf(int row) {
  const Interval& interval = intervals[row];
  const Split point = interval.isInverted ? splitHalfPi() : splitAtan(interval.c);
  require(interval.knownHi, point.hi, "atan(c)", row), require(interval.knownLo, point.lo, "atan(c)", row);
  return point;
}

void writeAtanTables(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_invtrig_tables.cpp. For t in each interval a point c with\n"
               "//   atan t = atan c + atan((t - c) / (1 + c t))\n"
               "// and in the first atan t = pi/2 + atan(-1 / t). A row has c, the mask of what is kept, none in the\n"
               "// first, atan c rounded (pi/2 in the first) and the rest of it.\n"
               "\n"
               "// t above 39/16, 19/16, 11/16, 7/16, and the others\n"
               "alignas(32) constexpr Float64 atanRows[5][4] = {\n");
  for (int row = 0; row < 5; ++row) {
    const Split point = pointOf(row);
    writeRow(out, {intervals[row].c, number(intervals[row].isInverted ? 0 : ~uint64_t{0}), point.hi, point.lo});
  }
  std::fprintf(out, "};\n");
}

void writeAtan2Tables(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_invtrig_tables.cpp. atan b rounded and the rest of it, at the middles b of\n"
               "// the sixteenths of the binades from 2^-4 up to 2^4.\n"
               "alignas(16) constexpr Float64 atanMiddles[128][2] = {\n");
  for (int i = 0; i < 128; ++i) {
    const Split point = splitAtan(number(0x3fb08000'00000000 + (uint64_t(i) << 48)));
    writeRow(out, {point.hi, point.lo});
  }
  std::fprintf(out, "};\n");
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"atan_tables.inc", writeAtanTables}, {"atan2_tables.inc", writeAtan2Tables}});
}

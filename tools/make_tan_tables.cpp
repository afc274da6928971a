// Writes trig/tan_tables.inc: the Taylor series of the tangent about the multiples of pi/32, with
// the pole taken out next to pi/2.
#include "tools/table_writer.h"

namespace {
using namespace tables;

constexpr int terms = 16;  // coefficients of r^0 to r^15

Exact thirtySecondsOfPi(int j) {
  Exact r;
  mpfr_const_pi(r.value, MPFR_RNDN);
  return r * Exact(j) / Exact(32);
}

bool isPoleRow(int j) { return j >= 9 && j <= 23; }

// The coefficient of r^n in 1 + f(r)^2.
Exact onePlusSquare(const Exact* f, int n) {
  Exact sum(n == 0 ? 1 : 0);
  for (int i = 0; i <= n; ++i) sum = sum + f[i] * f[n - i];
  return sum;
}

// tan(j pi/32 + r): f' = 1 + f^2.
void expandTangent(int j, Exact* c) {
  c[0] = j == 0 ? Exact(0) : j == 8 ? Exact(1) : j == 24 ? Exact(-1) : call(mpfr_tan, thirtySecondsOfPi(j));
  for (int n = 0; n + 1 < terms; ++n) c[n + 1] = onePlusSquare(c, n) / Exact(n + 1);
}

// tan(j pi/32 + r) + 1/w with w = w0 + r and w0 = (j - 16) pi/32, that is 1/w - cot w: w f' = w (1
// + f^2) - 2 f. A step loses up to 4 bits where w0 is small.
void expandWithoutPole(int j, Exact* c) {
  const Exact w0 = thirtySecondsOfPi(j - 16);
  if (j == 16) {
    c[0] = Exact(0);
    for (int n = 1; n < terms; ++n) c[n] = onePlusSquare(c, n - 1) / Exact(n + 2);
    return;
  }
  c[0] = Exact(1) / w0 - call(mpfr_cot, w0);
  for (int n = 0; n + 1 < terms; ++n) {
    const Exact previous = n == 0 ? Exact(0) : onePlusSquare(c, n - 1);
    c[n + 1] = (w0 * onePlusSquare(c, n) + previous - Exact(n + 2) * c[n]) / (w0 * Exact(n + 1));
  }
}

struct Row {
  double slot[20];
};

Row makeRow(int j) {
  Exact c[terms];
  isPoleRow(j) ? expandWithoutPole(j, c) : expandTangent(j, c);
  const double value = isPoleRow(j) ? nearest(roundSignificant(c[0], 39)) : nearest(c[0]);
  const double slope = isPoleRow(j) ? 0 : nearest(roundSignificant(c[1], 1));
  const auto at = [&](int n) { return nearest(c[n]); };
  return {{at(8),
           at(9),
           at(10),
           at(2),
           at(11),
           at(3),
           at(12),
           at(4),
           at(13),
           at(5),
           at(14),
           at(6),
           at(15),
           at(7),
           value,
           nearest(c[0] - Exact(value)),
           slope,
           nearest(c[1] - Exact(slope)),
           isPoleRow(j) ? 1.0 : 0.0,
           number(isPoleRow(j) ? 0xfffffff800000000 : 0)}};
}

void requireKnown(int j, const Row& row) {
  static const struct {
    int row, slot;
    double value;
  } known[] = {
      {0, 5, 1 / 3.0},
      {0, 9, 2 / 15.0},
      {0, 13, 17 / 315.0},
      {0, 1, 62 / 2835.0},
      {0, 16, 1},
      {0, 0, 0},
      {0, 3, 0},
      {0, 7, 0},
      {0, 11, 0},
      {0, 14, 0},
      {1, 14, number(0x3fb936bb8c5b2da2)},
      {6, 16, 1},
      {7, 16, 2},
      {8, 3, 2},
      {8, 5, 8 / 3.0},
      {8, 14, 1},
      {8, 16, 2},
      {8, 15, 0},
      {9, 16, 0},
      {9, 18, 1},
      {15, 14, number(0xbfa0c4146ecac000)},
      {16, 5, 1 / 45.0},
      {16, 9, 2 / 945.0},
      {16, 17, 1 / 3.0},
      {16, 18, 1},
      {23, 18, 1},
      {24, 18, 0},
      {25, 16, 2},
      {26, 16, 1},
      {31, 14, number(0xbfb936bb8c5b2da2)},
  };
  for (const auto& k : known)
    if (k.row == j) require(pattern(k.value), row.slot[k.slot] + 0.0, "tanTable32", j);
}

void writeTanTable(FILE* out) {
  std::fprintf(out,
               "// Written by tools/make_tan_tables.cpp.\n\n"
               "// Row j: the Taylor coefficients c0, c1, ... of tan(j pi/32 + r), in rows 9 to 23 those of tan(j "
               "pi/32 + r) + 1/(j pi/32 + r - pi/2).\n"
               "//   c8, c9, c10, c2, c11 / c3, c12, c4, c13, c5 / c14, c6, c15, c7, c0 as high part / c0 as low part, "
               "c1 as high part, c1 as low part, pole, mask\n"
               "// The high part of c0 is RN(c0), in rows 9 to 23 to 39 bits; that of c1 is RN(c1) to 1 bit, in rows 9 "
               "to 23 it is 0. pole is 1.0 and mask cuts the\n"
               "// reciprocal to 18 bits in rows 9 to 23; both are 0 in the others.\n"
               "alignas(64) constexpr Float64 tanTable32[32][20] = {\n");
  for (int j = 0; j < 32; ++j) {
    const Row row = makeRow(j);
    requireKnown(j, row);
    for (int i = 0; i < 20; ++i) {
      const char* const before = i == 0 ? "  {" : i % 5 == 0 ? "   " : " ";
      std::fprintf(out, "%sfromBits(0x%016" PRIx64 ")%s", before, pattern(row.slot[i] == 0 ? 0.0 : row.slot[i]),
                   i == 19      ? "},\n"
                   : i % 5 == 4 ? ",\n"
                                : ",");
    }
  }
  std::fprintf(out, "};\n");
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments, {{"tan_tables.inc", writeTanTable}});
}

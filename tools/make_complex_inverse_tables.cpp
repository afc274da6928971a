// Writes the tables of the logarithms, the square root and the inverse functions in extended
// precision, in complex/extended/.
#include <functional>
#include <vector>

#include "tools/extended_tables.h"

namespace {
using namespace tables;

void beginTable(FILE* out, const char* comment) {
  std::fprintf(out, "// Written by tools/make_complex_inverse_tables.cpp.\n\n%s%s", comment, *comment ? "\n" : "");
}

void writeLog256(FILE* out) {
  beginTable(
      out,
      "// Row j: C, the multiple of 2^-9 nearest to the reciprocal of the middle of 1 + j/256 to 1 + (j + 1)/256,\n"
      "// and -ln C as high part, a multiple of 2^-40, and low part.\n"
      "const LogRow logTable256[256] = {");
  const uint32_t known[] = {0x3f7f8000, 0x3f7e8000, 0x3f7d8000};
  for (int j = 0; j < 256; ++j) {
    const Exact c = roundToUnit(Exact(512) / Exact(513 + 2 * j), -9), exact = -call(mpfr_log, c);
    const Exact high = roundToUnit(exact, -40);
    if (j < 3) require(pattern(__builtin_bit_cast(float, known[j])), nearest(c), "logTable256", j);
    writeRow(out, {nearest(c), nearest(high), nearest(exact - high)});
  }
  std::fprintf(out, "};\n");
}

void writeAtan(FILE* out) {
  beginTable(out,
             "// Angles from 0 to pi as high part, of 31 bits, and low part: row j has atan(j/128), row 256 -+ j\n"
             "// pi/2 -+ atan(j/128), row 512 - j pi - atan(j/128), j from 0 to 128.\n"
             "const AtanRow atanTable[513] = {");
  for (int row = 0; row <= 512; ++row) {
    const int quarter = (row + 128) / 256, j = row - 256 * quarter;
    const Exact exact = pi() * Exact(quarter) / Exact(2) + call(mpfr_atan, Exact(j) / Exact(128));
    const Exact high = roundSignificant(exact, 31);
    const double low = nearest(exact - high);
    if (row == 256) require(0x3ff921fb54400000, nearest(high), "pi/2", 0), require(0x3dd0b4611a626331, low, "pi/2", 1);
    if (row == 512) require(0x400921fb54400000, nearest(high), "pi", 0), require(0x3de0b4611a626331, low, "pi", 1);
    writeRow(out, {nearest(high), low});
  }
  std::fprintf(out, "};\n");
}

void writeInvSqrt(FILE* out) {
  beginTable(
      out,
      "// 1/sqrt(v) to the nearest multiple of 2^-10: v = 1 + i/256 in row i, v = 2 (1 + i/256) in row 256 + i.\n"
      "const Float64 invSqrtTable[513] = {");
  for (int row = 0; row <= 512; ++row) {
    const Exact v = row <= 256 ? Exact(256 + row) / Exact(256) : Exact(row) / Exact(128);
    const double root = nearest(roundToUnit(Exact(1) / call(mpfr_sqrt, v), -10));
    if (row < 3) require(pattern(1 - row * 0x1p-9), root, "invSqrtTable", row);
    std::fprintf(out, "%sfromBits(0x%016" PRIx64 "),%s", row % 4 == 0 ? "  " : " ", pattern(root),
                 row % 4 == 3 || row == 512 ? "\n" : "");
  }
  std::fprintf(out, "};\n");
}

// A polynomial that agrees with f in the zeros of a Chebyshev polynomial on [from, to].
struct Chain {
  const char *name, *comment;
  int count, firstPower, step;
  double from, to;
  std::function<Exact(const Exact&)> f;
};

Exact root(const Exact& t) { return call(mpfr_sqrt, t); }

void writeChain(FILE* out, const Chain& chain) {
  std::fprintf(out, "// %s\nconstexpr Constant %s[%d] = {\n", chain.comment, chain.name, chain.count);
  const std::vector<Exact> c = interpolate(chain.f, chain.count, Exact(chain.from), Exact(chain.to));
  for (int i = 0; i < chain.count; ++i)
    std::fprintf(out, "  %s,  // %.12g, of x^%d\n", extendedText(c[i]).c_str(), nearest(c[i]),
                 chain.firstPower + chain.step * i);
  std::fprintf(out, "};\n");
}

constexpr double third = 2730.0 / 8192;            // 0.333251953125
constexpr double sixth = 2730.0 / 16384;           // 0.1666259765625
constexpr double threeFortieths = 2458.0 / 32768;  // 0.07501220703125

void writeLog1pTail(FILE* out) {
  beginTable(out, "");
  writeChain(out, {"log1pTail", "ln(1 + x) - (x - x^2/2 + 2730/8192 x^3) on [-1/16, 1/16].", 14, 2, 1, -0.0625, 0.0625,
                   [](const Exact& x) {
                     const Exact lead = x - x * x / Exact(2) + Exact(third) * x * x * x;
                     return (call(mpfr_log1p, x) - lead) / (x * x);
                   }});
}
void writeAtanhTail(FILE* out) {
  beginTable(out, "");
  writeChain(out, {"atanhTail", "atanh x - (x + 2730/8192 x^3) on [0, 1/4].", 13, 3, 2, 0, 0.0625, [](const Exact& t) {
                     const Exact x = root(t);
                     return (call(mpfr_atanh, x) - x) / (x * t) - Exact(third);
                   }});
}
void writeAsinTail(FILE* out) {
  beginTable(out, "");
  writeChain(out, {"asinWideTail", "asin x - (x + 2730/16384 x^3 + 2458/32768 x^5) on [0, 1/2].", 17, 3, 2, 0, 0.25,
                   [](const Exact& t) {
                     const Exact x = root(t);
                     return (call(mpfr_asin, x) - x) / (x * t) - Exact(sixth) - Exact(threeFortieths) * t;
                   }});
}
void writeAsinhTail(FILE* out) {
  beginTable(out, "");
  writeChain(out, {"asinhTail", "asinh x - (x - 2730/16384 x^3 + 2458/32768 x^5) on [0, 1/2].", 17, 3, 2, 0, 0.25,
                   [](const Exact& t) {
                     const Exact x = root(t);
                     return (call(mpfr_asinh, x) - x) / (x * t) + Exact(sixth) - Exact(threeFortieths) * t;
                   }});
}
void writeAcoshTail(FILE* out) {
  beginTable(out, "");
  writeChain(out, {"acoshTail", "acosh(1 + x/2) / sqrt(x) - 1 on [0, 1].", 15, 1, 1, 0, 1, [](const Exact& w) {
                     return (call(mpfr_acosh, Exact(1) + w / Exact(2)) / root(w) - Exact(1)) / w;
                   }});
}

void writeCertified(FILE* out) {
  beginTable(
      out,
      "// Row j: C, the multiple of 2^-14 nearest to 1/(1 + j/128), and -ln C as a multiple of 2^-42 and the rest.\n"
      "const Log1pRow log1pRows[128] = {");
  for (int j = 0; j < 128; ++j) {
    const Exact c = roundToUnit(Exact(128) / Exact(128 + j), -14), log = -call(mpfr_log, c),
                high = roundToUnit(log, -42);
    writeRow(out, {nearest(c), nearest(high) + 0.0, nearest(log - high), 0});
  }
  std::fprintf(
      out,
      "};\n\n"
      "// Row j: half of cos(asin(j/128)) as its nearest number of 26 bits and the rest, half of asin(j/128) as a\n"
      "// multiple of 2^-42 and the rest.\n"
      "const AngleRow angleRows[92] = {\n");
  for (int j = 0; j < 92; ++j) {
    const Exact sine = Exact(j) / Exact(128), cosine = call(mpfr_sqrt, Exact(1) - sine * sine) / Exact(2);
    const Exact angle = call(mpfr_asin, sine) / Exact(2);
    const Exact head = roundSignificant(cosine, 26), high = roundToUnit(angle, -42);
    writeRow(out, {nearest(head), nearest(cosine - head), nearest(high), nearest(angle - high)});
  }
  std::fprintf(out,
               "};\n\n"
               "// Row j: atan(j/128) as a multiple of 2^-42 and the rest.\n"
               "const TangentRow tangentRows[129] = {\n");
  for (int j = 0; j <= 128; ++j) {
    const Exact angle = call(mpfr_atan, Exact(j) / Exact(128)), high = roundToUnit(angle, -42);
    writeRow(out, {nearest(high), nearest(angle - high)});
  }
  std::fprintf(out, "};\n");
}

}  // namespace

int main(int count, char** arguments) {
  return tables::writeTables(count, arguments,
                             {{"log_256_table.inc", writeLog256},
                              {"atan_table.inc", writeAtan},
                              {"inv_sqrt_table.inc", writeInvSqrt},
                              {"log1p_tail_table.inc", writeLog1pTail},
                              {"atanh_tail_table.inc", writeAtanhTail},
                              {"asin_tail_table.inc", writeAsinTail},
                              {"asinh_tail_table.inc", writeAsinhTail},
                              {"acosh_tail_table.inc", writeAcoshTail},
                              {"certified_inverse_tables.inc", writeCertified}});
}

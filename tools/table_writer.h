// What the generators of constant tables share: exact values in MPFR, roundings to few bits, and
// the writing of rows.
//
// A generator make_<family>_tables writes each <name>_tables.inc of its family into the folder
// given as its only argument:
//   int main(int count, char** arguments) { return writeTables(count, arguments,
//   {{"exp_tables.inc", writeExpTables}}); }
#pragma once
#include <mpfr.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>

namespace tables {

constexpr mpfr_prec_t workingBits = 300;

// A number of workingBits, with the few operations that rules are written in.
struct Exact {
  mpfr_t value;
  Exact(double x = 0) { mpfr_init2(value, workingBits), mpfr_set_d(value, x, MPFR_RNDN); }
  Exact(const Exact& other) { mpfr_init2(value, workingBits), mpfr_set(value, other.value, MPFR_RNDN); }
  Exact& operator=(const Exact& other) { return mpfr_set(value, other.value, MPFR_RNDN), *this; }
  ~Exact() { mpfr_clear(value); }
};
inline Exact operator+(const Exact& a, const Exact& b) {
  Exact r;
  mpfr_add(r.value, a.value, b.value, MPFR_RNDN);
  return r;
}
inline Exact operator-(const Exact& a, const Exact& b) {
  Exact r;
  mpfr_sub(r.value, a.value, b.value, MPFR_RNDN);
  return r;
}
inline Exact operator*(const Exact& a, const Exact& b) {
  Exact r;
  mpfr_mul(r.value, a.value, b.value, MPFR_RNDN);
  return r;
}
inline Exact operator/(const Exact& a, const Exact& b) {
  Exact r;
  mpfr_div(r.value, a.value, b.value, MPFR_RNDN);
  return r;
}
inline Exact operator-(const Exact& a) {
  Exact r;
  mpfr_neg(r.value, a.value, MPFR_RNDN);
  return r;
}

// A function of MPFR's: call(mpfr_log2, x).
template <class F>
Exact call(F function, const Exact& x) {
  Exact r;
  function(r.value, x.value, MPFR_RNDN);
  return r;
}

// To `bits` significant bits, and to a multiple of 2^unit.
inline Exact roundSignificant(const Exact& x, int bits, mpfr_rnd_t mode = MPFR_RNDN) {
  Exact r(x);
  mpfr_prec_round(r.value, bits, mode);
  mpfr_prec_round(r.value, workingBits, MPFR_RNDN);
  return r;
}
inline Exact roundToUnit(const Exact& x, int unit, mpfr_rnd_t mode = MPFR_RNDN) {
  Exact r;
  mpfr_mul_2si(r.value, x.value, -unit, MPFR_RNDN);
  mpfr_rint(r.value, r.value, mode);
  mpfr_mul_2si(r.value, r.value, unit, MPFR_RNDN);
  return r;
}
inline double nearest(const Exact& x) { return mpfr_get_d(x.value, MPFR_RNDN); }

inline uint64_t pattern(double x) {
  uint64_t u;
  std::memcpy(&u, &x, 8);
  return u;
}
inline double number(uint64_t u) {
  double x;
  std::memcpy(&x, &u, 8);
  return x;
}

// A row {fromBits(...), ...}, with a remark behind it. Zeros are written +0.
inline void writeRow(FILE* out, std::initializer_list<double> columns, const std::string& remark = "") {
  const char* separator = "  {";
  for (double x : columns) {
    std::fprintf(out, "%sfromBits(0x%016" PRIx64 ")", separator, pattern(x));
    separator = ", ";
  }
  std::fprintf(out, "},%s%s\n", remark.empty() ? "" : "  // ", remark.c_str());
}

// Stops the generator if a row that is known from elsewhere doesn't come out.
inline void require(uint64_t expected, double got, const char* what, int row) {
  if (pattern(got) == expected) return;
  std::fprintf(stderr, "%s, row %d: 0x%016" PRIx64 " instead of 0x%016" PRIx64 "\n", what, row, pattern(got), expected);
  std::exit(1);
}

struct Table {
  const char* fileName;
  void (*write)(FILE* out);
};
inline int writeTables(int count, char** arguments, std::initializer_list<Table> files) {
  if (count != 2) return std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]), 2;
  for (const Table& file : files) {
    const std::string path = std::string(arguments[1]) + "/" + file.fileName;
    FILE* out = std::fopen(path.c_str(), "w");
    if (out == nullptr) return std::perror(path.c_str()), 1;
    file.write(out);
    if (std::fclose(out) != 0) return std::perror(path.c_str()), 1;
  }
  return 0;
}

}  // namespace tables

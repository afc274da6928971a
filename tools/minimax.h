// Polynomials of least relative error: Remez's exchange, for the generators of fitted tables.
//
// The function is interpolated once, at Chebyshev's points and in MPFR's precision; the exchange
// then works on that polynomial, which stands for the function to far more digits than any
// coefficient keeps. Nothing depends on the machine.
#pragma once
#include <utility>
#include <vector>

#include "tools/table_writer.h"

namespace tables {

inline bool isLess(const Exact& a, const Exact& b) { return mpfr_less_p(a.value, b.value) != 0; }
inline int signOf(const Exact& a) { return mpfr_sgn(a.value); }
inline Exact absolute(const Exact& a) { return call(mpfr_abs, a); }

// c[0] + c[1] t + c[2] t^2 + ...
using Polynomial = std::vector<Exact>;

inline Exact evaluate(const Polynomial& c, const Exact& t) {
  Exact sum = c.back();
  for (size_t k = c.size() - 1; k-- > 0;) {
    mpfr_mul(sum.value, sum.value, t.value, MPFR_RNDN);
    mpfr_add(sum.value, sum.value, c[k].value, MPFR_RNDN);
  }
  return sum;
}

inline Polynomial derivative(const Polynomial& c) {
  Polynomial d;
  for (size_t k = 1; k < c.size(); ++k) d.push_back(c[k] * Exact(static_cast<double>(k)));
  return d;
}

struct Interval {
  Exact low, high;
  // Dense towards the ends: from low at i = 0 to high at i = n.
  Exact point(int i, int n) const {
    Exact pi;
    mpfr_const_pi(pi.value, MPFR_RNDN);
    return (low + high) / Exact(2) - (high - low) / Exact(2) * call(mpfr_cos, pi * Exact(i) / Exact(n));
  }
};

// The polynomial that agrees with f at `count` points.
template <class F>
Polynomial interpolate(F f, const Interval& interval, int count) {
  std::vector<Exact> node(count), divided(count);
  for (int i = 0; i < count; ++i) {
    node[i] = interval.point(2 * i + 1, 2 * count);
    divided[i] = f(node[i]);
  }
  for (int order = 1; order < count; ++order)
    for (int i = count - 1; i >= order; --i) divided[i] = (divided[i] - divided[i - 1]) / (node[i] - node[i - order]);
  Polynomial c = {divided[count - 1]};  // Newton's form, multiplied out from its innermost bracket
  for (int i = count - 2; i >= 0; --i) {
    c.insert(c.begin(), divided[i]);
    for (size_t k = 0; k + 1 < c.size(); ++k) c[k] = c[k] - node[i] * c[k + 1];
  }
  return c;
}

// A linear system, by elimination with pivots. Row i holds the coefficients, then the right side.
inline std::vector<Exact> solve(std::vector<std::vector<Exact>> matrix) {
  const size_t n = matrix.size();
  for (size_t column = 0; column < n; ++column) {
    size_t pivot = column;
    for (size_t row = column + 1; row < n; ++row)
      if (isLess(absolute(matrix[pivot][column]), absolute(matrix[row][column]))) pivot = row;
    std::swap(matrix[column], matrix[pivot]);
    for (size_t row = column + 1; row < n; ++row) {
      const Exact factor = matrix[row][column] / matrix[column][column];
      for (size_t k = column; k <= n; ++k) matrix[row][k] = matrix[row][k] - factor * matrix[column][k];
    }
  }
  std::vector<Exact> x(n);
  for (size_t row = n; row-- > 0;) {
    Exact rest = matrix[row][n];
    for (size_t k = row + 1; k < n; ++k) rest = rest - matrix[row][k] * x[k];
    x[row] = rest / matrix[row][row];
  }
  return x;
}

// A root of f in [a, b], at whose ends it has different signs: regula falsi with the Illinois
// weights.
template <class F>
Exact rootOf(F f, Exact a, Exact b) {
  Exact fa = f(a), fb = f(b);
  const Exact enough = absolute(b - a) * Exact(0x1p-80);
  for (int i = 0; i < 100 && isLess(enough, absolute(b - a)); ++i) {
    const Exact c = b - fb * (b - a) / (fb - fa), fc = f(c);
    if (signOf(fc) == 0) return c;
    if (signOf(fc) * signOf(fb) < 0)
      a = b, fa = fb;
    else
      fa = fa / Exact(2);
    const bool settled = isLess(absolute(c - b), enough);
    b = c, fb = fc;
    if (settled) break;
  }
  return b;
}

// The polynomial of f's relative error that is least on the interval, among those whose
// coefficients of t^first ... t^last are free and whose others are those of `fixed`.
inline Polynomial fitRelative(const Polynomial& f, Polynomial fixed, int first, int last, const Interval& interval) {
  const int unknowns = last - first + 1, references = unknowns + 1;
  const Polynomial slopeOfF = derivative(f);
  Polynomial p = fixed;
  p.resize(last + 1);
  fixed.push_back(0);
  std::vector<Exact> reference;
  // Where the error vanishes at the lower end whatever the coefficients, that end can't belong to
  // the reference.
  const bool lowEndIsFixed = first > 0 && signOf(interval.low) == 0;
  for (int i = 0; i < references; ++i)
    reference.push_back(lowEndIsFixed ? interval.point(i + 1, references) : interval.point(i, references - 1));

  for (int iteration = 0; iteration < 30; ++iteration) {
    std::vector<std::vector<Exact>> matrix;
    for (int i = 0; i < references; ++i) {
      const Exact& t = reference[i];
      std::vector<Exact> row;
      Exact power = 1;
      for (int k = 0; k <= last; ++k) {
        if (k >= first) row.push_back(power);
        power = power * t;
      }
      const Exact value = evaluate(f, t);
      row.push_back(i % 2 == 0 ? value : -value);
      row.push_back(value - evaluate(fixed, t));
      matrix.push_back(row);
    }
    const std::vector<Exact> x = solve(matrix);
    for (int k = first; k <= last; ++k) p[k] = x[k - first];
    const Exact level = absolute(x[unknowns]);

    // The extrema of (p - f) / f are where p' f = p f'.
    const Polynomial slopeOfP = derivative(p);
    const auto error = [&](const Exact& t) { return evaluate(p, t) / evaluate(f, t) - Exact(1); };
    const auto slope = [&](const Exact& t) {
      return evaluate(slopeOfP, t) * evaluate(f, t) - evaluate(p, t) * evaluate(slopeOfF, t);
    };
    std::vector<Exact> extrema;
    if (!lowEndIsFixed) extrema.push_back(interval.low);
    const int steps = 10 * references;
    Exact before = interval.point(lowEndIsFixed ? 1 : 0, steps), slopeBefore = slope(before);
    for (int i = lowEndIsFixed ? 2 : 1; i <= steps; ++i) {
      const Exact here = interval.point(i, steps), slopeHere = slope(here);
      if (signOf(slopeHere) * signOf(slopeBefore) < 0) extrema.push_back(rootOf(slope, before, here));
      before = here, slopeBefore = slopeHere;
    }
    extrema.push_back(interval.high);
    // Of neighbours on the same side the larger one stays; of too many, the smaller end goes.
    std::vector<Exact> kept;
    for (const Exact& t : extrema) {
      if (!kept.empty() && signOf(error(kept.back())) == signOf(error(t))) {
        if (isLess(absolute(error(kept.back())), absolute(error(t)))) kept.back() = t;
      } else {
        kept.push_back(t);
      }
    }
    while (kept.size() > static_cast<size_t>(references)) {
      if (isLess(absolute(error(kept.front())), absolute(error(kept.back()))))
        kept.erase(kept.begin());
      else
        kept.pop_back();
    }
    if (kept.size() != static_cast<size_t>(references))
      std::fprintf(stderr, "the exchange lost a point\n"), std::exit(1);
    Exact largest = 0;
    for (const Exact& t : kept)
      if (isLess(largest, absolute(error(t)))) largest = absolute(error(t));
    reference = kept;
    if (isLess(largest - level, level * Exact(0x1p-50))) return p;
  }
  std::fprintf(stderr, "the exchange doesn't settle\n");
  std::exit(1);
}

}  // namespace tables

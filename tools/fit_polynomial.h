// Polynomials fitted to a function on an interval, for the generators of constant tables. The
// result is the same on every machine: all of it is MPFR arithmetic.
#pragma once
#include <vector>

#include "tools/table_writer.h"

namespace tables {

// The Chebyshev nodes of [-1, 1]. Least squares over them, all of one weight, come near to the best
// approximation.
inline std::vector<Exact> chebyshevNodes(int count) {
  Exact pi;
  mpfr_const_pi(pi.value, MPFR_RNDN);
  std::vector<Exact> nodes;
  for (int i = 0; i < count; ++i) nodes.push_back(call(mpfr_cos, pi * Exact(2 * i + 1) / Exact(2 * count)));
  return nodes;
}

// A function that a polynomial has to come near to: its values at the nodes, and what an error
// there is multiplied by.
struct Sample {
  Exact node, target, scale;
};

// The coefficients of node^first to node^last of the polynomial with the least sum of weighted
// squared errors. The normal equations of these degrees lose some 20 digits, of the 90 that there
// are.
inline std::vector<Exact> leastSquares(const std::vector<Sample>& samples, const std::vector<Exact>& weights, int first,
                                       int last) {
  const int n = last - first + 1;
  std::vector<Exact> moments(2 * n - 1), right(n), c(n);
  for (size_t s = 0; s < samples.size(); ++s) {
    Exact power = weights[s] * samples[s].scale * samples[s].scale;
    for (int k = 0; k < first; ++k) power = power * samples[s].node;
    Exact product = power * samples[s].target;
    for (int k = 0; k < first; ++k) power = power * samples[s].node;
    for (Exact& r : right) r = r + product, product = product * samples[s].node;
    for (Exact& m : moments) m = m + power, power = power * samples[s].node;
  }
  std::vector<std::vector<Exact>> matrix(n);
  for (int i = 0; i < n; ++i) matrix[i].assign(moments.begin() + i, moments.begin() + i + n);
  for (int i = 0; i < n; ++i)
    for (int j = i + 1; j < n; ++j) {
      const Exact factor = matrix[j][i] / matrix[i][i];
      for (int k = i; k < n; ++k) matrix[j][k] = matrix[j][k] - factor * matrix[i][k];
      right[j] = right[j] - factor * right[i];
    }
  for (int i = n - 1; i >= 0; --i) {
    c[i] = right[i];
    for (int k = i + 1; k < n; ++k) c[i] = c[i] - matrix[i][k] * c[k];
    c[i] = c[i] / matrix[i][i];
  }
  return c;
}
inline std::vector<Exact> leastSquares(const std::vector<Sample>& samples, int first, int last) {
  return leastSquares(samples, std::vector<Exact>(samples.size(), Exact(1)), first, last);
}

// The same for the least largest error: Lawson's iteration, least squares whose weights are
// multiplied by the errors that they leave. Some 50 turns come within a few percent.
inline std::vector<Exact> leastMaximum(const std::vector<Sample>& samples, int first, int last, int turns) {
  std::vector<Exact> weights(samples.size(), Exact(1)), c;
  for (int turn = 0; turn < turns; ++turn) {
    c = leastSquares(samples, weights, first, last);
    Exact sum;
    for (size_t s = 0; s < samples.size(); ++s) {
      Exact value;
      for (int k = last; k >= 0; --k) value = value * samples[s].node + (k >= first ? c[k - first] : Exact(0));
      weights[s] = weights[s] * call(mpfr_abs, samples[s].scale * (value - samples[s].target));
      sum = sum + weights[s];
    }
    for (Exact& w : weights) w = w / sum;
  }
  return c;
}

inline Exact integerPower(const Exact& x, int n) {
  Exact r(1);
  for (int i = 0; i < n; ++i) r = r * x;
  return r;
}

}  // namespace tables

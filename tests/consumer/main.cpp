// A user's program in C++20: exits with 0 if the library answers rightly through spans.
#include <cstdio>
#include <cstring>
#include <qorvane.hpp>
#include <vector>

namespace {

int failures = 0;
void expect(bool holds, const char* what) {
  if (!holds) std::printf("FAILED: %s\n", what), ++failures;
}

}  // namespace

int main() {
  const std::vector<double> x = {0.0, 1.0, 1000.0, -1.0};
  std::vector<double> y(4), z(4), square = {0.0, 1.0, 2.0, -3.0};
  expect(qorvane::exp(x, y) == nuvStatusOverflow && y[0] == 1.0 && y[1] > 2.718 && y[1] < 2.719, "exp");
  expect(qorvane::powx(square, 2.0, square) == nuvStatusOk && square[2] == 4.0 && square[3] == 9.0, "powx in place");
  expect(qorvane::div(x, square, y) == nuvStatusPole && y[2] == 250.0, "div");
  expect(qorvane::sinCos(x, y, z) == nuvStatusOk && y[0] == 0.0 && z[0] == 1.0 && z[1] == z[3], "sinCos");
  expect(qorvane::exp(std::span<const double>{}, std::span<double>{}) == nuvStatusOk, "empty arrays");
  const std::vector<qorvane::Complex> a = {{0.0, 3.141592653589793}, {2.0, 0.0}};
  std::vector<qorvane::Complex> b(2);
  expect(qorvane::exp(a, b) == nuvStatusOk && b[0].real() == -1.0, "complex exp");
  expect(qorvane::powx(a, {2.0, 0.0}, b) == nuvStatusOk && std::abs(b[1] - 4.0) < 1e-14, "complex powx");

  // In pieces: the same bits, with neighbours that matter, and the last failing element's status.
  std::vector<double> angles(1000), whole(1000), pieces(1000);
  for (int i = 0; i < 1000; ++i) angles[i] = i % 77 == 0 ? 1e6 * i : 0.37 * i;
  angles[500] = 1e308 * 10;
  const nuvStatus status = nuvsTan_64f_A53(angles.data(), whole.data(), 1000);
  expect(qorvane::detail::run<64>(nuvsTan_64f_A53, 1000, std::span<const double>(angles), std::span<double>(pieces)) ==
                 status &&
             status == nuvStatusOutOfDomain,
         "the status of pieces");
  expect(std::memcmp(whole.data(), pieces.data(), 8000) == 0, "the bits of pieces");
  return failures;
}

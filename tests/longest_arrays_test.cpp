// Arrays of INT32_MAX elements: no index, length or address is worked out in 32 bits, and the last elements are
// written. 16 GiB of addresses an array, all but the first and the last of its pages being one small file.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <ctime>

#include "tests/arguments.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

constexpr int32_t period = 1 << 17, longest = INT32_MAX;
constexpr size_t periodBytes = period * sizeof(double), windowBytes = size_t{1} << 34;

// The same megabyte again and again; nothing behind it can be touched.
struct Window {
  double* start = nullptr;

  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  // `ownEnds`: the first and the last period are memory of their own.
  explicit Window(bool ownEnds) {
    const int file = memfd_create("longest", 0);
    if (file < 0 || ftruncate(file, periodBytes) != 0) return;
    void* reserved =
        mmap(nullptr, windowBytes + periodBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (reserved != MAP_FAILED) {
      start = static_cast<double*>(reserved);
      for (size_t at = 0; at < windowBytes && start != nullptr; at += periodBytes) {
        const bool isOwn = ownEnds && (at == 0 || at == windowBytes - periodBytes);
        if (mmap(static_cast<char*>(reserved) + at, periodBytes, PROT_READ | PROT_WRITE,
                 (isOwn ? MAP_PRIVATE | MAP_ANONYMOUS : MAP_SHARED) | MAP_FIXED, isOwn ? -1 : file, 0) == MAP_FAILED)
          start = nullptr;
      }
      if (start == nullptr) munmap(reserved, windowBytes + periodBytes);
    }
    close(file);
  }
  ~Window() {
    if (start != nullptr) munmap(start, windowBytes + periodBytes);
  }
};

double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

// One function for each kind of loop, at the highest level; cheap ones first, as many as the time allows.
TEST(LongestArrays, AreWorkedThroughToTheirEnd) {
  if (isSanitized) GTEST_SKIP() << "no room for the addresses";
  const Window source(false), target(true), secondTarget(true);
  if (source.start == nullptr || target.start == nullptr || secondTarget.start == nullptr)
    GTEST_SKIP() << "16 GiB of addresses can't be had three times";
  constexpr double canary = -7.25e-77, secondsAllowed = 12;
  const double begin = processorSeconds();
  for (const std::string_view stem : {"exp", "floor", "sqrt", "sin", "cbrt", "div", "modf", "pow"}) {
    if (processorSeconds() - begin > secondsAllowed) break;
    const Function& f = *std::find_if(functions().begin(), functions().end(), [&](auto& g) { return g.stem == stem; });
    // Both inputs of a binary function are the same array.
    const Inputs x = ordinaryInputs(f, 41, period);
    std::memcpy(source.start, x.in[0].data(), periodBytes);
    std::vector<double> expected[2] = {std::vector<double>(period), std::vector<double>(period)};
    f({{source.start, source.start}, {expected[0].data(), expected[1].data()}, {}, period, {}, {}});
    double* const ends[2] = {target.start, secondTarget.start};
    const auto outputs = static_cast<size_t>(f.signature.outputs);
    const size_t last = windowBytes / sizeof(double) - period;
    for (size_t k = 0; k < outputs; ++k) {
      std::fill_n(ends[k], period, canary);
      std::fill_n(ends[k] + last, period, canary);
    }

    EXPECT_EQ(f({{source.start, source.start}, {ends[0], ends[1]}, {}, longest, {}, {}}), nuvStatusOk) << stem;
    for (size_t k = 0; k < outputs; ++k) {
      EXPECT_EQ(std::memcmp(ends[k], expected[k].data(), periodBytes), 0) << stem << ": the first elements";
      EXPECT_EQ(std::memcmp(ends[k] + last, expected[k].data(), periodBytes - sizeof(double)), 0)
          << stem << ": the last elements";
      EXPECT_EQ(ends[k][longest], canary) << stem << ": behind the last element";
    }
  }
}

}  // namespace
}  // namespace qorvane::test

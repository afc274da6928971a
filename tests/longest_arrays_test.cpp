// Long arrays: no index, length or address is worked out in 32 bits, and the last elements are written. Real functions
// go through more bytes than 31 bits count, the cheap ones for each kind of loop through INT32_MAX elements as well,
// at the highest level and as far as the time allows; what is left out is printed. With QORVANE_LONGEST=all every
// function goes through more than 31 bits of bytes with each of its programs, however long that takes, and every real
// one through INT32_MAX elements.
// 16 GiB of addresses an array, nearly all of its pages being one small file.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iostream>
#include <string>

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

constexpr size_t period = 1 << 17, periodBytes = period * sizeof(double), windowBytes = size_t{1} << 34,
                 beforeBytes = size_t{1} << 32;
// In doubles: the first of the last period of the two lengths; the very last double isn't in the array.
constexpr size_t beyond31Bits = size_t{1} << 28, beyond34Bits = windowBytes / sizeof(double) - period;

// The same megabyte again and again, but for memory of its own at the beginning and at both ends. The 4 GiB before it
// can't be touched, nor can what is behind it.
struct Window {
  void* reserved = MAP_FAILED;
  double* start = nullptr;

  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  Window() {
    const int file = memfd_create("longest", 0);
    if (file < 0 || ftruncate(file, periodBytes) != 0) return;
    reserved = mmap(nullptr, beforeBytes + windowBytes + periodBytes, PROT_NONE,
                    MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (reserved != MAP_FAILED) {
      start = reinterpret_cast<double*>(static_cast<char*>(reserved) + beforeBytes);
      for (size_t at = 0; at < windowBytes / sizeof(double) && start != nullptr; at += period) {
        const bool isOwn = at == 0 || at == beyond31Bits || at == beyond34Bits;
        if (mmap(start + at, periodBytes, PROT_READ | PROT_WRITE,
                 (isOwn ? MAP_PRIVATE | MAP_ANONYMOUS : MAP_SHARED) | MAP_FIXED, isOwn ? -1 : file, 0) == MAP_FAILED)
          start = nullptr;
      }
    }
    close(file);
  }
  ~Window() {
    if (reserved != MAP_FAILED) munmap(reserved, beforeBytes + windowBytes + periodBytes);
  }
};

double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

constexpr double canary = -7.25e-77;
struct Windows {
  Window source, outputs[2];
  std::string skipped;
};

// Runs f over an array that ends one double short of the period at `last`, if `seconds` are enough, and takes from them
// what it needed. The last period has other arguments than those before it.
void expectTheEnd(Windows& w, const Function& f, size_t last, double& seconds) {
  const auto outputs = static_cast<size_t>(f.signature.outputs), parts = static_cast<size_t>(f.signature.parts);
  const auto elements = static_cast<int32_t>(period / parts),
             length = static_cast<int32_t>((last + period) / parts - 1);
  const Inputs first = ordinaryInputs(f, 41, elements), other = ordinaryInputs(f, 42, elements);
  // Both inputs of a binary function are the same array.
  const auto callOf = [&](const double* x, double* y, double* z, int32_t len) {
    return f({{x, x}, {y, z}, {first.value[0], first.value[1]}, len, {}, {}});
  };
  Window& source = w.source;
  for (const size_t at : {size_t{0}, period}) std::memcpy(source.start + at, first.in[0].data(), periodBytes);
  std::memcpy(source.start + last, other.in[0].data(), periodBytes);
  std::vector<double> expected[2][2];
  for (auto& which : expected)
    for (auto& one : which) one.resize(period);
  double begin = processorSeconds();
  callOf(first.in[0].data(), expected[0][0].data(), expected[0][1].data(), elements);
  callOf(other.in[0].data(), expected[1][0].data(), expected[1][1].data(), elements);
  if ((processorSeconds() - begin) * static_cast<double>(last) / (2 * period) > seconds) {
    w.skipped.append(" ").append(f.stem).append(last == beyond31Bits ? "" : " (INT32_MAX)");
    return;
  }
  double* const ends[2] = {w.outputs[0].start, w.outputs[1].start};
  for (size_t k = 0; k < outputs; ++k) {
    std::fill_n(ends[k], period, canary);
    std::fill_n(ends[k] + last, period, canary);
  }
  begin = processorSeconds();
  EXPECT_EQ(callOf(source.start, ends[0], ends[1], length), nuvStatusOk) << f.stem;
  seconds -= processorSeconds() - begin;
  for (size_t k = 0; k < outputs; ++k) {
    EXPECT_EQ(std::memcmp(ends[k], expected[0][k].data(), periodBytes), 0) << f.stem << ": the first elements";
    EXPECT_EQ(std::memcmp(ends[k] + last, expected[1][k].data(), periodBytes - parts * sizeof(double)), 0)
        << f.stem << ": the last elements";
    EXPECT_EQ(ends[k][last + period - parts], canary) << f.stem << ": behind the last element";
  }
}

TEST(LongestArrays, AreWorkedThroughToTheirEnd) {
  if (isSanitized) GTEST_SKIP() << "no room for the addresses";
  Windows w;
  if (w.source.start == nullptr || w.outputs[0].start == nullptr || w.outputs[1].start == nullptr)
    GTEST_SKIP() << "20 GiB of addresses can't be had three times";
  const char* wish = std::getenv("QORVANE_LONGEST");
  const bool isAll = wish != nullptr && std::string_view(wish) == "all";
  double seconds = isAll ? HUGE_VAL : 8, secondsForLongest = isAll ? HUGE_VAL : 6;
  // One for each kind of loop first, cheap ones before others.
  constexpr std::string_view kinds[] = {"exp", "floor", "sqrt",  "sin",   "cbrt",   "div",  "modf",
                                        "ln",  "powx",  "asin",  "atan2", "tanh",   "erfc", "tan",
                                        "pow", "acosh", "atanh", "sinh",  "erfInv", "atan", "complexSqrt"};
  std::vector<const Function*> order;
  for (const Function& f : functions()) order.push_back(&f);
  std::stable_sort(order.begin(), order.end(), [&](const Function* a, const Function* b) {
    return std::ranges::find(kinds, a->stem) < std::ranges::find(kinds, b->stem);
  });
  const int highest = supportedLevels().back();
  for (const Function* f : order)
    for (size_t program = 0; program < f->programCount; ++program) {
      const int level = f->programs[program].firstLevel;
      if (level > highest || (!isAll && program != f->programAt(highest))) continue;
      AtLevel at(level);
      expectTheEnd(w, *f, beyond31Bits, seconds);
      if (f->signature.parts == 1 && (isAll || f->stem == "exp")) expectTheEnd(w, *f, beyond34Bits, secondsForLongest);
    }
  if (!w.skipped.empty()) std::cout << "no time for:" << w.skipped << "\n";
}

}  // namespace
}  // namespace qorvane::test

// What holds for every function, at every level: an element's bits don't depend on where it stands
// or who stands beside it, and nothing beyond the arrays is touched.
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>

#include "tests/every_function.h"

namespace qorvane::test {
namespace {

class EveryFunction : public AtEveryLevel {};

TEST_P(EveryFunction, GivesAnElementTheSameBitsWhereverItStands) {
  for (uint64_t seed = 1; seed <= 3; ++seed) {
    const Sample s = sampleOf(seed);
    for (int32_t first = 0; first < 5; ++first)
      for (int32_t len : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 13, 15, 16, 17, 23, 31, 33, 63, 64, 65, 127, 130, 255}) {
        Outputs y = outputsFor(len + 2);
        Call c = from(callOf(s.inputs, y, len), first);
        for (auto& out : c.out) out += f.reals(1);
        EXPECT_EQ(f(c), s.lastStatus(first, len)) << "length " << len;
        expectResults(s, first, c.out, len, "in an array");
        for (size_t k = 0; k < 2; ++k)
          for (size_t i = 0; i < f.reals(1); ++i)
            EXPECT_TRUE(y[k][i] == canary && y[k][f.reals(len + 1) + i] == canary) << "length " << len;
      }
  }
}

// Long stretches of ordinary arguments run through pipelines, some of which a single other argument
// stops.
TEST_P(EveryFunction, GivesTheSameBitsInLongStretches) {
  constexpr int32_t longest = 1100;
  for (const double outsider :
       {1.0, 0.0, -1.0, 0x1p-1074, 0x1.9p-1021, 0x1p-130, 0x1.9p129, 1e300, HUGE_VAL, -HUGE_VAL, double{NAN}}) {
    Inputs x = ordinaryInputs(f, 7, longest);
    size_t part = 0;
    for (const int32_t place : {40, 300, 1050}) x.in[0][f.reals(place) + part++ % f.reals(1)] = outsider;
    if (f.signature.inputs == 2) x.in[1][f.reals(300)] = 0.8 * outsider;  // a moderate ratio
    const Sample s = sampleOf(std::move(x));
    Outputs y = outputsFor(longest);
    for (int32_t first : {0, 3, 41})
      for (int32_t len : {45, 255, 261, 520, 1059}) {
        Call c = from(callOf(s.inputs, y, len), first);
        EXPECT_EQ(f(c), s.lastStatus(first, len));
        expectResults(s, first, c.out, len, "in a stretch");
        std::vector<double> shared = s.inputs.in[0];
        c.in[0] = c.out[0] = &shared[f.reals(first)];
        const nuvStatus status = f(c);
        if (knowsStatusInPlace()) {
          EXPECT_EQ(status, s.lastStatus(first, len));
        }
        expectResults(s, first, c.out, len, "in a stretch, in place");
        if (HasFatalFailure()) return;
      }
  }
}

TEST_P(EveryFunction, WorksAtAnyAddress) {
  constexpr int32_t len = 259;
  const size_t size = f.reals(len) * 8;
  const auto samples = bothSamplesOf(4);
  for (size_t which = 0; which < 6; ++which) {
    const Sample& s = samples[which / 3];
    const size_t shift = std::array{1, 4, 7}[which % 3];  // bytes off the alignment of a double
    std::array<std::vector<char>, 4> bytes;
    Outputs y = outputsFor(len);
    Call c = callOf(s.inputs, y, len);
    for (size_t k = 0; k < 4; ++k) {
      bytes[k].resize(size + 8);
      auto* array = reinterpret_cast<double*>(&bytes[k][shift]);
      if (k < 2) std::memcpy(array, c.in[k], size), c.in[k] = array;
      if (k >= 2) c.out[k - 2] = array;
    }
    EXPECT_EQ(f(c), s.lastStatus(0, len));
    for (size_t k = 0; k < 2; ++k) std::memcpy(y[k].data(), c.out[k], size);
    double* const out[] = {y[0].data(), y[1].data()};
    expectResults(s, 0, out, len, "misaligned");
  }
}

// Each array moved by its own offset; the large ones are more bytes than 32 bits count.
TEST_P(EveryFunction, IsTheSameThroughItsTwin) {
  constexpr int32_t len = 259;
  const auto samples = bothSamplesOf(4);
  for (const std::array<int32_t, 4>& offsets :
       {std::array{0, 0, 0, 0}, std::array{1, 2, 3, 4}, std::array{-5, 7, -3, 11}, std::array{INT32_MIN, 1, -1, 2},
        std::array{0x20000001, INT32_MAX, 0x40000000, INT32_MIN}}) {
    const Sample& s = samples[offsets[0] < 0];
    Outputs y = outputsFor(len);
    const Call c = callOf(s.inputs, y, len);
    EXPECT_EQ(f.twin(forTwin(f, c, offsets)), s.lastStatus(0, len));
    expectResults(s, 0, c.out, len, "through the twin");
  }
}

// Any output may be the very array of any input.
TEST_P(EveryFunction, WorksInPlace) {
  constexpr int32_t len = 259;
  const auto samples = bothSamplesOf(4);
  for (const Sample& s : samples)
    for (size_t pair = 0; pair < inputs * outputs; ++pair) {
      const size_t in = pair % inputs, out = pair / inputs;
      Inputs x = s.inputs;
      Outputs y = outputsFor(len);
      Call c = callOf(x, y, len);
      c.out[out] = x.in[in].data();
      const nuvStatus status = f(c);
      if (knowsStatusInPlace()) {
        EXPECT_EQ(status, s.lastStatus(0, len));
      }
      expectResults(s, 0, c.out, len, "in place");
    }
}

// Pages that can't be touched stand right before or right behind the arrays.
TEST_P(EveryFunction, TouchesNothingBesideItsArrays) {
  const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  constexpr int32_t longest = 1040;
  const size_t space = (f.reals(longest) * 8 + page - 1) / page * page, spread = space + 2 * page;
  char* memory = static_cast<char*>(mmap(nullptr, 4 * spread, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  ASSERT_NE(memory, MAP_FAILED);
  for (size_t i = 0; i < 4; ++i) ASSERT_EQ(mprotect(memory + i * spread + page, space, PROT_READ | PROT_WRITE), 0);
  const auto samples = bothSamplesOf(5, longest);
  for (bool atEnd : {false, true})
    for (int32_t step = 1; step <= 100; ++step) {
      const int32_t len = step <= 70 ? step : 70 + (step - 70) * 32 + step % 9;  // to 1038
      const Sample& s = samples[step % 2];
      const size_t size = f.reals(len) * 8;
      Outputs unused;
      Call c = callOf(s.inputs, unused, len);
      for (size_t i = 0; i < 4; ++i) {
        auto* array = reinterpret_cast<double*>(memory + i * spread + page + (atEnd ? space - size : 0));
        if (i < 2) std::memcpy(array, c.in[i], size), c.in[i] = array;
        if (i >= 2) c.out[i - 2] = array;
      }
      f(c);
      expectResults(s, 0, c.out, len, atEnd ? "before a guard page" : "behind a guard page");
    }
  munmap(memory, 4 * spread);
}

// Stretches long enough for every pipeline, at the same time on several threads, each with elements of its own; in
// place, too, where buffers may take the results.
TEST_P(EveryFunction, RunsOnManyThreadsAtOnce) {
  constexpr int32_t length = 1040;
  constexpr int count = 3;
  const auto samples = bothSamplesOf(8, length + 8 * count);
  int wrong[count] = {};
  std::atomic<int> arrived{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < count; ++t)
    threads.emplace_back([&, t] {
      const int32_t first = 8 * t;
      Outputs y = outputsFor(length);
      ++arrived;
      while (arrived < count) {
      }
      const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(1500);
      for (size_t round = 0; round < 4 || std::chrono::steady_clock::now() < end; ++round) {
        const Sample& s = samples[round % 2];
        Call c = from(callOf(s.inputs, y, length), first);
        if (round % 4 >= 2) {
          std::copy_n(c.in[0], y[0].size(), y[0].begin());
          c.in[0] = y[0].data();
        }
        f(c);
        for (size_t k = 0; k < outputs; ++k)
          for (size_t i = 0; i < y[k].size(); ++i)
            wrong[t] += !sameResult(contract, y[k][i], s.alone[k][f.reals(first) + i]);
      }
    });
  for (auto& thread : threads) thread.join();
  for (int w : wrong) EXPECT_EQ(w, 0);
}

// Where everything is ordinary, "by blocks" is no excuse: in arrays of any length the bits are those of one long array.
TEST_P(EveryFunction, GivesOrdinaryElementsTheSameBitsInShortAndLongArrays) {
  constexpr int32_t length = 700;
  const Inputs x = ordinaryInputs(f, 12, length);
  Outputs whole = outputsFor(length), y = outputsFor(length);
  f(callOf(x, whole, length));
  for (int32_t first : {0, 2, 5, 64})
    for (int32_t len : {1, 2, 3, 4, 5, 7, 8, 12, 13, 16, 33, 40, 65, 130, 257, 600}) {
      if (f.stem == "sinCos" && level == 5 && len % 8 != 0) continue;  // lone elements are added up in another order
      if (f.stem == "tan" && first % 2 != 0) continue;                 // pairs share a division
      Call c = from(callOf(x, y, len), first);
      f(c);
      for (size_t k = 0; k < outputs; ++k)
        for (size_t i = 0; i < f.reals(len); ++i)
          ASSERT_EQ(bits(y[k][i]), bits(whole[k][f.reals(first) + i]))
              << "element " << i / f.reals(1) << " of " << len << " from " << first
              << " on, x = " << x.in[0][f.reals(first) + i];
    }
}

INSTANTIATE_TEST_SUITE_P(Properties, EveryFunction, everyFunctionAndLevel(), nameOf);

}  // namespace
}  // namespace qorvane::test

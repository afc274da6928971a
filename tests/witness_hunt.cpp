// qorvane-witnesses: finds arguments whose bits change when the last bit of a constant or of a table's entry does.
//   qorvane-witnesses build/libqorvane_internal.a [STEM...] > tests/witnesses.inc
// A kernel is linked into a shared object of its own. In its read-only data, which holds its constants and tables, the
// last bit of one 8-byte word after the other is turned over; where the recorded arguments don't show it, a hunt over
// the function's ranges, and next to all constants, finds one that does: many words are turned at once, and halves of
// them where that shows. Where none is found, a higher bit is tried (the last ones of a low part move nothing). Words
// that nothing shows are counted on stderr, those that the kernel doesn't read apart (another function's of the same
// source): thresholds that any value near them serves as well, low parts for the rare path; with QORVANE_UNSEEN set they
// are listed.
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <numeric>
#include <set>
#include <span>
#include <string>

#include "tests/recorded_inputs.h"
#include "tests/test_support.h"
#include "tools/references.h"

namespace qorvane::test {
namespace {

using Caller = nuvStatus (*)(void* kernel, const Call& c);
struct Shape {
  std::string_view stem;
  Caller call;
};
constexpr Shape shapesOfFunctions[] = {
#define FUNCTION(name, stem, shape, ...) \
  {#stem, [](void* kernel, const Call& c) { return call(reinterpret_cast<shapes::shape*>(kernel), c); }},
#include "frame/functions.inc"
#undef FUNCTION
};

// A turned bit may send a jump anywhere.
sigjmp_buf wayOut;
void leave(int) { siglongjmp(wayOut, 1); }

struct Kernel {
  void* entry = nullptr;
  Caller caller = nullptr;
  uint64_t* words = nullptr;
  size_t count = 0;
};

std::string outputOf(const std::string& command) {
  std::string text;
  FILE* pipe = popen(command.c_str(), "r");
  for (int c; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
  pclose(pipe);
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

Kernel loadKernel(const std::string& archive, const Function& f, size_t program) {
  std::string ending(f.programs[program].name);
  ending[0] = static_cast<char>(ending[0] - 'a' + 'A');
  const std::string stem = std::string(f.stem) + ending,
                    mangled = "_ZN7qorvane" + std::to_string(stem.size()) + stem + "E",
                    symbol = outputOf("nm -g --defined-only " + archive + " 2>/dev/null | grep -o '" + mangled +
                                      "[A-Za-z0-9_]*$' | head -1"),
                    object = "/tmp/witness_" + stem + "_" + std::to_string(getpid()) + ".so";
  // Hidden symbols are found through one of the object's own that points at the kernel.
  const std::string source = object + ".s";
  std::ofstream(source) << ".globl kernel\n.data\nkernel: .quad " << symbol << "\n.section .note.GNU-stack\n";
  if (std::system(("gcc -shared -o " + object + " " + source + " " + archive + " -lgomp -lm").c_str()) != 0)
    std::exit(1);
  void* handle = dlopen(object.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) std::fprintf(stderr, "%s\n", dlerror()), std::exit(1);
  Kernel k;
  k.entry = *static_cast<void**>(dlsym(handle, "kernel"));
  for (const Shape& shape : shapesOfFunctions)
    if (shape.stem == f.stem) k.caller = shape.call;
  link_map* map;
  dlinfo(handle, RTLD_DI_LINKMAP, &map);
  std::ifstream in(object, std::ios::binary);
  const std::string file((std::istreambuf_iterator<char>(in)), {});
  const auto* header = reinterpret_cast<const ElfW(Ehdr)*>(file.data());
  const auto* sections = reinterpret_cast<const ElfW(Shdr)*>(file.data() + header->e_shoff);
  const char* names = file.data() + sections[header->e_shstrndx].sh_offset;
  for (int i = 0; i < header->e_shnum; ++i)
    if (std::string_view(names + sections[i].sh_name) == ".rodata") {
      k.words = reinterpret_cast<uint64_t*>(map->l_addr + sections[i].sh_addr);
      k.count = sections[i].sh_size / 8;
    }
  const auto page = reinterpret_cast<uintptr_t>(k.words) & ~uintptr_t{4095};
  mprotect(reinterpret_cast<void*>(page), reinterpret_cast<uintptr_t>(k.words + k.count) - page,
           PROT_READ | PROT_WRITE);
  std::remove(object.c_str());
  std::remove(source.c_str());
  return k;
}

struct Batch {
  Inputs inputs;
  std::array<std::vector<double>, 2> results;
  nuvStatus status = nuvStatusOk;
  int64_t microseconds = 900'000;  // of the processor, that are more than enough
};

// False where the kernel left the track.
bool run(const Kernel& k, const Function& f, const Inputs& x, std::array<std::vector<double>, 2>& out,
         nuvStatus& status, int64_t microseconds) {
  if (sigsetjmp(wayOut, 1) != 0) return false;
  const itimerval limit = {{0, 0}, {0, microseconds}}, none = {};
  setitimer(ITIMER_VIRTUAL, &limit, nullptr);
  status = k.caller(k.entry, {{x.in[0].data(), x.in[1].data()},
                              {out[0].data(), out[1].data()},
                              {x.value[0], x.value[1]},
                              static_cast<int32_t>(x.in[0].size() / f.reals(1)),
                              {},
                              {}});
  setitimer(ITIMER_VIRTUAL, &none, nullptr);
  return true;
}

bool isSame(double a, double b) { return bits(a) == bits(b) || (a != a && b != b); }

// The elements whose bits are others now, and whether all is well but for them: the kernel stayed on its track, and if
// no element changed the status didn't either.
bool changes(const Kernel& k, const Function& f, const Batch& b, std::vector<size_t>& elements) {
  static std::array<std::vector<double>, 2> out;
  for (size_t i = 0; i < 2; ++i) out[i].assign(b.results[i].size(), 0);
  elements.clear();
  nuvStatus status = nuvStatusOk;
  if (!run(k, f, b.inputs, out, status, b.microseconds)) return false;
  const size_t parts = f.reals(1);
  for (size_t i = 0; i < 2; ++i) {
    if (std::memcmp(out[i].data(), b.results[i].data(), out[i].size() * sizeof(double)) == 0) continue;
    for (size_t r = 0; r < out[i].size(); ++r)
      if (!isSame(out[i][r], b.results[i][r]) && (elements.empty() || elements.back() != r / parts))
        elements.push_back(r / parts);
  }
  return !elements.empty() || status == b.status;
}
bool shows(const Kernel& k, const Function& f, const Batch& b) {
  std::vector<size_t> elements;
  return !changes(k, f, b, elements) || !elements.empty();
}
Batch batchOf(const Kernel& k, const Function& f, Inputs x) {
  Batch b;
  const size_t size = x.in[0].size();
  b.results = {std::vector<double>(size), std::vector<double>(f.signature.outputs == 2 ? size : 0)};
  const std::clock_t begin = std::clock();
  if (!run(k, f, x, b.results, b.status, b.microseconds))
    std::fprintf(stderr, "%s fails by itself\n", f.stem.data()), std::exit(1);
  b.microseconds = std::min<int64_t>(b.microseconds, 10'000 + 10'000'000 * (std::clock() - begin) / CLOCKS_PER_SEC);
  b.inputs = std::move(x);
  return b;
}

accuracy::Point elementOf(const Function& f, const Inputs& x, size_t element) {
  const auto parts = static_cast<size_t>(f.signature.parts), inputs = static_cast<size_t>(f.signature.inputs);
  accuracy::Point p{};
  for (size_t r = 0; r < inputs * parts; ++r) p[r] = x.in[r / parts][element * parts + r % parts];
  for (size_t r = 0; r < parts && f.signature.scalar; ++r) p[inputs * parts + r] = x.value[r];
  return p;
}

// Batches to hunt in: the ranges; each constant as an argument with its neighbours and its opposite; arguments around
// the high words that ranges are told by.
std::vector<Batch> huntingGround(const Kernel& k, const Function& f) {
  std::vector<Batch> all;
  accuracy::Random random{77};
  const auto ranges = accuracy::rangesOf(f.stem);
  const size_t rounds = f.signature.scalar ? 200 : 24 / ranges.size() + 1;
  for (size_t round = 0; round < rounds; ++round)
    for (const accuracy::Range& range : ranges) {
      const size_t length = f.signature.scalar ? 256 : 1 << 16;
      Inputs x{{std::vector<double>(f.reals(static_cast<int32_t>(length))),
                std::vector<double>(f.reals(static_cast<int32_t>(length)))},
               {}};
      accuracy::drawArguments(range, f.signature, random, length, {x.in[0].data(), x.in[1].data()}, x.value.data());
      all.push_back(batchOf(k, f, std::move(x)));
    }
  std::vector<double> edges;
  const auto add = [&](double e) {
    if (std::isfinite(e) && std::fabs(e) >= 0x1p-1000)
      for (const double near : {e, std::nextafter(e, HUGE_VAL), std::nextafter(e, -HUGE_VAL)})
        edges.insert(edges.end(), {near, -near});
  };
  std::set<uint32_t> highWords;
  for (size_t i = 0; i < k.count; ++i) {
    add(number(k.words[i]));
    const auto high = static_cast<uint32_t>(k.words[i] >> 32);
    if (high == static_cast<uint32_t>(k.words[i])) highWords.insert(high);  // a word that is compared with high words
    add(number(uint64_t{high} << 32));
  }
  constexpr int tries = 64;
  for (const uint32_t high : highWords)
    for (int i = 0; i < 3 * tries; ++i) {
      const auto low = static_cast<uint32_t>(random.unit() * 0x1p32);
      const double e = number(uint64_t{high + static_cast<uint32_t>(i % 3) - 1} << 32 | low);
      if (std::isfinite(e)) edges.insert(edges.end(), {e, -e});
    }
  const size_t parts = f.reals(1);
  edges.resize(edges.size() / parts * parts);
  for (int which = 0; which < 2; ++which) {
    Inputs x{{edges, edges}, {1.75, 0.5}};
    if (which == 1)
      for (double& v : x.in[1]) v = random.unit() * 8 - 4;
    all.push_back(batchOf(k, f, std::move(x)));
  }
  return all;
}

Batch partOf(const Kernel& k, const Function& f, const Batch& b, const std::vector<size_t>& elements) {
  const size_t parts = f.reals(1);
  Inputs x{{}, b.inputs.value};
  for (size_t i = 0; i < 2; ++i)
    for (const size_t e : elements)
      for (size_t r = e * parts; r < (e + 1) * parts; ++r) x.in[i].push_back(b.inputs.in[i][r]);
  return batchOf(k, f, std::move(x));
}

struct Hunt {
  const Function& f;
  Kernel k;
  std::vector<uint64_t> words;   // as they are
  uint64_t turned = 0;           // the bits of a word that are turned; 0: both its halves become one less
  std::vector<Batch> witnesses;  // those found for these bits
  std::vector<accuracy::Point>& all;

  void turn(std::span<const size_t> which) const {
    for (const size_t i : which) k.words[i] = turned != 0 ? words[i] ^ turned : words[i] - 0x0000'0001'0000'0001;
  }
  void turnBack(std::span<const size_t> which) const {
    for (const size_t i : which) k.words[i] = words[i];
  }

  // Looks in the batches for elements that show words of `mine`, which leave it where found(word, element) agrees. Words
  // are turned together, and each half of them is looked for among the elements that this changes.
  template <class Found>
  void search(std::vector<size_t>& mine, const std::vector<Batch>& batches, Found found) {
    if (mine.empty()) return;
    std::vector<Batch> changed;
    std::vector<size_t> elements;
    for (const Batch& b : batches) {
      turn(mine);
      const bool isWell = changes(k, f, b, elements);
      turnBack(mine);
      if (isWell && elements.empty()) continue;
      if (mine.size() == 1) {
        if (!found(mine[0], b, isWell ? elements[0] : SIZE_MAX)) continue;
        return mine.clear();
      }
      changed.push_back(isWell && elements.size() < b.inputs.in[0].size() / f.reals(1) / 2 ? partOf(k, f, b, elements)
                                                                                           : b);
    }
    if (changed.empty()) return;
    const auto middle = mine.begin() + static_cast<std::ptrdiff_t>(mine.size() / 2);
    std::vector<size_t> lower(mine.begin(), middle), upper(middle, mine.end());
    search(lower, changed, found);
    search(upper, changed, found);
    mine = std::move(lower);
    mine.insert(mine.end(), upper.begin(), upper.end());
  }

  // Whether an element shows the word alone among its copies, too; then it is written.
  bool isWitness(size_t word, const Batch& b, size_t element) {
    if (element == SIZE_MAX) return false;
    const auto isShown = [&](const Batch& one) {
      turn({&word, 1});
      const bool shown = shows(k, f, one);
      turnBack({&word, 1});
      return shown;
    };
    if (std::any_of(witnesses.begin(), witnesses.end(), isShown)) return true;
    const accuracy::Point p = elementOf(f, b.inputs, element);
    Batch witness = batchOf(k, f, copiesOf(f, p));
    if (!isShown(witness)) return false;
    std::printf("WITNESS(%s", f.stem.data());
    for (int real = 0; real < f.signature.realsIn(); ++real)
      std::printf(", 0x%016" PRIx64, bits(p[static_cast<size_t>(real)]));
    std::puts(")");
    std::fflush(stdout);
    all.push_back(p);
    witnesses.push_back(std::move(witness));
    return true;
  }
};

// `found`: the witnesses that were found for other programs of the function, and those that are found now.
void hunt(const std::string& archive, const Function& f, size_t program, std::vector<accuracy::Point>& found) {
  Hunt h{f, loadKernel(archive, f, program), {}, 0, {}, found};
  const Kernel& k = h.k;
  h.words.assign(k.words, k.words + k.count);
  std::vector<Batch> recorded;
  for (Inputs& x : recordedInputs(f, 100'000)) recorded.push_back(batchOf(k, f, std::move(x)));
  for (const accuracy::Point& p : found) recorded.push_back(batchOf(k, f, copiesOf(f, p)));
  const std::vector<Batch> ground = huntingGround(k, f);
  std::vector<size_t> left;
  for (size_t i = 0; i < k.count; ++i)
    if (k.words[i] != 0) left.push_back(i);
  std::fprintf(stderr, "%s, %s: %zu words; by bit, seen + found:", f.stem.data(),
               std::string(f.programs[program].name).c_str(), left.size());
  const auto any = [](size_t, const Batch&, size_t) { return true; };
  const auto huntFor = [&](std::vector<size_t>& those, const std::string& what) {
    const size_t before = those.size();
    std::erase_if(those,
                  [&](size_t word) {  // one by one, those that many elements show, and addresses that lead astray
                    std::vector<size_t> elements;
                    bool isSeen = false;
                    for (size_t b = 0; b < 2 && !isSeen; ++b) {
                      h.turn({&word, 1});
                      isSeen = !changes(k, f, recorded[b], elements) || !elements.empty();
                      h.turnBack({&word, 1});
                    }
                    return isSeen;
                  });
    h.search(those, recorded, any);
    const size_t unrecorded = those.size();
    h.search(those, ground, [&](size_t word, const Batch& b, size_t element) { return h.isWitness(word, b, element); });
    std::fprintf(stderr, " %s: %zu + %zu (%zu rows),", what.c_str(), before - unrecorded, unrecorded - those.size(),
                 h.witnesses.size());
    for (Batch& b : h.witnesses) recorded.push_back(std::move(b));
    h.witnesses.clear();
  };
  // Words that are compared with high words stand there twice; from above and from below.
  std::vector<size_t> ends;
  for (const size_t i : left)
    if (k.words[i] >> 32 == (k.words[i] & 0xffffffffu)) ends.push_back(i);
  h.turned = 0;
  huntFor(ends, "less");
  for (const int position : {0, 12, 24, 36, 44, 48, 52}) {
    h.turned = uint64_t{1} << position;
    huntFor(left, std::to_string(position));
  }
  // Who isn't read at all?
  h.turned = ~uint64_t{0};
  std::vector<size_t> unread = left;
  std::erase_if(unread, [&](size_t word) {
    h.turn({&word, 1});
    const auto isShown = [&](const Batch& b) { return shows(k, f, b); };
    const bool shown =
        std::any_of(recorded.begin(), recorded.end(), isShown) || std::any_of(ground.begin(), ground.end(), isShown);
    h.turnBack({&word, 1});
    return shown;
  });
  std::fprintf(stderr, " unseen: %zu, never read: %zu\n", left.size() - unread.size(), unread.size());
  for (const size_t i : left)
    if (std::getenv("QORVANE_UNSEEN") != nullptr && std::find(unread.begin(), unread.end(), i) == unread.end())
      std::fprintf(stderr, "  unseen: word %zu of %zu, 0x%016" PRIx64 ", %.17g\n", i, k.count, k.words[i],
                   std::bit_cast<double>(k.words[i]));
}

}  // namespace
}  // namespace qorvane::test

int main(int count, char** arguments) {
  using namespace qorvane::test;
  if (count < 2) return std::fprintf(stderr, "usage: qorvane-witnesses ARCHIVE [STEM...]\n"), 2;
  for (const int s : {SIGSEGV, SIGILL, SIGBUS, SIGFPE, SIGVTALRM}) {
    struct sigaction action = {};
    action.sa_handler = leave;
    action.sa_flags = SA_NODEFER | SA_ONSTACK;
    sigaction(s, &action, nullptr);
  }
  accuracy::provideHardArguments();
  for (const Witness& w : witnesses()) {  // those that there are stay
    std::printf("WITNESS(%s", w.stem.data());
    for (const Function& f : functions())
      for (int real = 0; f.stem == w.stem && real < f.signature.realsIn(); ++real)
        std::printf(", 0x%016" PRIx64, bits(w.reals[static_cast<size_t>(real)]));
    std::puts(")");
  }
  for (const Function& f : functions()) {
    bool isWanted = count == 2;
    for (int i = 2; i < count; ++i) isWanted |= f.stem == arguments[i];
    std::vector<accuracy::Point> found;
    for (size_t program = 0; isWanted && program < f.programCount; ++program) hunt(arguments[1], f, program, found);
  }
}

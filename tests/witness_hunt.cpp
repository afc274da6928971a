// qorvane-witnesses: finds arguments whose bits change when the last bit of a constant or of a table's entry does.
//   qorvane-witnesses build/libqorvane_internal.a [STEM...] > tests/witnesses.inc
// A kernel is linked into a shared object of its own. In its read-only data, which holds its constants and tables, the
// last bit of one 8-byte word after the other is turned over; where the recorded arguments don't show it, a hunt over
// the function's ranges, and next to all constants, finds one that does; where none is found, a higher bit is tried
// (the last ones of a low part move nothing). Words that nothing shows are counted on stderr: other functions' of the
// same source, the low parts of rows for the rare path, thresholds that any value near them serves as well; with
// QORVANE_UNSEEN set they are listed.
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <unistd.h>

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
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

// Results and status as bits, NaNs as one; nothing where the kernel left the track.
std::vector<uint64_t> resultsOf(const Function& f, const Kernel& k, const Inputs& x) {
  const size_t size = x.in[0].size();
  std::vector<double> a(size), b(size);
  if (sigsetjmp(wayOut, 1) != 0) return {};
  const itimerval limit = {{0, 0}, {5, 0}}, none = {};
  setitimer(ITIMER_REAL, &limit, nullptr);
  const nuvStatus status = k.caller(k.entry, {{x.in[0].data(), x.in[1].data()},
                                              {a.data(), b.data()},
                                              {x.value[0], x.value[1]},
                                              static_cast<int32_t>(size / f.reals(1)),
                                              {},
                                              {}});
  setitimer(ITIMER_REAL, &none, nullptr);
  std::vector<uint64_t> results = {static_cast<uint64_t>(status)};
  for (const auto* out : {&a, &b})
    for (const double v : *out) results.push_back(v != v ? 0x7ff8000000000000u : bits(v));
  return results;
}

struct Batch {
  Inputs inputs;
  std::vector<uint64_t> results;
};
bool shows(const Function& f, const Kernel& k, const Batch& batch) {
  return resultsOf(f, k, batch.inputs) != batch.results;
}
Batch batchOf(const Function& f, const Kernel& k, Inputs x) {
  std::vector<uint64_t> results = resultsOf(f, k, x);
  return {std::move(x), std::move(results)};
}

accuracy::Point elementOf(const Function& f, const Inputs& x, size_t element) {
  const auto parts = static_cast<size_t>(f.signature.parts), inputs = static_cast<size_t>(f.signature.inputs);
  accuracy::Point p{};
  for (size_t r = 0; r < inputs * parts; ++r) p[r] = x.in[r / parts][element * parts + r % parts];
  for (size_t r = 0; r < parts && f.signature.scalar; ++r) p[inputs * parts + r] = x.value[r];
  return p;
}

// Batches to hunt in: the ranges, and each constant as an argument with its neighbours and its opposite.
std::vector<Batch> huntingGround(const Function& f, const Kernel& k) {
  std::vector<Batch> all;
  accuracy::Random random{77};
  const auto ranges = accuracy::rangesOf(f.stem);
  const size_t rounds = f.signature.scalar ? 200 : 6;
  for (size_t round = 0; round < rounds; ++round)
    for (const accuracy::Range& range : ranges) {
      const size_t length = f.signature.scalar ? 256 : 1 << 16;
      Inputs x{{std::vector<double>(f.reals(static_cast<int32_t>(length))),
                std::vector<double>(f.reals(static_cast<int32_t>(length)))},
               {}};
      accuracy::drawArguments(range, f.signature, random, length, {x.in[0].data(), x.in[1].data()}, x.value.data());
      all.push_back(batchOf(f, k, std::move(x)));
    }
  std::vector<double> edges;
  for (size_t i = 0; i < k.count; ++i) {
    const auto c = std::bit_cast<double>(k.words[i]);
    if (!std::isfinite(c) || std::fabs(c) < 0x1p-1000) continue;
    for (const double e : {c, std::nextafter(c, HUGE_VAL), std::nextafter(c, -HUGE_VAL)})
      edges.insert(edges.end(), {e, -e});
  }
  const size_t parts = f.reals(1);
  edges.resize(edges.size() / parts * parts);
  for (int which = 0; which < 2; ++which) {
    Inputs x{{edges, edges}, {1.75, 0.5}};
    if (which == 1)
      for (double& v : x.in[1]) v = random.unit() * 8 - 4;
    all.push_back(batchOf(f, k, std::move(x)));
  }
  return all;
}

// An element of the hunting ground that shows the turned bits, alone among its copies as well.
bool findWitness(const Function& f, const Kernel& k, uint64_t& word, uint64_t turned, const std::vector<Batch>& ground,
                 Batch& witness) {
  for (const Batch& b : ground) {
    const std::vector<uint64_t> now = resultsOf(f, k, b.inputs);
    if (now == b.results || now.empty()) continue;
    const size_t size = b.inputs.in[0].size();
    for (size_t r = 1; r < now.size(); ++r) {
      if (now[r] == b.results[r]) continue;
      const accuracy::Point p = elementOf(f, b.inputs, (r - 1) % size / f.reals(1));
      word ^= turned;
      witness = batchOf(f, k, copiesOf(f, p));
      word ^= turned;
      if (!shows(f, k, witness)) continue;
      std::printf("WITNESS(%s", f.stem.data());
      for (int real = 0; real < f.signature.realsIn(); ++real)
        std::printf(", 0x%016" PRIx64, bits(p[static_cast<size_t>(real)]));
      std::puts(")");
      return true;
    }
  }
  return false;
}

void hunt(const std::string& archive, const Function& f, size_t program) {
  const Kernel k = loadKernel(archive, f, program);
  std::vector<Batch> known;
  for (Inputs& x : recordedInputs(f, 100'000)) known.push_back(batchOf(f, k, std::move(x)));
  const std::vector<Batch> ground = huntingGround(f, k);
  constexpr int positions[] = {0, 12, 24, 36, 44, 48};
  size_t recorded[6] = {}, found[6] = {}, unseen = 0;
  for (size_t i = 0; i < k.count; ++i) {
    if (k.words[i] == 0) continue;
    bool isSeen = false;
    for (int p = 0; p < 6 && !isSeen; ++p) {
      const uint64_t turned = uint64_t{1} << positions[p];
      Batch witness;
      k.words[i] ^= turned;
      if (std::any_of(known.rbegin(), known.rend(), [&](const Batch& b) { return shows(f, k, b); }))
        isSeen = true, ++recorded[p];
      else if (findWitness(f, k, k.words[i], turned, ground, witness))
        isSeen = true, ++found[p];
      k.words[i] ^= turned;
      if (!witness.results.empty() && isSeen) known.push_back(std::move(witness));
    }
    unseen += !isSeen;
    if (!isSeen && std::getenv("QORVANE_UNSEEN") != nullptr)
      std::fprintf(stderr, "  unseen: word %zu of %zu, 0x%016" PRIx64 "\n", i, k.count, k.words[i]);
  }
  std::fprintf(stderr, "%s, %s: of %zu words, the lowest of the bits 0, 12, 24, 36, 44, 48 that shows: ", f.stem.data(),
               std::string(f.programs[program].name).c_str(), k.count);
  for (int p = 0; p < 6; ++p) std::fprintf(stderr, "%zu + %zu new, ", recorded[p], found[p]);
  std::fprintf(stderr, "%zu none\n", unseen);
}

}  // namespace
}  // namespace qorvane::test

int main(int count, char** arguments) {
  using namespace qorvane::test;
  if (count < 2) return std::fprintf(stderr, "usage: qorvane-witnesses ARCHIVE [STEM...]\n"), 2;
  for (const int s : {SIGSEGV, SIGILL, SIGBUS, SIGFPE, SIGALRM}) {
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
    for (size_t program = 0; isWanted && program < f.programCount; ++program) hunt(arguments[1], f, program);
  }
}

#include "tools/served.h"

#include "frame/dispatch.h"

namespace qorvane {
namespace {

// "sse3_avx" and its levels as a list.
template <int count>
constexpr std::array<Program, mostPrograms> list(std::string_view endings, Programs<count> levels) {
  std::array<Program, mostPrograms> all{};
  for (size_t i = 0; i < count; ++i) {
    const size_t end = std::min(endings.find('_'), endings.size());
    all[i] = {endings.substr(0, end), levels.firstLevel[i], i + 1 < count ? levels.firstLevel[i + 1] - 1 : 5};
    endings.remove_prefix(std::min(end + 1, endings.size()));
  }
  return all;
}
template <int count>
constexpr size_t countOf(Programs<count>) {
  return count;
}

template <auto function>
nuvStatus through(const Call& c) {
  return call(function, c);
}

constexpr Served all[] = {
#define FUNCTION(name, stem, shape, family, list_) \
  {"nuvs" #name,                                   \
   #stem,                                          \
   #shape,                                         \
   #family,                                        \
   list(#list_, programs::list_),                  \
   countOf(programs::list_),                       \
   signatureOf(nuvs##name),                        \
   through<nuvs##name>,                            \
   through<nuvs##name##_Idx>},
#include "frame/functions.inc"
#undef FUNCTION
};

}  // namespace

std::span<const Served> served() { return all; }

}  // namespace qorvane

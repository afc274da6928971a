#include "tools/accuracy_options.h"

#include <getopt.h>

#include <cstdlib>
#include <cstring>
#include <optional>

#include "frame/dispatch.h"
#include "tools/options.h"

namespace accuracy {
namespace {

constexpr char program[] = "qorvane-accuracy";
constexpr char usage[] =
    "usage: qorvane-accuracy [OPTIONS] [FUNCTION...]\n"
    "Measures the functions (all served ones by default) against exact values, in units in the last place.\n"
    "  --level N      one level (default: each group of levels that run one program)\n"
    "  --range NAME   one range, by a part of its name (default: all of the function)\n"
    "  --count N      arguments for each range and level (default 1000000)\n"
    "  --seed N       of the generator (default 1)\n"
    "  --hunt         search around the worst arguments for worse ones, and print them as rows of "
    "<family>/accuracy.inc\n"
    "  --at A [B...]  the numbers of one element: 1, 2 or 4 (hexadecimal numbers and 0x patterns of 16 digits are "
    "understood too)\n"
    "  --write FILE   measure and hunt everything of the functions, renew their rows in FILE (docs/data/accuracy.csv)\n"
    "  --list         the functions, their ranges and bounds\n";

constexpr option longOptions[] = {
    {"level", required_argument, nullptr, 'l'}, {"range", required_argument, nullptr, 'r'},
    {"count", required_argument, nullptr, 'c'}, {"seed", required_argument, nullptr, 's'},
    {"hunt", no_argument, nullptr, 'H'},        {"at", required_argument, nullptr, 'a'},
    {"write", required_argument, nullptr, 'w'}, {"list", no_argument, nullptr, 'L'},
    {"help", no_argument, nullptr, 'h'},        {nullptr, 0, nullptr, 0}};

// A decimal or hexadecimal number, or a bit pattern of 16 hexadecimal digits.
std::optional<double> number(const char* text) {
  char* end;
  if (std::strlen(text) == 18 && std::strncmp(text, "0x", 2) == 0 && std::strpbrk(text, ".pP") == nullptr) {
    const uint64_t pattern = std::strtoull(text, &end, 16);
    double x;
    std::memcpy(&x, &pattern, sizeof x);
    if (*end == 0) return x;
  }
  const double x = std::strtod(text, &end);
  return end != text && *end == 0 ? std::optional(x) : std::nullopt;
}

int64_t wholeNumber(const char* name, const char* text, int64_t low, int64_t high) {
  const auto x = options::wholeNumber(text, low, high);
  if (!x)
    stop(std::string("--") + name + " takes a whole number from " + std::to_string(low) + " to " +
         std::to_string(high) + ", not " + text);
  return *x;
}

}  // namespace

void stop(const std::string& mistake) { options::stop(program, mistake); }

Options readOptions(int count, char** arguments) {
  Options o;
  const auto addNumber = [&](const char* text) {
    const auto x = number(text);
    if (!x) stop(std::string("--at takes numbers, not ") + text);
    o.at.push_back(*x);
  };
  // The - in front: functions come in their places, as an option of their own with the number 1.
  for (int which; (which = getopt_long(count, arguments, "-", longOptions, nullptr)) != -1;) {
    switch (which) {
      case 1:
        if (const Function* f = findFunction(optarg))
          o.functions.push_back(f);
        else
          stop(std::string("no function ") + optarg + " is served; --list shows those that are");
        break;
      case 'l': o.level = static_cast<int>(wholeNumber("level", optarg, 1, DispatchLevel)); break;
      case 'r': o.range = optarg; break;
      case 'c': o.count = wholeNumber("count", optarg, 1, 1000000000000); break;
      case 's': o.seed = static_cast<uint64_t>(wholeNumber("seed", optarg, 0, int64_t{1} << 53)); break;
      case 'H': o.hunting = true; break;
      case 'a':
        addNumber(optarg);
        while (optind < count && number(arguments[optind])) addNumber(arguments[optind++]);
        break;
      case 'w': o.data = optarg; break;
      case 'L': o.list = true; break;
      case 'h': std::fputs(usage, stdout); std::exit(0);
      default: stop("");
    }
  }
  for (; optind < count; ++optind) stop(std::string("nothing is expected after --, but there is ") + arguments[optind]);
  if (o.functions.empty())
    for (const Function& f : servedFunctions()) o.functions.push_back(&f);
  return o;
}

}  // namespace accuracy

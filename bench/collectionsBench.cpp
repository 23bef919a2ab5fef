// What our collections cost beside the standard's and boost's. All live the same life in turn, again and again: members
// come, are found, are missed, are walked, and go, each time in another random order.
// Figures are nanoseconds of processor time a member, the least of all lives.
#include "bench/Contestants.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace contest;

struct Operation {
  char const* name;
  char const* reference;  // what we want to be level with, or ahead of
};
constexpr std::array operations{Operation{"insert", "std"}, Operation{"find hit", "boost"},
                                Operation{"find miss", "boost"}, Operation{"iterate", "boost"},
                                Operation{"erase", "std"}};
using Life = std::array<double, operations.size()>;

// --- keys

constexpr std::size_t fewest = 20'000;  // keys to look up between two readings of the clock
constexpr std::size_t most = 200'000;

// A permutation of the 32-bit numbers without any pattern.
constexpr U32 scattered(U32 n) {
  n = (n ^ (n >> 16)) * 0x85ebca6b;
  n = (n ^ (n >> 13)) * 0xc2b2ae35;
  return n ^ (n >> 16);
}

template <class K>
K keyOf(U32 n) {
  if constexpr (std::is_same_v<K, String8>) {
    return String8(std::string_view(fmt::format("Ethernet{}/{:08x}", n % 32, scattered(n))));
  } else {
    return scattered(n);
  }
}

// Each list has key objects of its own: texts are not found equal at the first glance.
template <class K>
struct Keys {
  explicit Keys(U32 count)
      : members(count),
        coming(list(0, std::max<std::size_t>(members, fewest / 4))),
        hits(list(0, std::clamp<std::size_t>(members, fewest, most))),
        misses(list(members, hits.size())),
        leaving(list(0, coming.size())) {}

  std::vector<K> list(U32 first, std::size_t wanted) const {
    std::vector<K> keys;
    keys.reserve(wanted);
    U32 const step = wanted < members ? members / static_cast<U32>(wanted) : 1;
    for (U32 n = 0; keys.size() < wanted; n = (n + step) % members) keys.push_back(keyOf<K>(first + n));
    return keys;
  }
  void shuffle() {
    for (std::vector<K>* keys : {&hits, &misses}) std::shuffle(keys->begin(), keys->end(), random);
    for (std::vector<K>* keys : {&coming, &leaving}) {
      for (auto at = keys->begin(); at != keys->end(); at += members) std::shuffle(at, at + members, random);
    }
  }

  std::mt19937 random;
  U32 members;
  std::vector<K> coming, hits, misses, leaving;  // coming and leaving: one permutation after another, one a table
};

// --- one life

double processorTime() {
  std::timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return 1e9 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec);
}

template <class Work>
[[gnu::noinline]] double nanoseconds(std::size_t members, Work const& work) {
  double const start = processorTime();
  work();
  return (processorTime() - start) / static_cast<double>(members);
}

// Small tables come several at once: the clock costs its time, and a life must not be learnt by heart.
template <class Contestant, class K>
Life live(Keys<K> const& keys) {
  std::size_t const total = keys.coming.size();
  std::vector<Contestant> tables(total / keys.members);
  Contestant const& table = tables[0];
  U64 found = 0;
  auto const coming = [&] {
    for (std::size_t i = 0; i < total; ++i) tables[i / keys.members].insert(keys.coming[i]);
  };
  auto const hit = [&] {
    for (K const& key : keys.hits) found += table.find(key);
  };
  auto const missed = [&] {
    for (K const& key : keys.misses) found += table.find(key);
  };
  auto const walked = [&] {
    for (Contestant const& each : tables) found += each.sum();
  };
  auto const leaving = [&] {
    for (std::size_t i = 0; i < total; ++i) tables[i / keys.members].erase(keys.leaving[i]);
  };
  Life const life{nanoseconds(total, coming), nanoseconds(keys.hits.size(), hit),
                  nanoseconds(keys.misses.size(), missed), nanoseconds(total, walked), nanoseconds(total, leaving)};
  if (found != (keys.hits.size() + total) * valueOfAll) std::abort();  // somebody lost a member
  return life;
}

// So that members lie as they do in a process that has run for a while.
void scatterHeaps(std::size_t blocks) {
  for (std::size_t const size : {32U, 48U, 64U}) {
    std::vector<void*> counted(blocks);
    std::vector<void*> plain(blocks);
    for (void*& block : counted) block = Vek::CountedHeap::allocate(size);
    for (void*& block : plain) block = ::operator new(size - 8);  // which adds its own 8 bytes
    std::shuffle(counted.begin(), counted.end(), std::mt19937{1});
    std::shuffle(plain.begin(), plain.end(), std::mt19937{1});
    for (void* block : counted) Vek::CountedHeap::release(block, size);
    for (void* block : plain) ::operator delete(block);
  }
}

// --- the benchmarks: one a collection and size; a counter is an operation of a contestant

std::string counterOf(std::string_view contestant, Operation const& operation) {
  return fmt::format("{}: {}", contestant, operation.name);
}

template <class Contestant, class K>
void liveOnce(benchmark::State& state, Keys<K> const& keys) {
  Life const life = live<Contestant>(keys);
  for (std::size_t i = 0; i < life.size(); ++i) {
    auto const place = state.counters.try_emplace(counterOf(Contestant::name, operations[i]), life[i]).first;
    place->second.value = std::min(place->second.value, life[i]);
  }
}

template <class K, class... Contestants>
void lives(benchmark::State& state) {
  constexpr double enough = 15e9;
  auto const members = static_cast<U32>(state.range(0));
  Keys<K> keys{members};
  scatterHeaps(members);
  for (auto _ : state) {
    double const start = processorTime();
    for (int life = 0; life < 2 || (life < 60 && processorTime() - start < enough); ++life) {
      keys.shuffle();
      (liveOnce<Contestants>(state, keys), ...);
    }
  }
}

constexpr std::array columns{"ours", "std", "std, our heap", "boost", "boost, 2^n"};

class Printer : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(Context const&) override {
    fmt::print("{:24}", "nanoseconds a member");
    for (char const* column : columns) fmt::print(" {:>13}", column);
    fmt::print("   ours to\n");
    return true;
  }

  void ReportRuns(std::vector<Run> const& runs) override {
    for (Run const& run : runs) {
      fmt::print("{}, {} members\n", run.run_name.function_name, run.run_name.args);
      for (Operation const& operation : operations) print(run, operation);
    }
    std::fflush(stdout);
  }

  void Finalize() override {
    fmt::print(
        "\n"
        "Boost's tables: the ratio is to the one of 2^n buckets, as ours has. Where another is ahead, it promises "
        "less.\n"
        "Our iterators survive any change and hold their member; our members are counted objects, which may\n"
        "outlive their collection; the order of a table depends on its keys alone. The others' iterators dangle\n"
        "once their member is erased, the order of their tables depends on the history, and boost's tables do\n"
        "not grow by themselves.\n");
  }

 private:
  static double figure(Run const& run, std::string_view contestant, Operation const& operation) {
    auto const place = run.counters.find(counterOf(contestant, operation));
    return place == run.counters.end() ? std::numeric_limits<double>::quiet_NaN() : place->second.value;
  }

  static void print(Run const& run, Operation const& operation) {
    fmt::print("  {:22}", operation.name);
    for (char const* column : columns) {
      double const value = figure(run, column, operation);
      fmt::print(" {:>13}", std::isnan(value) ? "" : fmt::format("{:.1f}", value));
    }
    double reference = figure(run, operation.reference, operation);
    double const powersOfTwo = figure(run, "boost, 2^n", operation);
    if (std::string_view(operation.reference) == "boost" && !std::isnan(powersOfTwo)) reference = powersOfTwo;
    fmt::print("   {:5} {:4.2f}\n", operation.reference, figure(run, "ours", operation) / reference);
  }
};

template <class K, class... Contestants>
void enter(std::string const& kind, U32 members) {
  benchmark::RegisterBenchmark(kind.c_str(), lives<K, Contestants...>)->Arg(members)->Iterations(1);
}

template <class K>
void enterAll(std::string const& keys, U32 members) {
  enter<K, OursHashed<K>, StdHashed<K, std::allocator>, StdHashed<K, CountedAllocator>, BoostHashed<K, false>,
        BoostHashed<K, true>>("hashed, " + keys, members);
  enter<K, OursOrdered<K>, StdOrdered<K, std::allocator>, StdOrdered<K, CountedAllocator>, BoostOrdered<K>>(
      "ordered, " + keys, members);
}

}  // namespace

int main(int argc, char** argv) {
  for (U32 const members : {100U, 10'000U, 1'000'000U}) {  // the large ones last: they leave the heaps in disorder
    enterAll<U32>("numbers", members);
    enterAll<String8>("texts", members);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  Printer printer;
  benchmark::RunSpecifiedBenchmarks(&printer);
  return 0;
}

// What our collections cost beside the standard's and boost's, in one table. Every contestant lives the same life,
// again and again: members come, are found, are missed, are walked, and go, each time in another random order. Figures
// are nanoseconds of processor time a member, the least of all lives.
#include "bench/Contestants.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace contest;

constexpr std::array operations{"insert", "find hit", "find miss", "iterate", "erase"};
using Life = std::array<double, operations.size()>;

constexpr std::size_t fewest = 20'000;  // keys to look up in one reading of the clock

// --- keys

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
        coming(list(0, members, std::max<std::size_t>(members, fewest / 4))),
        hits(list(0, members, std::max<std::size_t>(members, fewest))),
        misses(list(members, members, hits.size())),
        leaving(list(0, members, coming.size())) {}

  static std::vector<K> list(U32 first, U32 members, std::size_t wanted) {
    std::vector<K> keys;
    keys.reserve(wanted);
    for (U32 i = 0; keys.size() < wanted; i = (i + 1) % members) keys.push_back(keyOf<K>(first + i));
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
  std::vector<K> coming, hits, misses, leaving;  // coming and leaving: one permutation after another
};

// --- one life

template <class Work>
[[gnu::noinline]] double nanoseconds(std::size_t members, Work const& work) {
  auto const now = [] {
    std::timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e9 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec);
  };
  double const start = now();
  work();
  return (now() - start) / static_cast<double>(members);
}

template <class Contestant, class K>
Life live(Keys<K> const& keys) {
  std::size_t const total = keys.coming.size();
  std::vector<Contestant> tables(total / keys.members);
  Contestant const& table = tables[0];
  U64 found = 0;
  Life const life{
      nanoseconds(total,
                  [&] {
                    for (std::size_t i = 0; i < total; ++i) tables[i / keys.members].insert(keys.coming[i]);
                  }),
      nanoseconds(keys.hits.size(),
                  [&] {
                    for (K const& key : keys.hits) found += table.find(key);
                  }),
      nanoseconds(keys.misses.size(),
                  [&] {
                    for (K const& key : keys.misses) found += table.find(key);
                  }),
      nanoseconds(total,
                  [&] {
                    for (Contestant const& each : tables) found += each.sum();
                  }),
      nanoseconds(total,
                  [&] {
                    for (std::size_t i = 0; i < total; ++i) tables[i / keys.members].erase(keys.leaving[i]);
                  }),
  };
  if (found != (keys.hits.size() + total) * valueOfAll) std::abort();
  return life;
}

// So that the members of all contestants lie as they do in a process that has run for a while.
void scatterHeap(std::size_t blocks) {
  for (std::size_t const size : {32U, 48U, 64U}) {
    std::vector<void*> held(blocks);
    for (void*& block : held) block = Vek::CountedHeap::allocate(size);
    std::shuffle(held.begin(), held.end(), std::mt19937{1});
    for (void* block : held) Vek::CountedHeap::release(block, size);
  }
}

// --- the benchmarks: one a contestant, whose counters are the operations

template <class Contestant, class K>
void lives(benchmark::State& state) {
  auto const members = static_cast<U32>(state.range(0));
  static Keys<K> keys{members};
  if (keys.members != members) keys = Keys<K>{members};
  scatterHeap(members);
  Life least;
  least.fill(std::numeric_limits<double>::infinity());
  for (auto _ : state) {
    for (std::size_t lived = 0; lived < 50; lived += 1 + members / 40'000) {
      keys.shuffle();
      Life const life = live<Contestant>(keys);
      std::transform(life.begin(), life.end(), least.begin(), least.begin(),
                     [](double a, double b) { return std::min(a, b); });
    }
  }
  for (std::size_t i = 0; i < least.size(); ++i) state.counters[operations[i]] = least[i];
}

template <class K, class... Contestants>
void enter(std::string const& kind, U32 members) {
  (benchmark::RegisterBenchmark((kind + Contestants::name).c_str(), lives<Contestants, K>)
       ->Arg(members)
       ->Iterations(1)
       ->Repetitions(members > 100'000 ? 2 : 3),
   ...);
}

class Printer : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(Context const&) override { return true; }
  void ReportRuns(std::vector<Run> const& runs) override {
    if (runs[0].run_type != Run::RT_Iteration) return;
    fmt::print("{:40}", runs[0].run_name.function_name + runs[0].run_name.args);
    for (std::size_t i = 0; i < operations.size(); ++i) {
      double least = 1e9;
      for (Run const& run : runs) least = std::min<double>(least, run.counters.at(operations[i]).value);
      fmt::print(" {:8.2f}", least);
    }
    fmt::print("\n");
    std::fflush(stdout);
  }
};

}  // namespace

int main(int argc, char** argv) {
  for (U32 const size : {100U, 10'000U, 1'000'000U}) {
    enter<U32, OursHashed<U32>, StdHashed<U32>, BoostHashed<U32, true>, BoostHashed<U32, false>>("hashed/U32/", size);
    enter<String8, OursHashed<String8>, StdHashed<String8>, BoostHashed<String8, true>, BoostHashed<String8, false>>(
        "hashed/String8/", size);
    enter<U32, OursOrdered<U32>, StdOrdered<U32>, BoostOrdered<U32>>("ordered/U32/", size);
    enter<String8, OursOrdered<String8>, StdOrdered<String8>, BoostOrdered<String8>>("ordered/String8/", size);
  }
  benchmark::Initialize(&argc, argv);
  Printer printer;
  benchmark::RunSpecifiedBenchmarks(&printer);
  return 0;
}

// What the text of a value costs, beside the same text written by fmt and its numbers read by std::from_chars where
// they are known to stand.
#include "bench/SideBySide.h"
#include "dornl3/schema/Status.h"
#include "dornl3/text/ValueText.h"

#include <charconv>
#include <memory>
#include <random>

namespace {

using Hardware::DornL3Unicast::JLpmStats;
using Hardware::DornL3Unicast::RouteStats;
using Vek::String8;
using Vek::U32;
using Vek::U64;

struct Sample {
  RouteStats routes;
  JLpmStats lpm;
};

// Figures as a forwarder has them: some small, some with nine digits.
std::vector<Sample> samples() {
  std::mt19937 random{3};
  auto const number = [&random] { return random() >> (random() % 32); };
  std::vector<Sample> all;
  for (int i = 0; i < 64; ++i) {
    auto const u32 = [&] { return static_cast<U32>(number()); };
    auto const u64 = [&] { return static_cast<U64>(number()); };
    all.push_back({RouteStats(u64(), u64(), u64(), u64(), u64(), u64()),
                   JLpmStats(u32(), u32(), u32(), u32(), u64(), u64(), u32() % 101, u64(), u64(), u64(), u32() % 101)});
  }
  return all;
}

String8 byFmt(RouteStats const& v) {
  std::array<char, 512> text;
  auto const* const end = fmt::format_to(
      text.data(),
      "Value('Hardware::DornL3Unicast::RouteStats', ** {{'routes': {}, 'adjs': {}, 'pendingRoutes': {}, "
      "'pendingAdjs': {}, 'unprogrammedRoutes': {}, 'unprogrammedAdjs': {}}})",
      v.routes(), v.adjs(), v.pendingRoutes(), v.pendingAdjs(), v.unprogrammedRoutes(), v.unprogrammedAdjs());
  return String8(std::string_view(text.data(), static_cast<std::size_t>(end - text.data())));
}

String8 byFmt(JLpmStats const& v) {
  std::array<char, 1024> text;
  auto const* const end = fmt::format_to(
      text.data(),
      "Value('Hardware::DornL3Unicast::JLpmStats', ** {{'routes': {}, 'unprogrammed': {}, 'routes6': {}, "
      "'unprogrammed6': {}, 'backlog': {}, 'pivots': {}, 'percentTcamFree': {}, 'buckets': {}, 'bucketRows': {}, "
      "'bucketEntries': {}, 'percentSmemFree': {}}})",
      v.routes(), v.unprogrammed(), v.routes6(), v.unprogrammed6(), v.backlog(), v.pivots(), v.percentTcamFree(),
      v.buckets(), v.bucketRows(), v.bucketEntries(), v.percentSmemFree());
  return String8(std::string_view(text.data(), static_cast<std::size_t>(end - text.data())));
}

// The least that reading can be: each number behind the next colon.
template <std::size_t N>
std::array<U64, N> byFromChars(std::string_view text) {
  std::array<U64, N> numbers{};
  std::size_t at = text.find('{');
  for (U64& number : numbers) {
    at = text.find(':', at) + 2;
    std::from_chars(text.data() + at, text.data() + text.size(), number);
  }
  return numbers;
}

template <class Value, std::size_t N>
void add(bench::Table& table, std::string const& name, Value Sample::*member) {
  struct Cases {
    std::vector<Value> values;
    std::vector<String8> texts;
    std::size_t turn = 0;
    std::size_t next() { return turn = (turn + 1) % values.size(); }
  };
  auto const cases = std::make_shared<Cases>();
  for (Sample const& sample : samples()) {
    cases->values.push_back(sample.*member);
    cases->texts.push_back(valueToStrep(sample.*member));
    if (!(cases->texts.back() == byFmt(sample.*member))) std::abort();
  }
  table.add(
      "write " + name + ", against fmt::format_to", 0,
      [cases] { benchmark::DoNotOptimize(valueToStrep(cases->values[cases->next()])); },
      [cases] { benchmark::DoNotOptimize(byFmt(cases->values[cases->next()])); });
  table.add(
      "parse " + name + ", against std::from_chars", 0,
      [cases] { benchmark::DoNotOptimize(Vek::valueFromText<Value>(cases->texts[cases->next()])); },
      [cases] { benchmark::DoNotOptimize(byFromChars<N>(cases->texts[cases->next()])); });
}

}  // namespace

int main(int argc, char** argv) {
  bench::Table table{"Text of values", "value", "reference"};
  add<RouteStats, 6>(table, "RouteStats", &Sample::routes);
  add<JLpmStats, 11>(table, "JLpmStats", &Sample::lpm);
  return table.run(argc, argv);
}

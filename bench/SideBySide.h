// SideBySide: one table of what our way of doing a thing costs beside another way of doing it. Both are timed in turn
// in one run, so that their ratio holds on a machine that others use too. Figures are the least of all rounds.
#pragma once

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// Nanoseconds that one of `count` calls of `work` takes.
template <class Work>
double nanoseconds(int count, Work const& work) {
  auto const start = std::chrono::steady_clock::now();
  for (int i = 0; i < count; ++i) {
    work();
    benchmark::ClobberMemory();
  }
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() / count;
}

class Table {
 public:
  /// `columns`: what the name, ours and the other way stand for.
  Table(std::string name, std::string ours, std::string reference)
      : name_(std::move(name)), ours_(std::move(ours)), reference_(std::move(reference)) {}

  /// Enters a row. `aim` is the ratio that we want to stay under; 0 for none.
  template <class Ours, class Reference>
  void add(std::string const& row, double aim, Ours ours, Reference reference) {
    benchmark::RegisterBenchmark(row.c_str(), [ours, reference, aim](benchmark::State& state) {
      double least[2] = {1e12, 1e12};
      for (auto _ : state) {
        int const count =
            static_cast<int>(std::clamp(2e6 / (nanoseconds(100, ours) + nanoseconds(100, reference)), 1.0, 1e6));
        for (int round = 0; round < 15; ++round) {
          least[0] = std::min(least[0], nanoseconds(count, ours));
          least[1] = std::min(least[1], nanoseconds(count, reference));
        }
      }
      state.counters["ours"] = least[0];
      state.counters["reference"] = least[1];
      state.counters["aim"] = aim;
    })->Iterations(1);
  }

  /// Runs the rows that the command line selects, and prints the table.
  int run(int argc, char** argv) const {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    fmt::print("{}, nanoseconds\n{:44} {:>12} {:>12} {:>8} {:>8}\n", name_, "", ours_, reference_, "ratio", "aim");
    Printer printer;
    benchmark::RunSpecifiedBenchmarks(&printer);
    return 0;
  }

 private:
  class Printer : public benchmark::BenchmarkReporter {
   public:
    bool ReportContext(Context const&) override { return true; }
    void ReportRuns(std::vector<Run> const& runs) override {
      for (Run const& run : runs) {
        double const ours = run.counters.at("ours");
        double const reference = run.counters.at("reference");
        double const aim = run.counters.at("aim");
        fmt::print("{:44} {:12.2f} {:12.2f} {:8.2f} {:>8}\n", run.run_name.function_name, ours, reference,
                   ours / reference, aim > 0 ? fmt::format("< {:.2g}", aim) : "");
      }
    }
  };

  std::string name_, ours_, reference_;
};

}  // namespace bench

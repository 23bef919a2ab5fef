// The command line of get, set, del, count, ls and types.
#pragma once

#include "apps/attributes/Commands.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Apps::Attributes {

class CommandLine {
 public:
  /// Adds the commands to `app`, which keeps pointers into this: it parses only as long as this stands. `filled`: of
  /// the entities that it will work on.
  CommandLine(CLI::App& app, Filled filled);
  CommandLine(CommandLine const&) = delete;
  CommandLine& operator=(CommandLine const&) = delete;

  /// Whether one of them was given, once `app` has parsed.
  [[nodiscard]] bool isGiven() const { return !given_.empty(); }
  /// Why it cannot be carried out as it was given; empty if it can.
  [[nodiscard]] std::string misuse() const;
  /// Whether it works on entities, which `roots` of run() must hold.
  [[nodiscard]] bool needsEntities() const noexcept { return over_ == Over::entities; }
  /// Carries it out; returns what to print. Throws Misfit.
  [[nodiscard]] Answer run(Vek::Dir const& roots) const { return body_(roots); }

 private:
  using Body = std::function<Answer(Vek::Dir const& roots)>;
  enum class Over { entities, typesAlone };

  CLI::App* add(CLI::App& app, char const* name, char const* description, Over over, Body body);
  void addAll(CLI::App& command);
  void addReading(CLI::App& app);
  void addChanging(CLI::App& app);
  [[nodiscard]] Form form() const noexcept { return json_ ? Form::json : Form::text; }
  [[nodiscard]] Filled const& shown() const { return all_ ? Filled::everything() : filled_; }
  [[nodiscard]] Look look() const;

  Filled const filled_;
  std::string given_;
  Over over_ = Over::entities;
  Body body_;
  bool local_ = false;
  bool json_ = false;
  bool recursive_ = false;
  bool whole_ = false;
  bool all_ = false;
  bool digest_ = false;
  bool parents_ = false;
  std::vector<std::string> paths_;
  std::optional<std::string> path_;
  std::optional<std::string> value_;
};

}  // namespace Apps::Attributes

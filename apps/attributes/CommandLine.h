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
  /// Adds a command's options for whose entities it works on.
  using AddTarget = std::function<void(CLI::App& command)>;

  /// Adds the commands to `app`, which keeps pointers into this: it parses only as long as this stands.
  CommandLine(CLI::App& app, AddTarget addTarget);
  CommandLine(CommandLine const&) = delete;
  CommandLine& operator=(CommandLine const&) = delete;

  /// Whether one of them was given, once `app` has parsed; which.
  [[nodiscard]] bool isGiven() const { return !given_.empty(); }
  [[nodiscard]] std::string const& given() const noexcept { return given_; }
  /// Whether it works on entities, which `roots` of run() must hold.
  [[nodiscard]] bool needsEntities() const noexcept { return over_ != Over::typesAlone; }
  /// Whether it changes them.
  [[nodiscard]] bool isChange() const noexcept { return over_ == Over::entitiesToChange; }
  /// The paths that it was given.
  [[nodiscard]] std::vector<std::string> paths() const;
  /// Carries it out; returns what to print. `filled`: of the entities in `roots`. Throws Misfit, and what `confirm`
  /// throws.
  [[nodiscard]] Answer run(Vek::Dir const& roots, Filled const& filled, Confirm const& confirm) const;

 private:
  // What a command works on.
  struct On {
    Vek::Dir const& roots;
    Filled const& filled;
    Confirm const& confirm;
  };
  using Body = std::function<Answer(On const& on)>;
  enum class Over { entities, entitiesToChange, typesAlone };

  CLI::App* add(CLI::App& app, char const* name, char const* description, Over over, Body body);
  void addAll(CLI::App& command);
  void addReading(CLI::App& app);
  void addChanging(CLI::App& app);
  [[nodiscard]] Form form() const noexcept { return json_ ? Form::json : Form::text; }
  [[nodiscard]] Filled const& shown(On const& on) const { return all_ ? Filled::everything() : on.filled; }
  [[nodiscard]] Look look(On const& on) const;

  AddTarget const addTarget_;
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

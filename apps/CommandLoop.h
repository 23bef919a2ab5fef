// CommandLoop: the loop of a command that runs until it is told to end: by a signal, by its work, or because nobody
// reads what it prints. It sleeps until there is something to do.
// Owner: the command. Thread: one. While it stands, interrupt and termination signals end nothing but it.
#pragma once

#include "dornl3/platform/link/Loop.h"

namespace Apps {

class CommandLoop {
 public:
  enum class Output { isRead, doesNotMatter };

  /// Output::isRead: it ends also when nobody reads standard output any more. Throws std::system_error.
  explicit CommandLoop(Output output);
  CommandLoop(CommandLoop const&) = delete;
  CommandLoop& operator=(CommandLoop const&) = delete;
  ~CommandLoop();

  /// For the work to wait on.
  [[nodiscard]] Vek::Link::Loop& loop() noexcept;
  /// Runs until one of these, or at once where it came before. Throws what the work throws.
  void run();
  /// For the work: it was the last.
  void stop() noexcept;
  /// Becomes readable when such a signal has come: for the work, where it waits for somebody.
  [[nodiscard]] int stopDescriptor() const noexcept;

 private:
  class Waits;
  std::unique_ptr<Waits> waits_;
};

}  // namespace Apps

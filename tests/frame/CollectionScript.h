// CollectionScript: what happens to one collection of a box, from outside and by reactors in the middle of every call,
// with members held and iterators kept across it. The same script is played by a real box and by plain containers.
#pragma once

#include "dornl3/core/Integers.h"

#include <array>
#include <ostream>
#include <string>
#include <vector>

namespace Toys::Collecting {

struct Act {
  enum class Kind : unsigned char {
    set,         // the value at `key`
    make,        // a new member at `key`
    del,         // what is at `key`
    delAll,      //
    notify,      // of `key`
    hold,        // what is at `key`, in place `place`
    letGo,       // what is held in place `place`
    changeHeld,  // its value, behind the box's back
    open,        // iterator `place`, at the first member
    openAt,      // that iterator, at exactly `key` or at the end
    step,        // that iterator
    copy,        // that iterator to the next place
    close,       // that iterator
    delAt,       // the member under that iterator
    fail,        // this call of the reactor throws
    failTwice,   // and its onNotificationException too
  };

  Kind kind = Kind::set;
  int key = 0;
  int value = 0;
  int place = 0;
};

using Acts = std::vector<Act>;

struct Script {
  static constexpr int places = 3;
  static constexpr int keys = 40;
  static constexpr int reactors = 2;

  std::vector<std::vector<Acts>> turns;  // of each reactor: what it does in its first call, its second, ...
  Acts outside;
};

std::ostream& operator<<(std::ostream& os, Act const& act);
std::ostream& operator<<(std::ostream& os, Script const& script);

/// A random script, for use inside a law.
Script anyScript();

/// Plays a script: the stage directions are the same for the box and for the model, which say what each act does.
class Stage {
 public:
  explicit Stage(Script const& script) : script_(script) {}
  Stage(Stage const&) = delete;
  Stage& operator=(Stage const&) = delete;
  virtual ~Stage() = default;

  void perform(Act const& doIt);
  /// Every call and result, in order.
  std::vector<std::string> const& trace() const { return trace_; }
  /// All that can be seen.
  virtual std::string state() = 0;

 protected:
  void note(std::string event) { trace_.push_back(std::move(event)); }
  void called(int who, int key, int value, Vek::U32 writes);
  void failed(int who);
  static std::size_t at(int number) { return static_cast<std::size_t>(number); }

  virtual void set(int key, int value) = 0;
  virtual void make(int key, int value) = 0;
  virtual int del(int key) = 0;
  virtual void delAll() = 0;
  virtual void notify(int key) = 0;
  virtual void hold(int place, int key) = 0;
  virtual void letGo(int place) = 0;
  virtual void changeHeld(int place, int value) = 0;
  virtual void open(int place) = 0;
  virtual void openAt(int place, int key) = 0;
  virtual void step(int place) = 0;
  virtual void copy(int from, int to) = 0;
  virtual void close(int place) = 0;
  virtual int delAt(int place) = 0;

 private:
  struct Failure {};
  struct SecondFailure {};

  void act(Act const& act);

  Script const& script_;
  std::vector<std::string> trace_;
  std::array<std::size_t, Script::reactors> turn_{};
  std::array<bool, Script::reactors> failsAgain_{};
};

/// A position, or a member that is held, as both stages show it.
std::string shown(char const* what, int place, int key, int value, bool present);

}  // namespace Toys::Collecting

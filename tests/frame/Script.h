// Script: what the reactors of two toys do when they are called, and what happens to both from outside. The same script
// is played by real toys and by a model of them; afterwards both must have seen the same.
#pragma once

#include "dornl3/core/Integers.h"

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace Toys {

constexpr int nobody = -1;
constexpr Vek::AttributeId sizeEvent = 258;
constexpr Vek::AttributeId endEvent = 5;

enum class Property : unsigned char { registered, weak, active };

struct Act {
  enum class Kind : unsigned char {
    set,      // the size of the toy to `value`
    be,       // the reactor is registered, weak or active from now on, or not
    follow,   // the reactor moves to the toy, or to nobody
    drop,     // the outside reference on the reactor goes
    dropToy,  // the outside reference on the toy goes
    fail,     // this call of the reactor throws; with `on`, its onNotificationException too
  };
  static constexpr int kinds = 6;

  Kind kind = Kind::set;
  int who = 0;
  int toy = 0;
  Vek::U64 value = 0;  // 0 to 2, so that many sets find the value they set
  Property property = Property::registered;
  bool on = false;
};

using Acts = std::vector<Act>;

struct ReactorPlan {
  int toy = 0;
  bool registered = true;
  bool adapter = false;
  bool weak = false;
  std::vector<Acts> turns;  // what it does in its first call, its second, ...; nothing later
};

struct Script {
  static constexpr int toys = 2;
  static constexpr int reactors = 6;

  std::vector<ReactorPlan> plans;  // one a reactor
  Acts outside;
};

std::ostream& operator<<(std::ostream& os, Script const& script);

/// A random script, for use inside a law.
Script anyScript();

/// Plays a script: the stage directions are the same for real toys and for the model, which say what each act does.
class Stage {
 public:
  explicit Stage(Script const& script) : script_(script) {}
  Stage(Stage const&) = delete;
  Stage& operator=(Stage const&) = delete;
  virtual ~Stage() = default;

  /// Makes the reactors.
  void begin();
  /// An act from outside; an exception that gets there is noted.
  void perform(Act const& doIt);
  /// Gives up all references from outside.
  void end();

  /// Every call, failure and death, in order.
  std::vector<std::string> const& trace() const { return trace_; }
  /// All that can be seen of the toys and reactors that are alive. Reads an attribute of each toy.
  virtual std::string state() = 0;

 protected:
  void note(std::string event) { trace_.push_back(std::move(event)); }
  ReactorPlan const& plan(int who) const { return script_.plans[static_cast<std::size_t>(who)]; }
  /// The next turn of a reactor that was called; may throw.
  void playTurn(int who);
  /// A call of the reactor failed; may throw again.
  void failed(int who, Vek::AttributeId attribute);

  // Acts on a toy or reactor that is not alive do nothing, and nor do those on a reactor whose toy went without telling
  // it, since it was weak and not on the list.
  virtual void set(int toy, Vek::U64 value) = 0;
  virtual void be(int who, Property property, bool on) = 0;
  virtual void follow(int who, int toy) = 0;
  virtual void drop(int who) = 0;
  virtual void make(int who) = 0;
  virtual void dropToy(int toy) = 0;

 private:
  struct Failure {};
  struct SecondFailure {
    int who;
  };
  void act(Act const& act);

  Script const& script_;
  std::vector<std::string> trace_;
  std::map<int, std::size_t> turn_;
  std::map<int, bool> failsAgain_;
};

}  // namespace Toys

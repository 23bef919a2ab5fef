// Model: toys and reactors as plain data, and the promises of a notification told step by step.
#pragma once

#include "tests/frame/Script.h"

#include <array>

namespace Toys {

class Model final : public Stage {
 public:
  explicit Model(Script const& script) : Stage(script) {}

  std::string state() override;

 private:
  struct ModelToy {
    bool alive = true;
    bool going = false;  // its last reference has gone, and it tells so
    bool heldOutside = true;
    int references = 1;
    std::vector<int> list;
    unsigned version = 0;
    Vek::U64 size = 0;
    unsigned writes = 0;
    unsigned reads = 0;
  };
  struct ModelReactor {
    bool alive = false;
    bool heldOutside = false;
    int references = 0;
    int follows = nobody;
    bool registered = false;
    bool weak = false;
    bool active = true;
    bool wasRegistered = false;
  };

  ModelToy& toy(int number) { return toys_[static_cast<std::size_t>(number)]; }
  ModelReactor& reactor(int number) { return reactors_[static_cast<std::size_t>(number)]; }
  // Whether the reactor follows a toy that is there.
  bool hasToy(int who) { return reactor(who).follows != nobody && toy(reactor(who).follows).alive; }
  bool canAct(int who) { return reactor(who).alive && (reactor(who).follows == nobody || hasToy(who)); }

  void takeToy(int number);
  void giveToy(int number);
  void giveReactor(int who);
  void link(int number, int who);
  void unlink(int number, int who);
  void moveTo(int who, int number);
  void registerIt(int who, bool on);
  void walk(int number, Vek::AttributeId event);
  void call(int who, Vek::AttributeId event);

  void set(int number, Vek::U64 value) override;
  void be(int who, Property property, bool on) override;
  void follow(int who, int number) override;
  void drop(int who) override;
  void make(int who) override;
  void dropToy(int number) override;

  std::array<ModelToy, Script::toys> toys_;
  std::array<ModelReactor, Script::reactors> reactors_;
};

}  // namespace Toys

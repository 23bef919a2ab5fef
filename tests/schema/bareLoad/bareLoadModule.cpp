// Loaded by bareLoadTest after descriptions have been switched off: what a library's types are and do then.
#include "dornl3/schema/Status.h"

#include <string>

namespace {

using namespace Hardware::DornL3Unicast;

class Hears final : public Status::Notifiee {
 public:
  void onNumVrfs() override { ++heard; }
  int heard = 0;
};

std::string whatIsWrong() {
  Vek::VekType* const type = Status::_fwkType();
  if (!(type->name() == "Status")) return "the record has no short name";
  if (Vek::VekType::find("Hardware::DornL3Unicast::Status") != type) return "the record is not found by its full name";
  if (!type->attributes().empty()) return "the record has attributes";
  if (!type->constructorArgs().empty() || type->isEntity() || type->size() != 0) return "the record is described";
  if (type->base() != Vek::Entity::_fwkType()) return "the record has another base";
  auto const& derived = Vek::Entity::_fwkType()->derivedTypes();
  // Nothing but the order of definition decides which record is made when.
  if (derived.empty() || derived.front() != Request::_fwkType()) return "the records came in another order";

  Vek::Ptr<Status> const status = statusFactory("status");
  Vek::Ptr<Hears> const reactor = Vek::make<Hears>();
  reactor->notifierIs(status);
  reactor->isRegisteredNotifieeIs(true);
  status->numVrfsIs(3);
  status->numVrfsIs(3);
  if (status->numVrfs() != 3 || status->writeCount() != 1) return "a setter does not work";
  if (reactor->heard != 1) return "a reactor does not hear";
  if (!(status->attributeString(263) == "numVrfs")) return "an attribute has no name";
  RouteStats const routes{1, 2, 3, 4, 5, 6};
  Vek::String8 const text = valueToStrep(routes);
  Vek::String8::IteratorConst it{text};
  if (RouteStats(it, it.end()) != routes) return "a value does not read its own text";
  return {};
}

}  // namespace

extern "C" char const* bareLoadComplaint() {
  static std::string const complaint = whatIsWrong();
  return complaint.c_str();
}

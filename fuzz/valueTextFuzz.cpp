// Reads any bytes as the text of a value or of an entity reference. Each text is read or refused by RangeException,
// with the cursor inside it; what is read is written again and reads back as the same value. The first byte selects the
// type.
#include "dornl3/platform/vek/Dir.h"
#include "dornl3/platform/vek/EntityText.h"
#include "dornl3/schema/AclIntf.h"
#include "dornl3/schema/DornL3CliConfig.h"
#include "dornl3/schema/Status.h"
#include "dornl3/text/ValueText.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace Hardware::DornL3Unicast;
using Vek::String8;

void require(bool holds) {
  if (!holds) std::abort();
}

template <class Value>
void readValue(String8 const& text) {
  String8::IteratorConst it{text};
  String8::IteratorConst const end = it.end();
  try {
    Value const value(it, end);
    String8 const again = valueToStrep(value);
    require(valueToStrep(Vek::valueFromText<Value>(again)) == again);
  } catch (Vek::RangeException const& e) {
    require(!e.message().empty());
  }
  require(it.position() >= 0 && it.position() <= end.position());
}

void readReference(String8 const& text) {
  static bool const entered = [] {
    for (char const* name : {"status", "None", "it's", ""}) Vek::Dir::root().entryIs(statusFactory(name));
    Vek::Dir::root().entryIs(requestFactory("request"));
    return true;
  }();
  require(entered);
  try {
    auto const status = Vek::strepToValue(text, static_cast<Vek::Ptr<Status>*>(nullptr));
    if (status) require(Vek::Dir::root().entity(status->name()) == status);
  } catch (Vek::RangeException const& e) {
    require(!e.message().empty());
  }
}

constexpr void (*readers[])(String8 const&) = {
    readValue<RouteStats>,
    readValue<JLpmStats>,
    readValue<LpmStats>,
    readValue<InternalState>,
    readValue<TimingMarkers>,
    readValue<LpmLevelBits>,
    readValue<AclRoute::Ipv4EgressAclLabel>,
    readReference,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size == 0) return 0;
  readers[data[0] % std::size(readers)](String8(std::string_view(reinterpret_cast<char const*>(data) + 1, size - 1)));
  return 0;
}

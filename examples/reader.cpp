// A reader on an Asio loop: mounts the entity of examples/agent.cpp, changes it, and ends when the agent has the
// change.
#include <dornl3/platform/link/AsioLoop.h>
#include <dornl3/platform/link/Client.h>
#include <dornl3/schema/Status.h>

#include <iostream>

namespace L3 = Hardware::DornL3Unicast;
namespace Log = Vek::NboAttrLog;
namespace Link = Vek::Link;

int main(int, char** arguments) {
  asio::io_context context{1};
  Link::AsioLoop loop{context};
  Link::Client client{loop, Link::Address::parse(arguments[1]), {.connection = {"reader", {}}}};
  auto const mount = Log::mountOf<L3::Request>("request", Log::Access::writable);
  client.mountIs(mount);
  client.whenChangedIs([&] {
    if (!client.trouble().empty()) std::cout << "no connection: " << client.trouble() << "; it is tried again\n";
  });

  int status = 1;
  mount->whenChangedIs([&](Log::Mount&) {
    if (mount->state() != Vek::Dir::inStep) return;
    for (int i = 0; i < 3; ++i) Log::mountedWritable<L3::Request>(*mount)->statusRequestIdInc(1);
    mount->barrier([&](Log::Barriers::Outcome outcome) {
      bool const isApplied = outcome == Log::Barriers::Outcome::applied;
      std::cout << (isApplied ? "the agent has it\n" : "nobody knows what became of it\n");
      status = isApplied ? 0 : 1;
      context.stop();
    });
  });
  context.run();
  return status;
}

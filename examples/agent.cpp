// An agent: serves an entity at an address, such as unix:/tmp/counter.sock, until it has been asked three times.
#include <dornl3/platform/link/PollLoop.h>
#include <dornl3/platform/link/Server.h>
#include <dornl3/schema/Status.h>

#include <iostream>

namespace L3 = Hardware::DornL3Unicast;
namespace Log = Vek::NboAttrLog;
namespace Link = Vek::Link;

int main(int, char** arguments) {
  Link::PollLoop loop;
  Link::Server server{loop, Link::Address::parse(arguments[1]), {.connection = {"agent", {}}, .mode = 0600}};
  auto const request = L3::requestFactory("request");
  server.exportIs(request, Log::Access::writable);
  std::cout << "listens at " << server.listener().address().text() << '\n' << std::flush;

  bool const isAsked = loop.runUntil([&] { return request->statusRequestId() >= 3 && server.peerCount() == 0; }, 30);
  std::cout << "asked " << request->statusRequestId() << " times\n";
  return isAsked ? 0 : 1;
}

#include "apps/kernel/KernelReader.h"

#include "apps/kernel/Surroundings.h"

namespace Apps::Kernel {

KernelFigures readKernel(MessageSource& source) {
  Dumper dumper{source};
  Surroundings surroundings;
  Surroundings::Interrupted interrupted;
  surroundings.read(dumper, interrupted);

  // Routes are summed up as they stream by; none is kept.
  RouteFigures routes{surroundings.nextHops(), surroundings.objects()};
  RouteReader reader{surroundings.nextHops()};
  RouteCommands commands;
  Route route;
  auto const start = [&] {
    routes.clear();
    commands = {};
  };
  Outcome const outcome = dumper.read(Table::routes, start, [&](Bytes body) {
    bool const isRead = readRoute(body, route);
    if (isRead && route.family == Family::other) return;
    ++commands.processed;
    if (!isRead) ++commands.failed;
    if (!isRead || !route.forwardsOrDiscards()) return;
    ++commands.added;
    routes.add(reader.useOf(route));
  });
  if (outcome == Outcome::interrupted) interrupted.push_back(tableName(Table::routes));

  KernelFigures figures = surroundings.sumUp(routes);
  figures.commands = commands;
  figures.interrupted = std::move(interrupted);
  return figures;
}

}  // namespace Apps::Kernel

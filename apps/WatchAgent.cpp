#include "apps/WatchAgent.h"

#include "apps/CommandLoop.h"
#include "apps/LocalTime.h"
#include "apps/remote/NoAnswer.h"
#include "apps/show/WallClock.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace Apps {

namespace {

constexpr double togetherness = 0.01;  // seconds: what comes in one after the other was published together

}  // namespace

AgentWatch::AgentWatch(Vek::Link::Loop& loop, Target const& target, WatchOptions const& options, ChangePrinter& printer,
                       Notify notify, std::function<void()> done)
    : options_{options},
      printer_{printer},
      notify_{std::move(notify)},
      done_{std::move(done)},
      timeout_{target.timeout},
      filled_{pathsFilledByAgent()},
      pace_{loop, togetherness, [this] { look(); }},
      mounts_{loop, target.mounts("watch"), wishesFor(options.paths, Use::reads)},
      timer_{loop.timer([this] {
        if (!watch_) mounts_.giveUp(timeout_);
      })} {
  mounts_.whenChangedIs([this] { pace_.soon(); });
  timer_->dueIs(Vek::NboAttrLog::steadyClock()() + timeout_);
}

void AgentWatch::look() {
  mounts_.needNoRefusal();
  if (!mounts_.isInStep()) {
    if (!watch_) return mounts_.needConnection();
    if (!std::exchange(isStale_, true)) tellStale();
  } else {
    if (!watch_) return begin();
    printer_.printChanges(watch_->changes());
    if (std::exchange(isStale_, false)) tellCurrent();
  }
  if (printer_.isDone()) done_();
}

void AgentWatch::begin() {
  watch_.emplace(mounts_.dir(), options_.paths, options_.look(filled_), [this] { pace_.soon(); });
  printer_.print(watch_->start());
  if (printer_.isDone()) return done_();
  for (std::string const& note : watch_->notes()) notify_(note);
}

void AgentWatch::tellStale() {
  double const since = mounts_.lastWord();
  std::string const why = mounts_.trouble().empty() ? "it has begun anew" : mounts_.trouble();
  nlohmann::ordered_json const line{{"time", Show::secondsSince1970()},
                                    {"agent", mounts_.place()},
                                    {"stale", true},
                                    {"since", since},
                                    {"reason", why}};
  tellState(line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace),
            fmt::format("The agent at {} is away: {}. What is shown is stale since {}; it is tried again.",
                        mounts_.place(), why, localTime(since)));
}

void AgentWatch::tellCurrent() {
  nlohmann::ordered_json const line{{"time", Show::secondsSince1970()}, {"agent", mounts_.place()}, {"stale", false}};
  tellState(line.dump(), fmt::format("The agent at {} is back: what is shown is current.", mounts_.place()));
}

void AgentWatch::tellState(std::string const& line, std::string const& sentence) {
  options_.json ? printer_.printLine(line + '\n') : notify_(sentence);
}

Written watchAgent(Target const& target, WatchOptions const& options, AgentWatch::Notify const& notify) {
  CommandLoop loop{CommandLoop::Output::isRead};
  ChangePrinter printer{options, loop.stopDescriptor()};
  AgentWatch const watch{loop.loop(), target, options, printer, notify, [&loop] { loop.stop(); }};
  loop.run();
  return printer.written();
}

}  // namespace Apps

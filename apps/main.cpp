// dornl3: the command line.
#include "apps/Help.h"
#include "apps/StandardOutput.h"
#include "apps/WatchAgent.h"
#include "apps/WatchLocal.h"
#include "apps/agent/RunAgent.h"
#include "apps/attributes/CommandLine.h"
#include "apps/kernel/KernelReader.h"
#include "apps/kernel/NetlinkSocket.h"
#include "apps/remote/FreshFigures.h"
#include "apps/remote/NoAnswer.h"
#include "apps/remote/Target.h"
#include "apps/show/HostRoots.h"
#include "apps/show/Replicate.h"
#include "apps/show/ShowLocal.h"
#include "apps/show/StatusFiller.h"
#include "dornl3/platform/vek/Dir.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

namespace {

using namespace Apps;

constexpr int fine = 0;
constexpr int failed = 1;
constexpr int misused = 2;
constexpr int unanswered = 3;

constexpr char const* whatIsShown = "What is shown are figures: how many routes, next hops and entries there are, and\n"
                                    "in what state. Single routes are to be had from 'ip route', 'ip -6 route' and\n"
                                    "'ip -f mpls route', single neighbours from 'ip neigh'.\n\n";

constexpr char const* agentHelp = "It listens at $DORNL3_AGENT, or dornl3.sock in $XDG_RUNTIME_DIR or /run, where\n"
                                  "the other commands look for it. Who may connect to a Unix socket may change\n"
                                  "what is asked for and configured: request, auditRequest, cliConfig and\n"
                                  "aclRouteConfig; over TCP, where nobody is known, request alone. The rest is\n"
                                  "read only. Ctrl-C and SIGTERM end it, with status 0.\n\n";

struct ShowOptions {
  Target target;
  bool json = false;
  bool text = false;
};

void complain(std::string const& text) { std::cerr << "dornl3: " << text << '\n'; }

int statusOf(Written const& written) {
  if (written.how != Written::failed) return fine;
  complain("The output could not be written: " + std::generic_category().message(written.error) +
           ". Check where standard output leads.");
  return failed;
}

int print(std::string const& text) { return statusOf(writeToStandardOutput(text)); }

void addForms(CLI::App& command, ShowOptions& options) {
  CLI::Option* json = command.add_flag("--json", options.json, "Print JSON instead of tables");
  command.add_flag("--text", options.text, "Print each value in its text form instead of tables")->excludes(json);
  command.footer(std::string{whatIsShown} + exitStatus);
}

CLI::App* addShow(CLI::App& app, ShowOptions& options) {
  CLI::App* show = app.add_subcommand("show", "Print figures of the forwarding state: routes, next hops, tunnels");
  options.target.addTo(*show, "Read this host's kernel, without an agent");
  addForms(*show, options);
  return show;
}

CLI::App* addRequest(CLI::App& app, ShowOptions& options) {
  CLI::App* request = app.add_subcommand("request", "Have an agent read its kernel afresh, and print its figures");
  options.target.addTo(*request, nullptr);
  addForms(*request, options);
  return request;
}

CLI::App* addAgent(CLI::App& app, AgentOptions& options) {
  CLI::App* agent = app.add_subcommand("agent", "Follow this host's kernel, and serve what it knows to other commands");
  options.listen = defaultAgentAddress();
  agent->add_option("--listen", options.listen, "Where: unix:PATH or tcp:HOST:PORT")->type_name("ADDRESS");
  auto const takeMode = [&options](std::string const& text) { options.mode = *modeOf(text); };
  auto const needMode = [](std::string const& text) {
    return modeOf(text) ? "" : "'" + text + "' is no mode: octal digits up to 777";
  };
  agent->add_option_function<std::string>("--mode", takeMode, "Who may connect to a Unix socket, 0660 if not given")
      ->check(needMode)
      ->type_name("OCTAL");
  agent->add_flag("-v,--verbose", options.isVerbose, "Say who comes and goes");
  agent->footer(std::string{agentHelp} + exitStatus);
  return agent;
}

CLI::App* addReplicate(CLI::App& app, bool& local) {
  CLI::App* replicate = app.add_subcommand("replicate", "Mount all entities over a log in this process, and compare");
  replicate->add_flag("--local", local, "Read this host's kernel (required)");
  replicate->footer(std::string{"Prints the digest of each root entity at both ends. Status 1 where they differ.\n\n"} +
                    exitStatus);
  return replicate;
}

std::optional<std::uint64_t> wholeNumber(std::string const& text) {
  std::uint64_t number = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  bool const fits = error == std::errc{} && end == text.data() + text.size() && number > 0;
  return fits ? std::optional{number} : std::nullopt;
}

std::string needWholeNumber(std::string const& text) {
  return wholeNumber(text) ? "" : "'" + text + "' is no whole number from 1 to 18446744073709551615";
}

CLI::App* addWatch(CLI::App& app, Target& target, WatchOptions& options) {
  CLI::App* watch = app.add_subcommand("watch", "Print what is at paths, and then what changes there, as it changes");
  target.addTo(*watch, "Follow this host's kernel, without an agent");
  watch->add_flag("-r,--recursive", options.recursive, "Go into children, also those that come");
  watch->add_flag("-w,--whole", options.whole, "Print records in one piece, not the fields that changed");
  watch->add_flag("-a,--all", options.all, "Show also what is not filled on a host");
  CLI::Option* json = watch->add_flag("--json", options.json, "Print JSON, an object a line");
  watch->add_flag("-t,--time", options.stamped, "Put the local time in front of each line")->excludes(json);
  auto const takeChanges = [&options](std::string const& text) { options.changes = wholeNumber(text); };
  watch->add_option_function<std::string>("-n,--changes", takeChanges, "End after that many changes")
      ->check(needWholeNumber)
      ->type_name("NUMBER");
  watch->add_option("PATH", options.paths,
                    "An entity, an attribute, a collection or a member of one; everything without one");
  watch->footer(pathHelp);
  watch->footer(std::string{"Ctrl-C ends it, with status 0. An agent that goes away is waited for.\n\n"} + exitStatus);
  return watch;
}

Show::Style styleOfTerminal() {
  if (isatty(STDOUT_FILENO) != 1) return Show::Style::plain;
  return Show::styleFor(std::getenv("TERM"), std::getenv("NO_COLOR"));
}

Show::Form formOf(ShowOptions const& options) {
  return options.json ? Show::Form::json : options.text ? Show::Form::text : Show::Form::table;
}

int runOnFreshFigures(ShowOptions const& options, char const* command) {
  Vek::Link::PollLoop loop;
  AgentSession agent{loop, options.target.mounts(command), figureWishes(), options.target.timeout};
  Show::Roots const roots = freshFigures(agent);
  return print(Show::print(roots, formOf(options), styleOfTerminal()));
}

int runShow(ShowOptions const& options) {
  if (!options.target.isLocal) return runOnFreshFigures(options, "show");
  Kernel::NetlinkSocket kernel;
  Show::Shown const shown = Show::showLocal(kernel, formOf(options), styleOfTerminal());
  for (std::string const& notice : shown.notices) complain(notice);
  return print(shown.output);
}

int runAgent(AgentOptions const& options) {
  Apps::runAgent(options, complain);
  return fine;
}

int runReplicate(bool local) {
  if (!local) {
    complain("Only this host's own entities can be mounted. Type 'dornl3 replicate --local'.");
    return misused;
  }
  Kernel::NetlinkSocket kernel;
  Show::Replicated const replicated = Show::replicateLocal(kernel);
  for (std::string const& notice : replicated.notices) complain(notice);
  int const status = print(replicated.output);
  if (!replicated.areEqual)
    complain("What came over the log is not what was sent. This is a fault of dornl3: tell us.");
  return replicated.areEqual ? status : failed;
}

int runWatch(Target const& target, WatchOptions const& options) {
  return statusOf(target.isLocal ? watchLocal(options, complain) : watchAgent(target, options, complain));
}

int tell(Attributes::Answer const& answer) {
  int const status = print(answer.text);
  for (std::string const& note : answer.notes) complain(note);
  return answer.isAsAsked ? status : failed;
}

int runOnHost(Attributes::CommandLine const& attributes) {
  Kernel::NetlinkSocket kernel;
  Show::HostRoots const host{[&kernel] { return Kernel::readKernel(kernel); }, Show::Asker::self};
  for (std::string const& notice : Show::noticesOf(host.interrupted())) complain(notice);
  Attributes::Filled const filled{Show::filledPaths(Show::Reading::once)};
  return tell(attributes.run(Vek::Dir::root(), filled, [] {}));
}

int runOnAgent(Attributes::CommandLine const& attributes, Target const& target) {
  Use const use = attributes.isChange() ? Use::changes : Use::reads;
  std::vector<AgentMounts::Wish> const wishes = wishesFor(attributes.paths(), use);
  Vek::Link::PollLoop loop;
  AgentSession agent{loop, target.mounts(attributes.given()), wishes, target.timeout};
  Attributes::Filled const filled{pathsFilledByAgent()};
  return tell(attributes.run(agent.dir(), filled, [&] {
    try {
      agent.settle({wishes.front().name.view()});
    } catch (NoAnswer const& error) {
      throw NoAnswer{fmt::format("Whether the change was made is unknown: {} 'dornl3 get' tells what stands there.",
                                 error.what())};
    }
  }));
}

int runOnAttributes(Attributes::CommandLine const& attributes, Target const& target) {
  if (!attributes.needsEntities())
    return tell(attributes.run(Vek::Dir::root(), Attributes::Filled::everything(), [] {}));
  return target.isLocal ? runOnHost(attributes) : runOnAgent(attributes, target);
}

// Says what the parser has to say: help and version, or what is wrong.
int answer(CLI::App const& app, CLI::ParseError const& outcome) {
  std::ostringstream out;
  bool const isMisuse = app.exit(outcome, out, std::cerr) != 0;
  return isMisuse ? misused : print(out.str());
}

int run(int argc, char** argv) {
  CLI::App app{"The forwarding state of a host, as its forwarding software sees it.", "dornl3"};
  app.set_version_flag("--version", "dornl3 " DORNL3_VERSION);
  app.require_subcommand(1);
  app.formatter(std::make_shared<HelpForm>());
  app.footer(exitStatus);
  app.failure_message([](CLI::App const* parsed, CLI::Error const& error) { return misuse(*parsed, error); });
  ShowOptions showOptions;
  CLI::App const* const show = addShow(app, showOptions);
  ShowOptions requestOptions;
  CLI::App const* const request = addRequest(app, requestOptions);
  AgentOptions agentOptions;
  CLI::App const* const agent = addAgent(app, agentOptions);
  bool replicatesLocal = false;
  CLI::App const* const replicate = addReplicate(app, replicatesLocal);
  Target watchTarget;
  WatchOptions watchOptions;
  CLI::App const* const watch = addWatch(app, watchTarget, watchOptions);
  Target target;
  Attributes::CommandLine const attributes{app, [&target](CLI::App& command) {
                                             target.addTo(command, "Work on this host's own entities, filled from its "
                                                                   "kernel, without an agent");
                                           }};
  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& outcome) {
    return answer(app, outcome);
  }
  if (show->parsed()) return runShow(showOptions);
  if (request->parsed()) return runOnFreshFigures(requestOptions, "request");
  if (agent->parsed()) return runAgent(agentOptions);
  if (replicate->parsed()) return runReplicate(replicatesLocal);
  if (watch->parsed()) return runWatch(watchTarget, watchOptions);
  return runOnAttributes(attributes, target);
}

}  // namespace

int main(int argc, char** argv) {
  prepareStandardStreams();
  try {
    return run(argc, argv);
  } catch (NoAnswer const& error) {
    complain(error.what());
    return unanswered;
  } catch (std::exception const& error) {
    complain(error.what());
    return failed;
  }
}

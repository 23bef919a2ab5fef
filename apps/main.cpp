// dornl3: the command line.
#include "apps/Help.h"
#include "apps/StandardOutput.h"
#include "apps/WatchLocal.h"
#include "apps/attributes/CommandLine.h"
#include "apps/kernel/KernelReader.h"
#include "apps/kernel/NetlinkSocket.h"
#include "apps/show/HostRoots.h"
#include "apps/show/Replicate.h"
#include "apps/show/ShowLocal.h"
#include "apps/show/StatusFiller.h"
#include "dornl3/platform/vek/Dir.h"

#include <CLI/CLI.hpp>
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

constexpr char const* whatIsShown = "What is shown are figures: how many routes, next hops and entries there are, and\n"
                                    "in what state. Single routes are to be had from 'ip route', 'ip -6 route' and\n"
                                    "'ip -f mpls route', single neighbours from 'ip neigh'.\n\n";

struct ShowOptions {
  bool local = false;
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

CLI::App* addShow(CLI::App& app, ShowOptions& options) {
  CLI::App* show = app.add_subcommand("show", "Print figures of the forwarding state: routes, next hops, tunnels");
  show->add_flag("--local", options.local, "Read this host's kernel (required)");
  CLI::Option* json = show->add_flag("--json", options.json, "Print JSON instead of tables");
  show->add_flag("--text", options.text, "Print each value in its text form instead of tables")->excludes(json);
  show->footer(std::string{whatIsShown} + exitStatus);
  return show;
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

CLI::App* addWatch(CLI::App& app, WatchOptions& options) {
  CLI::App* watch = app.add_subcommand("watch", "Print what is at paths, and then what changes there, as it changes");
  watch->add_flag("--local", options.local, "Follow this host's own entities, as its kernel tells (required)");
  watch->add_flag("-r,--recursive", options.recursive, "Go into children, also those that come");
  watch->add_flag("-w,--whole", options.whole, "Print records in one piece, not the fields that changed");
  watch->add_flag("-a,--all", options.all, "Show also what this host does not fill");
  CLI::Option* json = watch->add_flag("--json", options.json, "Print JSON, an object a line");
  watch->add_flag("-t,--time", options.stamped, "Put the local time in front of each line")->excludes(json);
  auto const takeChanges = [&options](std::string const& text) { options.changes = wholeNumber(text); };
  watch->add_option_function<std::string>("-n,--changes", takeChanges, "End after that many changes")
      ->check(needWholeNumber)
      ->type_name("NUMBER");
  watch->add_option("PATH", options.paths,
                    "An entity, an attribute, a collection or a member of one; everything without one");
  watch->footer(pathHelp);
  watch->footer(std::string{"Ctrl-C ends it, with status 0.\n\n"} + exitStatus);
  return watch;
}

Show::Style styleOfTerminal() {
  if (isatty(STDOUT_FILENO) != 1) return Show::Style::plain;
  return Show::styleFor(std::getenv("TERM"), std::getenv("NO_COLOR"));
}

int runShow(ShowOptions const& options) {
  if (!options.local) {
    complain("Only this host's own state can be shown. Type 'dornl3 show --local'.");
    return misused;
  }
  Show::Form const form = options.json ? Show::Form::json : options.text ? Show::Form::text : Show::Form::table;
  Kernel::NetlinkSocket kernel;
  Show::Shown const shown = Show::showLocal(kernel, form, styleOfTerminal());
  for (std::string const& notice : shown.notices) complain(notice);
  return print(shown.output);
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

int runWatch(WatchOptions const& options) {
  if (!options.local) {
    complain("Only this host's own entities can be followed. Add --local: 'dornl3 watch --local ...'.");
    return misused;
  }
  return statusOf(watchLocal(options, complain));
}

int runOnAttributes(Attributes::CommandLine const& attributes) {
  if (std::string const misuse = attributes.misuse(); !misuse.empty()) {
    complain(misuse);
    return misused;
  }
  if (!attributes.needsEntities()) return print(attributes.run(Vek::Dir::root()).text);
  Kernel::NetlinkSocket kernel;
  Show::HostRoots const host{[&kernel] { return Kernel::readKernel(kernel); }};
  for (std::string const& notice : Show::noticesOf(host.interrupted())) complain(notice);
  Attributes::Answer const answer = attributes.run(Vek::Dir::root());
  int const status = print(answer.text);
  for (std::string const& note : answer.notes) complain(note);
  return status;
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
  ShowOptions options;
  addShow(app, options);
  bool replicatesLocal = false;
  CLI::App const* const replicate = addReplicate(app, replicatesLocal);
  WatchOptions watchOptions;
  CLI::App const* const watch = addWatch(app, watchOptions);
  Attributes::CommandLine const attributes{app, Attributes::Filled{Show::filledPaths(Show::Reading::once)}};
  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& outcome) {
    return answer(app, outcome);
  }
  if (replicate->parsed()) return runReplicate(replicatesLocal);
  if (watch->parsed()) return runWatch(watchOptions);
  return attributes.isGiven() ? runOnAttributes(attributes) : runShow(options);
}

}  // namespace

int main(int argc, char** argv) {
  prepareStandardStreams();
  try {
    return run(argc, argv);
  } catch (std::exception const& error) {
    complain(error.what());
    return failed;
  }
}

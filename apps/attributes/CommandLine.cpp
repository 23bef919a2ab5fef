#include "apps/attributes/CommandLine.h"

#include "apps/Help.h"

#include <fmt/format.h>

namespace Apps::Attributes {

namespace {

constexpr char const* confirmed = "It ends when the agent has applied the change, and prints what stands there\n"
                                  "then; status 1 if that is something else. With --local the entities live only\n"
                                  "as long as this command: what it changes is gone when it ends.\n\n";

}  // namespace

CommandLine::CommandLine(CLI::App& app, AddTarget addTarget) : addTarget_{std::move(addTarget)} {
  addReading(app);
  addChanging(app);
}

CLI::App* CommandLine::add(CLI::App& app, char const* name, char const* description, Over over, Body body) {
  CLI::App* const command = app.add_subcommand(name, description);
  if (over != Over::typesAlone) {
    addTarget_(*command);
  } else {
    command->add_flag("--local", local_, "Tell the types of this program, as is done anyway");
  }
  command->add_flag("--json", json_, "Print JSON");
  if (over == Over::entities) command->footer(pathHelp);
  command->footer(exitStatus);
  command->callback([this, name, over, body = std::move(body)] {
    given_ = name;
    over_ = over;
    body_ = body;
  });
  return command;
}

void CommandLine::addAll(CLI::App& command) {
  command.add_flag("-a,--all", all_, "Show also what is not filled on a host");
}

Look CommandLine::look(On const& on) const {
  return {recursive_ ? Depth::all : Depth::one, whole_ ? Records::whole : Records::byField, &shown(on)};
}

std::vector<std::string> CommandLine::paths() const {
  std::vector<std::string> all = paths_;
  if (path_) all.push_back(*path_);
  return all;
}

Answer CommandLine::run(Vek::Dir const& roots, Filled const& filled, Confirm const& confirm) const {
  return body_({roots, filled, confirm});
}

void CommandLine::addReading(CLI::App& app) {
  CLI::App* const get = add(app, "get", "Print what is at paths", Over::entities, [this](On const& on) {
    if (digest_) return Answer{digests(on.roots, paths_, form())};
    return Attributes::get(on.roots, paths_, look(on), form());
  });
  get->add_option("PATH", paths_, "An entity, an attribute, a collection or a member of one; everything without one");
  CLI::Option* const recursive =
      get->add_flag("-r,--recursive", recursive_, "Go into collections and children, as --json does anyway");
  get->add_flag("-w,--whole", whole_, "Print records in one piece, in their text form");
  addAll(*get);
  get->add_flag("--digest", digest_, "Print the digest of each entity: equal for equal state")->excludes(recursive);

  CLI::App* const count = add(app, "count", "Print how many members a collection has", Over::entities,
                              [this](On const& on) { return Attributes::count(on.roots, *path_, on.filled, form()); });
  count->add_option("PATH", path_, "A collection")->required();

  CLI::App* const ls =
      add(app, "ls", "List the roots, the attributes of an entity, or the keys of a collection", Over::entities,
          [this](On const& on) { return Attributes::ls(on.roots, path_, shown(on), form()); });
  ls->add_option("PATH", path_, "An entity, a value or a collection; the roots without one");
  addAll(*ls);

  CLI::App* const types = add(app, "types", "List the types, or the attributes of one", Over::typesAlone,
                              [this](On const&) { return Answer{Attributes::types(path_, form())}; });
  types->add_option("NAME", path_, "A type, by its full name or the last part of it");
}

void CommandLine::addChanging(CLI::App& app) {
  CLI::App* const set =
      add(app, "set", "Assign a value, or make a child", Over::entitiesToChange, [this](On const& on) {
        Missing const missing = parents_ ? Missing::make : Missing::refuse;
        return Attributes::set(on.roots, *path_, value_, missing, form(), on.confirm);
      });
  set->add_option("PATH", path_, "An attribute, a member of a collection, or a child to make")->required();
  set->add_option("VALUE", value_,
                  "The value in its text form, as 'get' prints it: 17, True, 0.5, \"'a text'\"; behind -- where it "
                  "begins with a minus. Nothing for a child");
  set->add_flag("-p,--parents", parents_, "Make the children on the way that are not there");
  set->footer(std::string{confirmed} + exitStatus);

  CLI::App* const del =
      add(app, "del", "Remove a member of a collection, or a child; print what it was", Over::entitiesToChange,
          [this](On const& on) { return Attributes::del(on.roots, *path_, form(), on.confirm); });
  del->add_option("PATH", path_, "A member of a collection, or a child")->required();
  del->footer(std::string{confirmed} + exitStatus);
}

}  // namespace Apps::Attributes

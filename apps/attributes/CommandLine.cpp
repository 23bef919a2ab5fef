#include "apps/attributes/CommandLine.h"

#include "apps/Help.h"

#include <fmt/format.h>

namespace Apps::Attributes {

namespace {

constexpr char const* shortLived = "With --local the entities live only as long as this command: what it changes\n"
                                   "is gone when it ends.\n\n";

}  // namespace

CommandLine::CommandLine(CLI::App& app, Filled filled) : filled_{std::move(filled)} {
  addReading(app);
  addChanging(app);
}

CLI::App* CommandLine::add(CLI::App& app, char const* name, char const* description, Over over, Body body) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->add_flag("--local", local_,
                    over == Over::entities ? "Work on this host's own entities, filled from its kernel (required)"
                                           : "Tell the types of this program, as is done anyway");
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
  command.add_flag("-a,--all", all_, "Show also what this host does not fill");
}

Look CommandLine::look() const {
  return {recursive_ ? Depth::all : Depth::one, whole_ ? Records::whole : Records::byField, &shown()};
}

void CommandLine::addReading(CLI::App& app) {
  CLI::App* const get = add(app, "get", "Print what is at paths", Over::entities, [this](Vek::Dir const& roots) {
    if (digest_) return Answer{digests(roots, paths_, form())};
    return Attributes::get(roots, paths_, look(), form());
  });
  get->add_option("PATH", paths_, "An entity, an attribute, a collection or a member of one; everything without one");
  CLI::Option* const recursive =
      get->add_flag("-r,--recursive", recursive_, "Go into collections and children, as --json does anyway");
  get->add_flag("-w,--whole", whole_, "Print records in one piece, in their text form");
  addAll(*get);
  get->add_flag("--digest", digest_, "Print the digest of each entity: equal for equal state")->excludes(recursive);

  CLI::App* const count =
      add(app, "count", "Print how many members a collection has", Over::entities,
          [this](Vek::Dir const& roots) { return Attributes::count(roots, *path_, filled_, form()); });
  count->add_option("PATH", path_, "A collection")->required();

  CLI::App* const ls =
      add(app, "ls", "List the roots, the attributes of an entity, or the keys of a collection", Over::entities,
          [this](Vek::Dir const& roots) { return Attributes::ls(roots, path_, shown(), form()); });
  ls->add_option("PATH", path_, "An entity, a value or a collection; the roots without one");
  addAll(*ls);

  CLI::App* const types = add(app, "types", "List the types, or the attributes of one", Over::typesAlone,
                              [this](Vek::Dir const&) { return Answer{Attributes::types(path_, form())}; });
  types->add_option("NAME", path_, "A type, by its full name or the last part of it");
}

void CommandLine::addChanging(CLI::App& app) {
  CLI::App* const set =
      add(app, "set", "Assign a value, or make a child", Over::entities, [this](Vek::Dir const& roots) {
        Missing const missing = parents_ ? Missing::make : Missing::refuse;
        return Answer{Attributes::set(roots, *path_, value_, missing, form())};
      });
  set->add_option("PATH", path_, "An attribute, a member of a collection, or a child to make")->required();
  set->add_option("VALUE", value_,
                  "The value in its text form, as 'get' prints it: 17, True, 0.5, \"'a text'\"; behind -- where it "
                  "begins with a minus. Nothing for a child");
  set->add_flag("-p,--parents", parents_, "Make the children on the way that are not there");
  set->footer(std::string{shortLived} + exitStatus);

  CLI::App* const del =
      add(app, "del", "Remove a member of a collection, or a child; print what it was", Over::entities,
          [this](Vek::Dir const& roots) { return Answer{Attributes::del(roots, *path_, form())}; });
  del->add_option("PATH", path_, "A member of a collection, or a child")->required();
  del->footer(std::string{shortLived} + exitStatus);
}

std::string CommandLine::misuse() const {
  if (local_ || !needsEntities()) return {};
  return fmt::format("Only this host's own entities can be reached. Add --local: 'dornl3 {} --local ...'.", given_);
}

}  // namespace Apps::Attributes

// typedWay TEMPLATE SCHEMA OUTPUT: fills the template with the types of a schema file. Run by the build.
#include "schemac/Read.h"
#include "schemac/Render.h"
#include "schemac/View.h"
#include "schemac/Write.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

int main(int argc, char** argv) {
  try {
    if (argc != 4) throw std::runtime_error("usage: typedWay TEMPLATE SCHEMA OUTPUT");
    std::ifstream in(argv[1], std::ios::binary);
    if (!in) throw std::runtime_error(std::string("cannot read ") + argv[1]);
    std::string const text{std::istreambuf_iterator<char>(in), {}};
    Schemac::ReadResult const schema = Schemac::readFile(argv[2]);
    if (!schema.file) throw std::runtime_error(std::string("no schema file: ") + argv[2]);
    auto const source = [&text](std::string_view) { return std::string_view(text); };
    Schemac::writeIfChanged(argv[3],
                            Schemac::render("TypedWay", Schemac::viewOf(*schema.file, "dornl3/schema"), source));
    return 0;
  } catch (std::exception const& error) {
    std::cerr << "typedWay: " << error.what() << '\n';
    return 1;
  }
}

#include "schemac/Write.h"

#include "schemac/Read.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace Schemac {

namespace {

bool holds(std::filesystem::path const& path, std::string_view text) {
  std::error_code error;
  if (std::filesystem::file_size(path, error) != text.size() || error) return false;
  std::ifstream in(path, std::ios::binary);
  std::string const present{std::istreambuf_iterator<char>(in), {}};
  return in && present == text;
}

// A file that is gone at the end of the scope, unless it was given another name.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::filesystem::path const& beside)
      : path_(beside.string() + fmt::format(".{}.new", ::getpid())) {}
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;

  [[nodiscard]] std::filesystem::path const& path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

[[noreturn]] void fail(std::filesystem::path const& path, std::string const& why) {
  throw FileError(fmt::format("cannot write {}: {}", path.string(), why));
}

}  // namespace

Written writeIfChanged(std::filesystem::path const& path, std::string_view text) {
  if (holds(path, text)) return Written::unchanged;
  std::error_code error;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), error);
  if (error) fail(path, error.message());

  TemporaryFile const fresh(path);
  std::ofstream out(fresh.path(), std::ios::binary);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  if (!out) fail(path, std::strerror(errno));
  std::filesystem::rename(fresh.path(), path, error);
  if (error) fail(path, error.message());
  return Written::written;
}

}  // namespace Schemac

// SPDX-License-Identifier: MIT
#include "host/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

// A file with a name of its own beside the target, gone again unless it is kept.
class Beside {
 public:
  explicit Beside(const std::filesystem::path& target) : name_(target.string() + ".XXXXXX") {
    handle_ = mkstemp(name_.data());
  }
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;
  ~Beside() {
    close();
    if (!name_.empty()) {
      unlink(name_.c_str());
    }
  }

  bool open() const { return handle_ >= 0; }
  const char* name() const { return name_.c_str(); }

  bool write(std::string_view content) {
    while (!content.empty()) {
      const auto written = ::write(handle_, content.data(), content.size());
      if (written < 0) {
        if (errno == EINTR) {
          continue;
        }
        return false;
      }
      content.remove_prefix(static_cast<std::size_t>(written));
    }
    return fsync(handle_) == 0;
  }

  bool allow(mode_t mode) { return fchmod(handle_, mode) == 0; }

  // Without replace the place must be free: a hard link says so and takes it in one step.
  bool put_at(const std::filesystem::path& target, bool replace) {
    if (replace) {
      if (rename(name_.c_str(), target.c_str()) != 0) {
        return false;
      }
      name_.clear();
      return true;
    }
    return link(name_.c_str(), target.c_str()) == 0;
  }

 private:
  void close() const {
    if (handle_ >= 0) {
      ::close(handle_);
    }
  }
  std::string name_;
  int handle_ = -1;
};

// What a new file may be used for: what this process lets new files be.
mode_t usual_mode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

[[noreturn]] void fail(const std::filesystem::path& path, const char* what) {
  throw UserError(fmt::format("{}: {}: {}", path.string(), what, std::strerror(errno)));
}

}  // namespace

std::string read_file(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    throw UserError(fmt::format("{}: is a folder; name a file", path.string()));
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    fail(path, "cannot be read");
  }
  std::string content{std::istreambuf_iterator<char>(in), {}};
  if (in.bad()) {
    fail(path, "cannot be read");
  }
  return content;
}

void write_file(const std::filesystem::path& path, std::string_view content, bool replace) {
  std::error_code error;
  // A link stays one: what it leads to is replaced.
  const auto resolved = std::filesystem::weakly_canonical(path, error);
  const auto& target = error ? path : resolved;
  struct stat old {};
  const bool exists = stat(target.c_str(), &old) == 0;
  if (exists && !S_ISREG(old.st_mode)) {
    throw UserError(fmt::format("{}: is no regular file; name another", path.string()));
  }
  if (exists && !replace) {
    throw UserError(fmt::format("{}: exists already; give --force to replace it", path.string()));
  }
  Beside beside(target);
  if (!beside.open()) {
    fail(path, "cannot be written");
  }
  // The old file's permissions stay: it may hold a password.
  if (!beside.write(content) || !beside.allow(exists ? old.st_mode & 07777 : usual_mode())) {
    fail(path, "cannot be written");
  }
  if (!beside.put_at(target, replace)) {
    if (errno == EEXIST) {
      throw UserError(fmt::format("{}: exists already; give --force to replace it", path.string()));
    }
    fail(path, "cannot be put in place");
  }
}

void finish_output(std::FILE* stream) {
  if (std::fflush(stream) != 0 || std::ferror(stream) != 0) {
    throw UserError(fmt::format("standard output cannot be written: {}", std::strerror(errno)));
  }
}

}  // namespace ostravel::host

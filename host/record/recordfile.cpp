// SPDX-License-Identifier: MIT
#include "host/record/recordfile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "host/usererror.h"

namespace ostravel::host::record {
namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;
constexpr mode_t kMode = 0666;  // less what the process masks

int flags_of(Existing existing) {
  constexpr int kAlways = O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC;
  switch (existing) {
    case Existing::Refuse:
      return kAlways | O_EXCL;
    case Existing::Replace:
      return kAlways | O_TRUNC;
    case Existing::Append:
      break;
  }
  return kAlways;
}

// -1 on failure.
ssize_t read_at(int file, std::vector<char>& buffer, off_t position) {
  ssize_t got = 0;
  do {
    got = pread(file, buffer.data(), buffer.size(), position);
  } while (got < 0 && errno == EINTR);
  return got;
}

}  // namespace

RecordFile::RecordFile(const std::string& path, Existing existing, std::string_view header)
    : path_(path), file_(open(path.c_str(), flags_of(existing), kMode)), owned_(true) {
  if (file_ < 0) {
    if (errno == EEXIST) {
      throw UserError(
          fmt::format("{}: exists already; give --append to go on with it, or --force to replace it", path));
    }
    fail("cannot be written");
  }
  try {
    struct stat state {};
    if (existing == Existing::Append && fstat(file_, &state) == 0 && state.st_size > 0) {
      resume(header);
    }
    if (!resumed_) {
      write(header);
    }
  } catch (...) {
    close(file_);
    throw;
  }
}

RecordFile::RecordFile(int descriptor, std::string_view header)
    : path_("standard output"), file_(descriptor) {
  write(header);
}

RecordFile::~RecordFile() {
  if (owned_) {
    close(file_);
  }
}

void RecordFile::resume(std::string_view header) {
  std::vector<char> buffer(std::max(kChunk, header.size()));
  auto got = read_at(file_, buffer, 0);
  if (got < 0) {
    fail("cannot be read");
  }
  const std::string_view head(buffer.data(), static_cast<std::size_t>(got));
  if (!head.starts_with(header)) {
    throw UserError(fmt::format(
        "{}: has other columns than this recording; record to another file, or replace it with --force",
        path_));
  }
  // A line end between quotes belongs to a text, so rows can be told only from the beginning on.
  bool quoted = false;
  off_t position = 0;
  off_t whole = 0;
  for (; got > 0; got = read_at(file_, buffer, position)) {
    for (ssize_t i = 0; i < got; ++i) {
      const char c = buffer[static_cast<std::size_t>(i)];
      quoted = quoted != (c == '"');
      if (c == '\n' && !quoted) {
        whole = position + i + 1;
      }
    }
    position += got;
  }
  if (got < 0) {
    fail("cannot be read");
  }
  cut_ = static_cast<std::uint64_t>(position - whole);
  if (cut_ > 0 && ftruncate(file_, whole) != 0) {
    fail("cannot be written");
  }
  resumed_ = true;
}

void RecordFile::write(std::string_view rows) {
  struct stat before {};
  const bool regular = fstat(file_, &before) == 0 && S_ISREG(before.st_mode);
  while (!rows.empty()) {
    const auto written = ::write(file_, rows.data(), rows.size());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written < 0) {
      const int reason = errno;
      if (regular && ftruncate(file_, before.st_size) != 0) {
        // Nothing more can be done; the reason of the write is the one to show.
      }
      errno = reason;
      fail("cannot be written");
    }
    rows.remove_prefix(static_cast<std::size_t>(written));
  }
}

void RecordFile::fail(const char* what) const {
  throw UserError(fmt::format("{}: {}: {}", path_, what, std::strerror(errno)));
}

}  // namespace ostravel::host::record

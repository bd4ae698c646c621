// SPDX-License-Identifier: MIT
#include "host/output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "host/files.h"
#include "host/usererror.h"

namespace ostravel::host {

OwnOutput::OwnOutput(const std::string& driver_output) {
  std::fflush(stdout);
  const int own = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  stream_ = own < 0 ? nullptr : fdopen(own, "w");
  if (stream_ == nullptr) {
    throw UserError(fmt::format("standard output cannot be used: {}", std::strerror(errno)));
  }
  if (driver_output == "-") {
    return;
  }
  const char* target = driver_output.empty() ? "/dev/null" : driver_output.c_str();
  const int driver = open(target, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (driver < 0) {
    const int reason = errno;
    std::fclose(stream_);
    throw UserError(fmt::format("{}: cannot be written: {}", target, std::strerror(reason)));
  }
  dup2(driver, STDOUT_FILENO);
  close(driver);
}

OwnOutput::~OwnOutput() {
  std::fflush(stdout);
  std::fflush(stream_);
  dup2(fileno(stream_), STDOUT_FILENO);
  std::fclose(stream_);
}

bool OwnOutput::has_reader() const {
  pollfd pipe{fileno(stream_), 0, 0};
  return ::poll(&pipe, 1, 0) <= 0 || (pipe.revents & POLLERR) == 0;
}

void OwnOutput::finish() const {
  finish_output(stream_);
}

bool OwnOutput::is_terminal() const {
  return isatty(fileno(stream_)) == 1;
}

}  // namespace ostravel::host

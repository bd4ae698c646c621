// SPDX-License-Identifier: MIT
// The file of a recording: rows reach it whole or not at all, and at once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ostravel::host::record {

// What becomes of a file that is there already.
enum class Existing : std::uint8_t { Refuse, Replace, Append };

class RecordFile {
 public:
  // Opens the file and writes the header to a new one. Appending takes a file with the same header only; half
  // a row at its end, as a power failure leaves it, is cut off. Throws UserError.
  RecordFile(const std::string& path, Existing existing, std::string_view header);
  // Writes to a descriptor that is not closed.
  RecordFile(int descriptor, std::string_view header);
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;
  ~RecordFile();

  // Throws UserError, with nothing of the rows in the file.
  void write(std::string_view rows);

  bool resumed() const { return resumed_; }       // rows of an earlier recording are in it
  std::uint64_t cut_off() const { return cut_; }  // bytes of half a row

 private:
  void resume(std::string_view header);
  [[noreturn]] void fail(const char* what) const;

  std::string path_;
  int file_ = -1;
  bool owned_ = false;
  bool resumed_ = false;
  std::uint64_t cut_ = 0;
};

}  // namespace ostravel::host::record

// SPDX-License-Identifier: MIT
// Project files written as raw bytes, each in a temporary folder of its own.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "driver/hostrecords.h"

// A folder that goes away with the object.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// The tag table section: version, count, rows, and the device descriptor when password() was called.
class ProjectFile {
 public:
  explicit ProjectFile(std::uint32_t version = 0) : version_(version) {}

  ProjectFile& tag(std::string_view name, std::uint32_t tag_id = 0, int device_id = 0,
                   std::uint32_t reserved2 = 0);
  // Sets bit 1 of the version as well.
  ProjectFile& password(bool enable, std::string_view text);
  // Announces another number of rows than the section holds.
  ProjectFile& announce(std::uint32_t rows);

  // Bytes in front of the section: where the table is said to be, and 7 bytes of the runtime's own.
  ProjectFile& position(std::uint32_t table_position);
  std::uint32_t position() const { return position_; }

  std::vector<BYTE> section() const;
  std::vector<BYTE> bytes() const;
  // Writes all bytes, or only the first ones of the section; returns the file's name.
  std::string write(const TemporaryFolder& folder) const;
  std::string write_cut(const TemporaryFolder& folder, std::size_t section_bytes) const;

 private:
  std::uint32_t version_;
  std::uint32_t position_ = 0;
  std::uint32_t rows_ = 0;
  bool announced_ = false;
  std::uint32_t announced_rows_ = 0;
  std::vector<BYTE> row_bytes_;
  std::vector<BYTE> descriptor_;
};

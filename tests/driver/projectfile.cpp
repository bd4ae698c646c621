// SPDX-License-Identifier: MIT
#include "tests/driver/projectfile.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <stdexcept>

namespace {

void append(std::vector<BYTE>& bytes, std::uint64_t value, int width) {
  for (int i = 0; i < width; ++i) bytes.push_back(static_cast<BYTE>(value >> (8 * i)));
}

void append(std::vector<BYTE>& bytes, std::string_view text) {
  for (char c : text) bytes.push_back(static_cast<BYTE>(c));
}

std::string write_bytes(const TemporaryFolder& folder, const std::vector<BYTE>& bytes) {
  const auto name = folder.path() / "project.bin";
  std::ofstream file(name, std::ios::binary);
  for (BYTE b : bytes) file.put(static_cast<char>(b));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + name.string());
  return name.string();
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string name = testing::TempDir() + "ostravel-driver-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make a temporary folder " + name);
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

ProjectFile& ProjectFile::tag(std::string_view name, std::uint32_t tag_id, int device_id,
                              std::uint32_t reserved2) {
  ++rows_;
  append(row_bytes_, name.size(), 2);
  append(row_bytes_, name);
  append(row_bytes_, static_cast<std::uint64_t>(device_id), 1);
  append(row_bytes_, tag_id, 4);
  append(row_bytes_, reserved2, 4);
  return *this;
}

ProjectFile& ProjectFile::password(bool enable, std::string_view text) {
  version_ |= 2;
  descriptor_.clear();
  append(descriptor_, 0xBEEF, 2);
  append(descriptor_, enable ? 1 : 0, 1);
  append(descriptor_, text.size(), 2);
  append(descriptor_, text);
  return *this;
}

ProjectFile& ProjectFile::announce(std::uint32_t rows) {
  announced_ = true;
  announced_rows_ = rows;
  return *this;
}

ProjectFile& ProjectFile::position(std::uint32_t table_position) {
  position_ = table_position;
  return *this;
}

std::vector<BYTE> ProjectFile::section() const {
  std::vector<BYTE> bytes;
  append(bytes, version_, 4);
  append(bytes, announced_ ? announced_rows_ : rows_, 4);
  bytes.insert(bytes.end(), row_bytes_.begin(), row_bytes_.end());
  bytes.insert(bytes.end(), descriptor_.begin(), descriptor_.end());
  return bytes;
}

std::vector<BYTE> ProjectFile::bytes() const {
  std::vector<BYTE> all(static_cast<std::size_t>(position_) + 7, 0x5A);
  const auto tail = section();
  all.insert(all.end(), tail.begin(), tail.end());
  return all;
}

std::string ProjectFile::write(const TemporaryFolder& folder) const {
  return write_bytes(folder, bytes());
}

std::string ProjectFile::write_cut(const TemporaryFolder& folder, std::size_t section_bytes) const {
  auto all = bytes();
  all.resize(static_cast<std::size_t>(position_) + 7 + section_bytes);
  return write_bytes(folder, all);
}

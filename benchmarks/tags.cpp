// SPDX-License-Identifier: MIT
#include "benchmarks/tags.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace bench {

namespace {

// Long enough for the longest name.
constexpr const char* kFiller =
    "Plant.Line4.Station7.Conveyor12.Drive3.Feedback.Measured.Filtered.Averaged.Scaled.Limited.Checked.Shown."
    "Stored.Kept.Sent";

std::string digits(int number, int width) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*d", width, number);
  return text;
}

void append(std::string& bytes, std::uint32_t value, int width) {
  for (int i = 0; i < width; ++i) bytes += static_cast<char>(value >> (8 * i));
}

}  // namespace

std::string tag_name(int length, const Shape& shape, int number) {
  const auto* found = std::find(std::begin(kNameLengths), std::end(kNameLengths), length);
  if (found == std::end(kNameLengths)) throw std::logic_error("no tag names of this length");
  std::string name(1, static_cast<char>(kFirstLengthMark + (found - std::begin(kNameLengths))));
  name.append(kFiller, static_cast<std::size_t>(length - 1 - kTail));
  name += static_cast<char>(kFirstValueMark + static_cast<int>(shape.value));
  return name + digits(shape.count, 4) + digits(shape.lower, 1) + digits(number, 3);
}

std::string row_name(int row) {
  return std::string(kFiller, 32) + ".M" + digits(row, 6);
}

TagFile::TagFile(const std::vector<std::string>& names) {
  std::string bytes(7, '\0');
  append(bytes, 0, 4);
  append(bytes, static_cast<std::uint32_t>(names.size()), 4);
  std::uint32_t id = 0;
  for (const std::string& name : names) {
    append(bytes, static_cast<std::uint32_t>(name.size()), 2);
    bytes += name;
    append(bytes, 0, 1);
    append(bytes, ++id, 4);
    append(bytes, 0, 4);
  }
  folder_ = (std::filesystem::temp_directory_path() / "ostravel-bench-XXXXXX").string();
  if (mkdtemp(folder_.data()) == nullptr)
    throw std::runtime_error("cannot make a temporary folder " + folder_);
  path_ = folder_ + "/project.bin";
  std::ofstream file(path_, std::ios::binary);
  file << bytes;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path_);
}

TagFile::~TagFile() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

}  // namespace bench

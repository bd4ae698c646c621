// SPDX-License-Identifier: MIT
// A folder of a test's own, gone with everything in it when the test ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

class Scratch {
 public:
  Scratch() : folder_((std::filesystem::temp_directory_path() / "ostravel.XXXXXX").string()) {
    if (mkdtemp(folder_.data()) == nullptr) {
      throw std::runtime_error("no folder for the test");
    }
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string path(const std::string& name) const { return folder_ + "/" + name; }

  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

  std::string read(const std::string& name) const {
    std::ifstream in(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  std::size_t files() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder_), std::filesystem::directory_iterator()));
  }

  const std::string& folder() const { return folder_; }

 private:
  std::string folder_;
};

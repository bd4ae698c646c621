// SPDX-License-Identifier: MIT
// The tag table, and a library function called through the driver.
#include <filesystem>

#include "benchmarks/tags.h"
#include "benchmarks/work.h"

namespace bench {

namespace {

std::vector<std::string> row_names(int rows) {
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(rows));
  for (int i = 0; i < rows; ++i) names.push_back(row_name(i));
  return names;
}

// A device from its start to its close; of a simulated one's memory the tag table stays.
class TagTable : public Work {
 public:
  TagTable(const Driver& driver, int rows)
      : driver_(driver),
        file_(row_names(rows)),
        path_(file_.path()),
        memory_(std::filesystem::file_size(path_)) {}

  void by_driver() override {
    constexpr BYTE kSimulated = 1;
    DWORD* device = nullptr;
    driver_.StartDeviceEx(kSimulated, &device, path_.data(), 0);
    driver_.CloseDevice(kSimulated, device);
  }
  void by_floor() override { read_ = least::read_file(path_.c_str(), memory_.data(), memory_.size()); }
  std::string fault() const override { return read_ == memory_.size() ? "" : "the file was not read"; }

 private:
  const Driver& driver_;
  TagFile file_;
  std::string path_;
  std::vector<char> memory_;
  std::size_t read_ = 0;
};

class ForwardedCall : public Work {
 public:
  explicit ForwardedCall(const Driver& driver) : forwarded_(driver.forwarded) {}

  void by_driver() override { result_ = forwarded_(handle_of(Shape{})); }
  void by_floor() override { result_ = least::free_handle(handle_of(Shape{})); }
  std::string fault() const override { return result_ == AGL40_SUCCESS ? "" : "the call did not arrive"; }

 private:
  decltype(Driver::forwarded) forwarded_;
  agl_int32_t result_ = -1;
};

}  // namespace

std::unique_ptr<Work> tag_table(const Driver& driver, int rows) {
  return std::make_unique<TagTable>(driver, rows);
}

std::unique_ptr<Work> forwarded_call(const Driver& driver) {
  return std::make_unique<ForwardedCall>(driver);
}

}  // namespace bench

// SPDX-License-Identifier: MIT
// Polls and writes of a connected device.
#include <algorithm>
#include <cstring>

#include "benchmarks/device.h"
#include "benchmarks/requests.h"
#include "benchmarks/tags.h"
#include "benchmarks/work.h"

namespace bench {

namespace {

constexpr std::size_t kAccessBuffer = 16384;  // bytes; more than the largest access of the cases takes

std::vector<std::string> names_of(const std::vector<Access>& accesses, int name_length) {
  std::vector<std::string> names;
  for (const Access& access : accesses) {
    const bool text = access.type.code == DT_STRING;
    const Shape shape{access.type.value, static_cast<std::uint16_t>(text ? 1 : access.count),
                      static_cast<std::uint8_t>(access.lower), !text && access.count > 1};
    names.push_back(tag_name(name_length, shape, static_cast<int>(names.size())));
  }
  return names;
}

class OnlinePoll : public Work {
 public:
  OnlinePoll(const Driver& driver, const std::vector<Access>& accesses, int name_length, int idle_devices)
      : driver_(driver),
        accesses_(accesses),
        names_(names_of(accesses, name_length)),
        device_(driver, names_, Device::Online),
        batch_(driver, device_, read_requests(accesses), true),
        buffers_(accesses.size(), std::vector<char>(kAccessBuffer)),
        records_(accesses.size()) {
    for (int i = 0; i < idle_devices; ++i) Device(driver, names_, Device::Online);
    for (std::size_t i = 0; i < names_.size(); ++i) {
      tags_.push_back({names_[i].c_str(), accesses[i].type.value,
                       accesses[i].type.words * static_cast<int>(sizeof(WORD)), buffers_[i].data()});
    }
  }

  void by_driver() override { batch_.call(); }
  void by_floor() override {
    least::poll(driver_.library, tags_.data(), static_cast<int>(tags_.size()), records_.data());
  }
  std::string fault() const override { return difference(accesses_, names_, batch_.records(), records_); }

 private:
  const Driver& driver_;
  std::vector<Access> accesses_;
  std::vector<std::string> names_;
  Device device_;
  Batch batch_;
  std::vector<std::vector<char>> buffers_;
  std::vector<INPUT_DATA> records_;
  std::vector<least::Tag> tags_;
};

class OnlineWrite : public Work {
 public:
  OnlineWrite(const Driver& driver, const Access& access, int name_length)
      : driver_(driver),
        words_(write_words(access)),
        names_(names_of({access}, name_length)),
        device_(driver, names_, Device::Online),
        batch_(driver, device_, {write_request(access, words_)}, false),
        buffer_(kAccessBuffer) {
    tag_ = {names_[0].c_str(), access.type.value, access.type.words * static_cast<int>(sizeof(WORD)),
            buffer_.data()};
    // Of a type without an element size in a write nothing is encoded.
    elements_ = access.type.code == DT_LTIME ? 0 : access.count;
    // A Boolean travels as two bytes, and so as two elements; the second is the library's to reject.
    if (access.type.code == DT_BOOL) {
      elements_ = 2;
      words_.assign(2, 1);
    }
  }

  void by_driver() override { batch_.call(); }
  void by_floor() override { least::write(driver_.library, tag_, words_.data(), elements_); }
  std::string fault() const override {
    return batch_.records()[0].byErrCode == 0 ? "" : names_[0] + ": the write was not served";
  }

 private:
  const Driver& driver_;
  std::vector<WORD> words_;
  std::vector<std::string> names_;
  Device device_;
  Batch batch_;
  std::vector<char> buffer_;
  least::Tag tag_{};
  int elements_ = 0;
};

}  // namespace

std::unique_ptr<Work> online_poll(const Driver& driver, const std::vector<Access>& accesses, int name_length,
                                  int idle_devices) {
  return std::make_unique<OnlinePoll>(driver, accesses, name_length, idle_devices);
}

std::unique_ptr<Work> online_write(const Driver& driver, const Access& access, int name_length) {
  return std::make_unique<OnlineWrite>(driver, access, name_length);
}

}  // namespace bench

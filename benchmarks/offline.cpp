// SPDX-License-Identifier: MIT
// Polls and writes of a simulated device: no library, only the driver's own memory.
#include "benchmarks/device.h"
#include "benchmarks/requests.h"
#include "benchmarks/tags.h"
#include "benchmarks/work.h"

namespace bench {

namespace {

std::vector<std::string> names_of(std::size_t count, int name_length) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) names.push_back(tag_name(name_length, {}, static_cast<int>(i)));
  return names;
}

// Each tag is written once, so that what is polled is no zero.
class OfflinePoll : public Work {
 public:
  OfflinePoll(const Driver& driver, const std::vector<Access>& accesses, int name_length)
      : accesses_(accesses),
        names_(names_of(accesses.size(), name_length)),
        device_(driver, names_, Device::Simulated),
        batch_(driver, device_, read_requests(accesses), true),
        records_(accesses.size()) {
    for (std::size_t i = 0; i < accesses.size(); ++i) {
      written_.push_back(write_words(accesses[i]));
      Batch(driver, device_, {write_request(accesses[i], written_[i], static_cast<int>(i))}, false).call();
      copies_.push_back({written_[i].data(), records_[i].wData, written_[i].size() * sizeof(WORD)});
    }
  }

  void by_driver() override { batch_.call(); }
  void by_floor() override { least::copy(copies_.data(), static_cast<int>(copies_.size())); }
  std::string fault() const override { return difference(accesses_, names_, batch_.records(), records_); }

 private:
  std::vector<Access> accesses_;
  std::vector<std::string> names_;
  Device device_;
  Batch batch_;
  std::vector<std::vector<WORD>> written_;
  std::vector<INPUT_DATA> records_;
  std::vector<least::Copy> copies_;
};

class OfflineWrite : public Work {
 public:
  OfflineWrite(const Driver& driver, const std::vector<std::string>& names, const RequestBuilder& request,
               std::size_t bytes)
      : device_(driver, names, Device::Simulated), batch_(driver, device_, {request}, false), store_(bytes) {
    copy_ = {batch_.requests()[0].stCommand.stWORDWrite.wData, store_.data(), bytes};
  }

  void by_driver() override { batch_.call(); }
  void by_floor() override { least::copy(&copy_, 1); }
  std::string fault() const override {
    return batch_.records()[0].byErrCode == 0 ? "" : "the write was not served";
  }

 private:
  Device device_;
  Batch batch_;
  std::vector<char> store_;
  least::Copy copy_{};
};

constexpr int kElementWords = 16;

// Elements 0 and 1 of each text follow each other.
std::vector<std::string> element_names(int rows) {
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(rows));
  for (int i = 0; i < rows; ++i) names.push_back(row_name(i / 2) + (i % 2 == 0 ? "[0]" : "[1]"));
  return names;
}

// Element 1 of the text whose element 0 has this row.
TagBlock element_block(int row) {
  return TagBlock(DT_STRING).row(static_cast<DWORD>(row)).index(1).count(kElementWords);
}

class OfflineElements : public Work {
 public:
  OfflineElements(const Driver& driver, int rows)
      : device_(driver, element_names(rows), Device::Simulated),
        batch_(driver, device_, requests(rows), true) {
    const std::vector<WORD> text(kElementWords, 'x');
    for (int i = 1; i <= kElements; ++i) {
      Batch(driver, device_, {RequestBuilder::WordWrite(element_block(rows - 2 * i), text)}, false).call();
    }
    copies_.assign(kElements, {text_, to_, sizeof text_});
  }

  void by_driver() override { batch_.call(); }
  void by_floor() override { least::copy(copies_.data(), kElements); }
  std::string fault() const override {
    for (const INPUT_DATA& record : batch_.records()) {
      if (record.wData[0] != 'x') return "a text's element does not hold what was written";
    }
    return {};
  }

 private:
  static constexpr int kElements = 31;

  static std::vector<RequestBuilder> requests(int rows) {
    std::vector<RequestBuilder> all;
    for (int i = 1; i <= kElements; ++i) {
      all.push_back(RequestBuilder::Read(element_block(rows - 2 * i), kElementWords));
    }
    return all;
  }

  Device device_;
  Batch batch_;
  WORD text_[kElementWords] = {};
  WORD to_[kElementWords] = {};
  std::vector<least::Copy> copies_;
};

}  // namespace

std::unique_ptr<Work> offline_poll(const Driver& driver, const std::vector<Access>& accesses,
                                   int name_length) {
  return std::make_unique<OfflinePoll>(driver, accesses, name_length);
}

std::unique_ptr<Work> offline_write(const Driver& driver, const Access& access, int name_length) {
  const std::vector<WORD> words = write_words(access);
  return std::make_unique<OfflineWrite>(driver, names_of(1, name_length), write_request(access, words),
                                        words.size() * sizeof(WORD));
}

std::unique_ptr<Work> offline_elements(const Driver& driver, int rows) {
  return std::make_unique<OfflineElements>(driver, rows);
}

std::unique_ptr<Work> offline_element_write(const Driver& driver, int rows) {
  const std::vector<WORD> text(kElementWords, 'x');
  return std::make_unique<OfflineWrite>(driver, element_names(rows),
                                        RequestBuilder::WordWrite(element_block(rows - 2), text),
                                        text.size() * sizeof(WORD));
}

}  // namespace bench

// SPDX-License-Identifier: MIT
// Every row of writes*.def in every event: the path that the library is asked for, the access buffer as it
// gets it, and what the runtime is told.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/tables/address.h"
#include "tests/tables/desk.h"
#include "tests/tables/plcworld.h"

namespace tables {
namespace {

std::vector<std::string> paths_asked(const FakeLibrary& library) {
  std::vector<std::string> list;
  for (const auto& call : library.calls()) {
    if (call.function == "AGL_Symbolic_CreateAccessByPath") list.push_back(call.arguments.at(1));
  }
  return list;
}

class TableWrite : public Desk, public testing::WithParamInterface<WriteCase> {
 protected:
  void Try() {
    const auto& [row, answer] = GetParam();
    SCOPED_TRACE(std::string(row.address) + " <- " + row.words + " as " + row.path);
    const bool exists = row.elements != std::string("nothing");
    const bool written = answer.written && exists;
    fill(library(), row.type, row.address, answer.event);
    begin(library(), answer.event);
    Device& on = device(answer.event);
    on.data().write_device_state = !written;
    Batch batch = on.batch({write_of(tag_block(row.type, row.address), row.words)});
    EXPECT_EQ(output(on, batch), answer.output);
    if (answer.reaches == Reaches::NoCall) {
      EXPECT_TRUE(library().log().empty());
      EXPECT_EQ(on.data().write_device_state, !written) << "there was no write";
    } else {
      expect_call(exists && answer.reaches != Reaches::NoJob, answer.reaches == Reaches::Values);
      EXPECT_EQ(on.data().write_device_state, written);
    }
    expect_record(on.input(1, false).at(0), answer.record, 0, {});
    end(library());
  }

 private:
  void expect_call(bool job, bool values) {
    const auto& row = GetParam().row;
    EXPECT_EQ(paths_asked(library()), std::vector<std::string>{"\"" + std::string(row.path) + "\""});
    const auto jobs = library().writes();
    ASSERT_EQ(jobs.size(), job ? 1U : 0U);
    if (!job) return;
    EXPECT_EQ(jobs[0].connection, kStation);
    ASSERT_EQ(jobs[0].accesses.size(), 1U);
    EXPECT_EQ(jobs[0].accesses[0].path, row.path);
    if (values && row.type == std::string("STRING")) {
      expect_text();
    } else if (values) {
      expect_buffer(jobs[0].accesses[0].bytes);
    }
  }
  // A text goes to the library as it is, with its length.
  void expect_text() {
    const std::string wanted = GetParam().row.elements;
    const auto stored = library().stored();
    ASSERT_EQ(stored.size(), 1U);
    EXPECT_EQ(stored[0].element, 0);
    const auto characters = numbers_of(wanted == "empty" ? "" : wanted);
    EXPECT_EQ(static_cast<std::size_t>(stored[0].char_count), characters.size());
    if (stored[0].function == "AGL_Symbolic_SetAccessBufferString8") {
      EXPECT_EQ(stored[0].text, std::string(characters.begin(), characters.end()));
    } else {
      EXPECT_EQ(stored[0].function, "AGL_Symbolic_SetAccessBufferString16");
      EXPECT_EQ(stored[0].wide, std::u16string(characters.begin(), characters.end()));
    }
  }
  void expect_buffer(const std::vector<unsigned char>& buffer) {
    const auto elements = numbers_of(GetParam().row.elements);
    ASSERT_EQ(buffer.size() % elements.size(), 0U);
    const std::size_t width = buffer.size() / elements.size();
    for (std::size_t i = 0; i < elements.size(); ++i) {
      std::uint64_t element = 0;
      std::memcpy(&element, &buffer[i * width], width);
      EXPECT_EQ(element, elements[i])
          << "element " << i << std::hex << ": " << element << " instead of " << elements[i];
    }
  }
};

}  // namespace

TEST_P(TableWrite, ReachesTheLibrary) {
  Try();
}
INSTANTIATE_TEST_SUITE_P(Writes, TableWrite, testing::ValuesIn(write_cases()),
                         [](const auto& one) { return one.param.name(); });

}  // namespace tables

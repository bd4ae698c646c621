// SPDX-License-Identifier: MIT
// Writes of every type and form: the path, the bytes, the first element and the element width as they reach
// the library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

using testing::ElementsAre;

enum Row : DWORD { kPlain, kMatrix, kRegister, kBracket, kMember };

ProjectFile project() {
  return ProjectFile().tag("Plain").tag("Matrix[1,2]").tag("Line[INDEX]").tag("Texts[0]").tag("Line[2].Text");
}

class Writes : public testing::Test {
 protected:
  void SetUp() override { device.connected(); }

  void write(const TagBlock& tag, const std::vector<WORD>& words) {
    frame = device.output({RequestBuilder::WordWrite(tag, words)});
  }
  // Each access to the library's buffers as "Int16 Plain#5=7", in order.
  std::vector<std::string> stored() const {
    std::vector<std::string> list;
    for (const auto& s : library.stored())
      list.push_back(s.path + "#" + std::to_string(s.element) + "=" +
                     std::to_string(static_cast<std::int64_t>(s.number)));
    return list;
  }
  std::string written_path() const {
    const auto jobs = library.writes();
    if (jobs.size() != 1 || jobs[0].accesses.size() != 1) return "(not one write)";
    return jobs[0].accesses[0].path;
  }
  std::vector<std::string> paths_asked() const {
    std::vector<std::string> list;
    for (const auto& call : library.calls())
      if (call.function == "AGL_Symbolic_CreateAccessByPath") list.push_back(call.arguments.at(1));
    return list;
  }

  FakeLibrary library;
  Device device{project()};
  FRAME_DATA frame{};
};

// One numeric type: the words of two elements and what each is in the PLC.
struct Numeric {
  const char* name;
  int code;
  std::function<Item(int)> item;  // an access of so many elements
  std::vector<WORD> first;
  std::vector<WORD> second;
  double first_value;
  double second_value;
  const char* function;
};

template <class T>
std::function<Item(int)> elements(Item (*make)(const std::vector<T>&)) {
  return [make](int count) { return make(std::vector<T>(static_cast<std::size_t>(count))); };
}

const Numeric kNumeric[] = {
    {"Byte", DT_BYTE, elements<std::uint8_t>(&Item::UInt8), {0x11FB}, {0x22F0}, 0xFB, 0xF0, "UInt8"},
    {"Usint", DT_USINT, elements<std::uint8_t>(&Item::UInt8), {0x00FB}, {0x0001}, 0xFB, 1, "UInt8"},
    {"Sint", DT_SINT, elements<std::int8_t>(&Item::Int8), {0xFFFB}, {0x007F}, -5, 127, "Int8"},
    {"Word", DT_WORD, elements<std::uint16_t>(&Item::UInt16), {0x8001}, {0x1234}, 0x8001, 0x1234, "UInt16"},
    {"Uint", DT_UINT, elements<std::uint16_t>(&Item::UInt16), {0xFFFF}, {1}, 65535, 1, "UInt16"},
    {"Int", DT_INT, elements<std::int16_t>(&Item::Int16), {0xFFFE}, {300}, -2, 300, "Int16"},
    {"Dword",
     DT_DWORD,
     elements<std::uint32_t>(&Item::UInt32),
     {0x5678, 0x1234},
     {1, 0x8000},
     0x12345678,
     2147483649.0,
     "UInt32"},
    {"Udint",
     DT_UDINT,
     elements<std::uint32_t>(&Item::UInt32),
     {0xFFFF, 0xFFFF},
     {2, 0},
     4294967295.0,
     2,
     "UInt32"},
    {"Dint", DT_DINT, elements<std::int32_t>(&Item::Int32), {0xFFFD, 0xFFFF}, {0, 1}, -3, 65536, "Int32"},
    {"Real",
     DT_REAL,
     elements<float>(&Item::Float32),
     {0x0000, 0x3FC0},
     {0x0000, 0xC000},
     1.5,
     -2,
     "Float32"},
    {"Lword",
     DT_LWORD,
     elements<std::uint64_t>(&Item::UInt64),
     {1, 0, 1, 0},
     {5, 0, 0, 0},
     4294967297.0,
     5,
     "UInt64"},
    {"Lint",
     DT_LINT,
     elements<std::int64_t>(&Item::Int64),
     {0xFFFC, 0xFFFF, 0xFFFF, 0xFFFF},
     {0, 0, 2, 0},
     -4,
     8589934592.0,
     "Int64"},
    {"Ulint",
     DT_ULINT,
     elements<std::uint64_t>(&Item::UInt64),
     {7, 0, 0, 0},
     {0, 0, 0, 0x0010},
     7,
     4503599627370496.0,
     "UInt64"},
    {"Lreal",
     DT_LREAL,
     elements<double>(&Item::Float64),
     {0, 0, 0, 0x3FD0},
     {0, 0, 0, 0xC008},
     0.25,
     -3,
     "Float64"},
};

class NumericWrite : public Writes, public testing::WithParamInterface<Numeric> {
 protected:
  static double value_of(const FakeLibrary::Stored& stored) {
    if (stored.function.find("Float") != std::string::npos) return stored.real;
    if (stored.function.find("UInt") != std::string::npos) return static_cast<double>(stored.number);
    return static_cast<double>(static_cast<std::int64_t>(stored.number));
  }
  std::vector<WORD> both() const {
    auto words = GetParam().first;
    words.insert(words.end(), GetParam().second.begin(), GetParam().second.end());
    return words;
  }
  void expect_stored(const std::string& path, const std::vector<std::pair<int, double>>& expected) const {
    const auto list = library.stored();
    ASSERT_EQ(list.size(), expected.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
      EXPECT_EQ(list[i].function, std::string("AGL_Symbolic_SetAccessBuffer") + GetParam().function) << i;
      EXPECT_EQ(list[i].path, path) << i;
      EXPECT_EQ(list[i].element, expected[i].first) << i;
      EXPECT_EQ(value_of(list[i]), expected[i].second) << i;
    }
    EXPECT_EQ(written_path(), path);
  }
};

}  // namespace

TEST_P(NumericWrite, OneElementWithAnIndexIsWrittenByItsOwnPath) {
  library.add("Plain[5]", GetParam().item(1));
  write(TagBlock(GetParam().code).index(5), GetParam().first);
  expect_stored("Plain[5]", {{0, GetParam().first_value}});
}

TEST_P(NumericWrite, SeveralElementsAreWrittenToTheArrayFromTheIndexOn) {
  library.add("Plain", GetParam().item(10));
  write(TagBlock(GetParam().code).index(5).count(2), both());
  expect_stored("Plain", {{5, GetParam().first_value}, {6, GetParam().second_value}});
}

TEST_P(NumericWrite, IndexZeroIsAnIndexLikeAnyOther) {
  library.add("Plain[0]", GetParam().item(1));
  write(TagBlock(GetParam().code).index(0), GetParam().first);
  expect_stored("Plain[0]", {{0, GetParam().first_value}});
}

TEST_P(NumericWrite, IndexFFFFWritesThePlainName) {
  library.add("Plain", GetParam().item(1));
  write(TagBlock(GetParam().code).index(0xFFFF), GetParam().first);
  expect_stored("Plain", {{0, GetParam().first_value}});
}

TEST_P(NumericWrite, IndexFFFFWithSeveralElementsBeginsAtTheFirst) {
  library.add("Plain", GetParam().item(2));
  write(TagBlock(GetParam().code).index(0xFFFF).count(2), both());
  expect_stored("Plain", {{0, GetParam().first_value}, {1, GetParam().second_value}});
}

TEST_P(NumericWrite, MultiDimensionalNameIsWrittenAsItStands) {
  library.add("Matrix[1,2]", GetParam().item(1));
  write(TagBlock(GetParam().code).row(kMatrix).index(5), GetParam().first);
  expect_stored("Matrix[1,2]", {{0, GetParam().first_value}});
}

TEST_P(NumericWrite, IndexRegisterGivesThePathAndNoIndex) {
  library.add("Line[3]", GetParam().item(2));
  write(TagBlock(GetParam().code).row(kRegister).index(3).count(2), both());
  expect_stored("Line[3]", {{0, GetParam().first_value}, {1, GetParam().second_value}});
}

TEST_P(NumericWrite, IndexRegisterWithOneElementTakesNoSecondIndex) {
  library.add("Line[3]", GetParam().item(1));
  write(TagBlock(GetParam().code).row(kRegister).index(3), GetParam().first);
  expect_stored("Line[3]", {{0, GetParam().first_value}});
}

INSTANTIATE_TEST_SUITE_P(EveryType, NumericWrite, testing::ValuesIn(kNumeric),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Writes, GoToTheDevicesConnectionAsOneJobWithTimeoutOne) {
  library.add("Plain", Item::Int16(0));
  auto batch = device.batch({RequestBuilder::WordWrite(TagBlock(DT_INT), {7}),
                             RequestBuilder::WordWrite(TagBlock(DT_INT), {8}),
                             RequestBuilder::WordWrite(TagBlock(DT_INT), {9})});
  const auto second = batch[1];
  EXPECT_EQ(status_of(device.output(batch)), "0/8/0");
  ASSERT_EQ(library.writes().size(), 1U) << "only the first request of a batch is written";
  EXPECT_EQ(library.writes()[0].connection, kStation);
  EXPECT_EQ(library.writes()[0].timeout, 1);
  EXPECT_THAT(stored(), ElementsAre("Plain#0=7"));
  EXPECT_EQ(batch[0].byWaitResponse, 0);
  EXPECT_EQ(batch[0].nResponseLength, 0);
  EXPECT_EQ(std::memcmp(&second, &batch[1], sizeof second), 0);
}

TEST_F(Writes, AcceptedWriteIsKeptInTheDevice) {
  library.add("Plain", Item::Int16(0));
  write(TagBlock(DT_INT), {7});
  EXPECT_TRUE(device.data().write_device_state);
  EXPECT_TRUE(device.data().device_connect_state);
}

TEST_F(Writes, FailedWriteIsKeptInTheDeviceAndReportedNowhere) {
  library.add("Plain", Item::Int16(0));
  library.fail("AGL_Symbolic_WriteMixEx", -9);
  device.data().write_device_state = true;
  write(TagBlock(DT_INT), {7});
  EXPECT_EQ(status_of(frame), "0/8/0");
  EXPECT_FALSE(device.data().write_device_state);
  EXPECT_FALSE(device.data().device_connect_state) << "a refused write connects nothing";
  const auto records = device.input(1, false);
  EXPECT_EQ(status_of(records[0]), "0/5");
}

TEST_F(Writes, FailedWriteDoesNotDisconnect) {
  library.add("Plain", Item::Int16(0));
  library.fail("AGL_Symbolic_WriteMixEx", -9);
  device.data().device_connect_state = true;
  write(TagBlock(DT_INT), {7});
  EXPECT_TRUE(device.data().device_connect_state);
}

TEST_F(Writes, RejectedAccessInAnAcceptedJobCountsAsWritten) {
  library.add("Plain", Item::Int16(0).result(-3));
  write(TagBlock(DT_INT), {7});
  EXPECT_TRUE(device.data().write_device_state);
}

TEST_F(Writes, UnknownPathWritesNothing) {
  write(TagBlock(DT_INT).row(9), {7});
  EXPECT_FALSE(device.data().write_device_state);
  EXPECT_TRUE(library.writes().empty());
  EXPECT_EQ(status_of(frame), "0/8/0");
}

TEST_F(Writes, AreTriedInEveryLoaderStateButError) {
  for (auto state : {SymbolsLoader::Idle, SymbolsLoader::Loading, SymbolsLoader::Disconnect}) {
    library.clearLog();
    library.add("Plain", Item::Int16(0));
    device.loader().loader_state = state;
    write(TagBlock(DT_INT), {7});
    EXPECT_EQ(library.writes().size(), 1U) << static_cast<int>(state);
  }
}

TEST_F(Writes, PrepareTheFirstCommandForTheAnswer) {
  library.add("Line[3]", Item::Int16(0));
  auto& command = device.data().GCmdDesc[0];
  command.WordCount = 55;
  command.use_index_register = true;
  write(TagBlock(DT_INT).row(kRegister).index(3).count(6), {7});
  EXPECT_EQ(command.tag_name, "Line[3]");
  EXPECT_EQ(command.DataType, DT_INT);
  EXPECT_EQ(command.ArrayIndex, 3);
  EXPECT_EQ(command.ElementCounts, 6);
  EXPECT_EQ(command.BitIndex, -1);
  EXPECT_EQ(command.nCmdIndex, 0U);
  EXPECT_EQ(command.ResponseLength, 4);
  EXPECT_EQ(command.WordCount, 55U);
  EXPECT_FALSE(command.use_index_register);
}

TEST_F(Writes, AlternateTypeDecidesHowTheWordsAreTaken) {
  library.add("Plain", Item::Int32(std::vector<std::int32_t>(8)));
  write(TagBlock(DT_INT).alternate(DT_DINT).index(5).count(2), {1, 0, 2, 0});
  EXPECT_THAT(stored(), ElementsAre("Plain#5=1", "Plain#6=2"));
}

TEST_F(Writes, OneIntAtIndexFiveIsWrittenByItsPathAndTwoWordsByTheArray) {
  library.add("Plain", Item::Int16(std::vector<std::int16_t>(10)).array(0, 9));
  write(TagBlock(DT_INT).index(5), {7});
  EXPECT_THAT(paths_asked(), ElementsAre("\"Plain[5]\""));
  EXPECT_THAT(stored(), ElementsAre("Plain[5]#0=7"));
  library.clearLog();
  write(TagBlock(DT_INT).index(5), {7, 8});
  EXPECT_THAT(paths_asked(), ElementsAre("\"Plain\""));
  EXPECT_THAT(stored(), ElementsAre("Plain#5=7", "Plain#6=8"));
}

TEST_F(Writes, WordsDecideAndNotTheElementCount) {
  library.add("Plain[5]", Item::Int16(0));
  write(TagBlock(DT_INT).index(5).count(9), {7});
  EXPECT_THAT(stored(), ElementsAre("Plain[5]#0=7"));
}

TEST_F(Writes, DivisionOfTheLengthByTheElementSizeIsAWholeOne) {
  // Three words hold one DINT and a half: one element.
  library.add("Plain[5]", Item::Int32(0));
  write(TagBlock(DT_DINT).index(5), {1, 2, 3});
  EXPECT_THAT(stored(), ElementsAre("Plain[5]#0=131073"));
}

TEST_F(Writes, HalfAnElementIsNoElement) {
  library.add("Plain", Item::Int32(std::vector<std::int32_t>(8)));
  write(TagBlock(DT_DINT).index(5), {1});
  EXPECT_THAT(stored(), ElementsAre());
  EXPECT_EQ(written_path(), "Plain");
}

TEST_F(Writes, WriteWithoutWordsSendsTheZeroedBuffer) {
  library.add("Plain", Item::Int16(5));
  write(TagBlock(DT_INT).index(5), {});
  EXPECT_THAT(stored(), ElementsAre());
  ASSERT_EQ(written_path(), "Plain");
  const auto jobs = library.writes();
  EXPECT_THAT(jobs[0].accesses[0].bytes, ElementsAre(0, 0)) << "access buffers start zeroed";
}

TEST_F(Writes, SeveralElementsOfAnArraySendZerosForTheRest) {
  library.add("Plain", Item::Int16({11, 12, 13, 14, 15}));
  write(TagBlock(DT_INT).index(1).count(2), {7, 8});
  ASSERT_EQ(written_path(), "Plain");
  const auto before_the_first_value = library.stored().at(0).bytes;
  EXPECT_THAT(before_the_first_value, testing::AllOf(testing::SizeIs(10), testing::Each(0)));
  const auto jobs = library.writes();
  const auto& sent = jobs[0].accesses[0].bytes;
  EXPECT_THAT(std::vector<int>(sent.begin() + 6, sent.end()), ElementsAre(0, 0, 0, 0));
}

TEST_F(Writes, BracketNameOfANumberGetsASecondGroup) {
  // Only strings have their last group replaced.
  write(TagBlock(DT_INT).row(kBracket).index(3), {7});
  EXPECT_THAT(paths_asked(), ElementsAre("\"Texts[0][3]\""));
}

TEST_F(Writes, LtimeHasNoElementSizeAndIsNeverAnIndexedElement) {
  // On purpose: the array is named whole, and no element of it is filled.
  library.add("Plain", Item::Int64(std::vector<std::int64_t>(8)));
  write(TagBlock(DT_LTIME).index(5), {1, 2, 3, 4});
  EXPECT_EQ(written_path(), "Plain");
  EXPECT_THAT(stored(), ElementsAre());
}

TEST_F(Writes, BoolWordWriteHasNoElementSizeEither) {
  library.add("Plain", Item::Bool(std::vector<bool>(8)));
  write(TagBlock(DT_BOOL).index(5), {1});
  EXPECT_EQ(written_path(), "Plain");
  EXPECT_THAT(stored(), ElementsAre());
}

TEST_F(Writes, UnknownTypeHasNoElementSizeEither) {
  library.add("Plain", Item::Int16(std::vector<std::int16_t>(8)));
  write(TagBlock(99).index(5), {1});
  EXPECT_EQ(written_path(), "Plain");
  EXPECT_THAT(stored(), ElementsAre());
}

TEST_F(Writes, WriteStringDataIsLeftAloneByOtherTypes) {
  write_string_data = {1, 2, 3};
  library.add("Plain", Item::Int16(0));
  write(TagBlock(DT_INT), {7});
  EXPECT_THAT(write_string_data, ElementsAre(1, 2, 3));
}

TEST_F(Writes, WordCountBeyondTheRecordStopsAtItsWords) {
  library.add("Plain", Item::Int16(std::vector<std::int16_t>(3000)));
  auto request =
      RequestBuilder::WordWrite(TagBlock(DT_INT).count(65535), std::vector<WORD>(2048, 7)).announce(65535);
  device.output({request});
  const auto list = library.stored();
  ASSERT_EQ(list.size(), 2048U);
  EXPECT_EQ(list.back().element, 2047);
  EXPECT_EQ(list.back().number, 7U);
}

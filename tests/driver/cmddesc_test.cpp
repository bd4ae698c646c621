// SPDX-License-Identifier: MIT
// How a request fills a command, and the substitution of the index placeholder in a tag name.
#include "driver/cmddesc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "symbolic/arrayhelper.h"
#include "tests/driver/projectfile.h"
#include "tests/driver/requestbuilder.h"

namespace {

class CommandSetup : public testing::Test {
 protected:
  void SetUp() override {
    const auto project =
        ProjectFile().tag("Motor.Speed", 100).tag("Motor[INDEX].Speed", 200).tag("Bad INDEX]", 3);
    table.Read(project.write(folder).c_str(), 0);
  }
  stCmdDesc& setup_read(TagBlock block, UINT index = 0) {
    SetupReadCmdDesc(block.data(), command.get(), index, &table);
    return *command;
  }
  stCmdDesc& setup_write(TagBlock block, UINT index = 0) {
    SetupWriteCmdDesc(block.data(), command.get(), index, &table, nullptr, 0);
    return *command;
  }

  TemporaryFolder folder;
  CTagTable table;
  std::unique_ptr<stCmdDesc> command = std::make_unique<stCmdDesc>();
};

struct TypeSize {
  int code;
  int bytes;
  unsigned words;
};

constexpr TypeSize kSizes[] = {
    {2, 1, 1},   {12, 1, 1}, {193, 1, 1}, {194, 1, 1}, {211, 1, 1}, {212, 1, 1},
    {3, 2, 1},   {11, 2, 1}, {195, 2, 1}, {4, 4, 2},   {6, 4, 2},   {196, 4, 2},
    {202, 4, 2}, {7, 8, 4},  {8, 8, 4},   {9, 8, 4},   {10, 8, 4},
};

class ReadLengths : public CommandSetup, public testing::WithParamInterface<TypeSize> {};

std::string substituted(const std::string& name, int index) {
  stTag tag{};
  tag.ArrayIndex = static_cast<WORD>(index);
  std::vector<char> buffer(name.size() + 16, '?');
  return use_index_register(name.c_str(), buffer.data(), &tag) ? std::string(buffer.data()) : "(untouched)";
}

}  // namespace

TEST_P(ReadLengths, FollowFromTheTypeAndTheCount) {
  for (int count : {0, 1, 2, 7, 100}) {
    auto& d = setup_read(TagBlock(GetParam().code).count(count));
    EXPECT_EQ(d.WordCount, GetParam().words * static_cast<unsigned>(count)) << count;
    EXPECT_EQ(d.ResponseLength, 6 + count * GetParam().bytes) << count;
  }
}

TEST_P(ReadLengths, BitAccessReadsOneElementWhateverTheCount) {
  for (int count : {0, 1, 8, 40000}) {
    auto& d = setup_read(TagBlock(GetParam().code).bit(0).count(count));
    EXPECT_EQ(d.ResponseLength, 6 + GetParam().bytes) << count;
    EXPECT_EQ(d.WordCount, GetParam().words * static_cast<unsigned>(count)) << count;
  }
}

TEST_P(ReadLengths, ResponseLengthIsCountedModulo65536) {
  for (int count : {40000, 65535}) {
    auto& d = setup_read(TagBlock(GetParam().code).count(count));
    EXPECT_EQ(d.ResponseLength, (6 + count * GetParam().bytes) % 65536) << count;
    EXPECT_EQ(d.WordCount, GetParam().words * static_cast<unsigned>(count)) << count;
  }
}

INSTANTIATE_TEST_SUITE_P(EveryType, ReadLengths, testing::ValuesIn(kSizes),
                         [](const auto& row) { return "Code" + std::to_string(row.param.code); });

TEST_F(CommandSetup, ReadOf40000WordsHasResponseLength14470) {
  EXPECT_EQ(setup_read(TagBlock(DT_WORD).count(40000)).ResponseLength, 14470);
}

TEST_F(CommandSetup, BitReadOfALrealHasResponseLength14) {
  EXPECT_EQ(setup_read(TagBlock(DT_LREAL).bit(7).count(1)).ResponseLength, 14);
  EXPECT_EQ(setup_read(TagBlock(DT_LREAL).bit(7).count(500)).ResponseLength, 14);
}

TEST(Command, IsCreatedEmptyWhateverTheMemoryHeld) {
  alignas(stCmdDesc) static BYTE memory[sizeof(stCmdDesc)];
  std::memset(memory, 0xEE, sizeof memory);
  const auto* command = new (memory) stCmdDesc;
  const auto zero = [](const auto& bytes) {
    return std::all_of(std::begin(bytes), std::end(bytes), [](BYTE byte) { return byte == 0; });
  };
  EXPECT_TRUE(zero(command->ServiceData));
  EXPECT_TRUE(zero(command->DataBuffer));
  EXPECT_EQ(command->tag_name, "");
  for (const unsigned number :
       {unsigned{command->ServiceDataLength}, unsigned{command->ResponseLength}, unsigned{command->DataType},
        static_cast<unsigned>(command->BitIndex), unsigned{command->ElementCounts},
        unsigned{command->ArrayIndex}, command->nCmdIndex, unsigned{command->Cmd_Status}, command->WordCount,
        unsigned{command->is_wstring}, unsigned{command->use_index_register},
        static_cast<unsigned>(command->bPack), static_cast<unsigned>(command->DataBytes),
        static_cast<unsigned>(command->Place)}) {
    EXPECT_EQ(number, 0U);
  }
  EXPECT_EQ(command->pNext, nullptr);
  EXPECT_EQ(command->pPrev, nullptr);
  EXPECT_EQ(command->pGData, nullptr);
  command->~stCmdDesc();
}

TEST_F(CommandSetup, UnknownTypeAddsSixToTheOldResponseLength) {
  // Kept on purpose: nothing says how long such an element is.
  for (int code : {13, 0, 1, 5, 14, 255}) {
    command->ResponseLength = 100;
    command->WordCount = 4711;
    setup_read(TagBlock(code).count(9));
    EXPECT_EQ(command->ResponseLength, 106) << code;
    EXPECT_EQ(command->WordCount, 4711U) << code;
    setup_read(TagBlock(code).bit(2));
    EXPECT_EQ(command->ResponseLength, 112) << code;
    EXPECT_EQ(command->WordCount, 4711U) << code;
  }
}

TEST_F(CommandSetup, ReadTakesEverythingFromTheRequest) {
  command->ServiceDataLength = 99;
  command->bPack = TRUE;
  command->use_index_register = true;
  auto& d = setup_read(TagBlock(DT_DINT).index(4).count(3).bit(9), 17);
  EXPECT_EQ(d.tag_name, "Motor.Speed");
  EXPECT_EQ(d.DataType, DT_DINT);
  EXPECT_EQ(d.BitIndex, 9);
  EXPECT_EQ(d.ElementCounts, 3);
  EXPECT_EQ(d.ArrayIndex, 4);
  EXPECT_EQ(d.nCmdIndex, 17U);
  EXPECT_EQ(d.ServiceDataLength, 0);
  EXPECT_EQ(d.bPack, FALSE);
  EXPECT_FALSE(d.use_index_register);
}

TEST_F(CommandSetup, ReadLeavesTheWideMarkAlone) {
  command->is_wstring = true;
  EXPECT_TRUE(setup_read(TagBlock(DT_STRING)).is_wstring);
}

TEST_F(CommandSetup, ReadSubstitutesTheIndexAndMarksIt) {
  auto& d = setup_read(TagBlock(DT_INT).row(1).index(3));
  EXPECT_EQ(d.tag_name, "Motor[3].Speed");
  EXPECT_TRUE(d.use_index_register);
  EXPECT_EQ(d.ArrayIndex, 3);
}

TEST_F(CommandSetup, WriteSubstitutesTheIndexWithoutMarkingIt) {
  // The asymmetry with the read is deliberate.
  command->use_index_register = true;
  auto& d = setup_write(TagBlock(DT_INT).row(1).index(3));
  EXPECT_EQ(d.tag_name, "Motor[3].Speed");
  EXPECT_FALSE(d.use_index_register);
}

TEST_F(CommandSetup, WriteHasResponseLengthFourAndKeepsTheWordCount) {
  command->WordCount = 77;
  command->ServiceDataLength = 5;
  command->bPack = TRUE;
  auto& d = setup_write(TagBlock(DT_LREAL).index(2).count(6).bit(1), 4);
  EXPECT_EQ(d.ResponseLength, 4);
  EXPECT_EQ(d.WordCount, 77U);
  EXPECT_EQ(d.ServiceDataLength, 0);
  EXPECT_EQ(d.bPack, FALSE);
  EXPECT_EQ(d.tag_name, "Motor.Speed");
  EXPECT_EQ(d.DataType, DT_LREAL);
  EXPECT_EQ(d.BitIndex, 1);
  EXPECT_EQ(d.ElementCounts, 6);
  EXPECT_EQ(d.ArrayIndex, 2);
  EXPECT_EQ(d.nCmdIndex, 4U);
}

TEST_F(CommandSetup, AlternateTypeCountsAndStaysInTheRequest) {
  TagBlock block(DT_INT);
  block.alternate(DT_LREAL);
  SetupReadCmdDesc(block.data(), command.get(), 0, &table);
  EXPECT_EQ(command->DataType, DT_LREAL);
  EXPECT_EQ(command->WordCount, 4U);
  EXPECT_EQ(block.bytes()[4], DT_LREAL);
}

TEST_F(CommandSetup, RowOutsideTheTableGivesAnEmptyName) {
  command->tag_name = "old";
  EXPECT_EQ(setup_read(TagBlock(DT_INT).row(0xFFFFFFFF)).tag_name, "");
  EXPECT_EQ(setup_write(TagBlock(DT_INT).row(3)).tag_name, "");
}

TEST_F(CommandSetup, NameWithoutAnOpeningBracketRaisesOutOfRange) {
  EXPECT_THROW(setup_read(TagBlock(DT_INT).row(2)), std::out_of_range);
  EXPECT_THROW(setup_write(TagBlock(DT_INT).row(2)), std::out_of_range);
}

TEST_F(CommandSetup, LongestNameWithPlaceholderIsSubstituted) {
  const std::string front(65535 - 7, 'x');
  CTagTable long_names;
  long_names.Read(ProjectFile().tag(front + "[INDEX]").write(folder).c_str(), 0);
  TagBlock block(DT_INT);
  SetupReadCmdDesc(block.index(65535).data(), command.get(), 0, &long_names);
  EXPECT_EQ(command->tag_name, front + "[65535]");
}

TEST(IndexRegister, ReplacesThePlaceholderByTheIndex) {
  EXPECT_EQ(substituted("Motor[INDEX].Speed", 3), "Motor[3].Speed");
  EXPECT_EQ(substituted("Motor[INDEX]", 0), "Motor[0]");
  EXPECT_EQ(substituted("[INDEX]", 65535), "[65535]");
}

TEST(IndexRegister, DropsWhateverStandsInTheBrackets) {
  EXPECT_EQ(substituted("Motor[12 INDEX].Speed", 3), "Motor[3].Speed");
  EXPECT_EQ(substituted("Motor[SUBINDEX]", 5), "Motor[5]");
}

TEST(IndexRegister, TakesTheLastBracketInFrontOfThePlaceholder) {
  EXPECT_EQ(substituted("Line[2].Motor[INDEX].A[7]", 4), "Line[2].Motor[4].A[7]");
}

TEST(IndexRegister, KeepsASecondPlaceholder) {
  EXPECT_EQ(substituted("A[INDEX].B[INDEX]", 9), "A[9].B[INDEX]");
}

TEST(IndexRegister, NameWithoutAPlaceholderLeavesTheBufferAlone) {
  EXPECT_EQ(substituted("Motor[3].Speed", 4), "(untouched)");
  EXPECT_EQ(substituted("Motor[index]", 4), "(untouched)");
  EXPECT_EQ(substituted("INDEX", 4), "(untouched)");
  EXPECT_EQ(substituted("", 4), "(untouched)");
  stTag tag{};
  char buffer[4] = {'a', 'b', 'c', 'd'};
  EXPECT_FALSE(use_index_register("Motor", buffer, &tag));
  EXPECT_EQ(std::string(buffer, 4), "abcd");
}

TEST(IndexRegister, PlaceholderWithoutABracketInFrontRaisesOutOfRange) {
  stTag tag{};
  char buffer[64];
  try {
    use_index_register("Motor INDEX]", buffer, &tag);
    FAIL() << "nothing raised";
  } catch (const std::out_of_range& error) {
    EXPECT_NE(std::string(error.what()).find("basic_string::substr"), std::string::npos) << error.what();
  }
  EXPECT_THROW(use_index_register("INDEX][", buffer, &tag), std::out_of_range);
}

TEST(AlternateType, ReplacesTheTypeWhenItIsAnother) {
  TagBlock block(3);
  ChangeBinaryAccessDataTypeForCmtType(block.alternate(4).data());
  EXPECT_EQ(block.bytes()[4], 4);
  EXPECT_EQ(block.bytes()[6], 4);
}

TEST(AlternateType, ZeroOrTheSameTypeChangesNothing) {
  for (int alternate : {0, 3}) {
    TagBlock block(3);
    block.alternate(alternate);
    const auto before = block.bytes();
    ChangeBinaryAccessDataTypeForCmtType(block.data());
    EXPECT_EQ(block.bytes(), before);
  }
}

TEST(WideString, IsAStringOf510Bytes) {
  EXPECT_TRUE(is_wstring_type(212, 510));
  for (int size : {0, 1, 254, 255, 256, 509, 511, 512, 65535})
    EXPECT_FALSE(is_wstring_type(212, static_cast<unsigned short>(size))) << size;
  for (int type = 0; type < 256; ++type) {
    if (type == 212) continue;
    EXPECT_FALSE(is_wstring_type(static_cast<unsigned char>(type), 510)) << type;
  }
}

TEST(MultiDimension, IsABracketGroupWithACommaAtTheEnd) {
  EXPECT_TRUE(IsMultiDimensionArray("A[1,2]"));
  EXPECT_TRUE(IsMultiDimensionArray("A.B[0][1,2,3]"));
  EXPECT_TRUE(IsMultiDimensionArray("A[,]"));
  EXPECT_FALSE(IsMultiDimensionArray("A[1]"));
  EXPECT_FALSE(IsMultiDimensionArray("A[1][2]"));
  EXPECT_FALSE(IsMultiDimensionArray("A[1,2].B"));
  EXPECT_FALSE(IsMultiDimensionArray("A[1,2][3]"));
  EXPECT_FALSE(IsMultiDimensionArray("A[1,2] "));
  EXPECT_FALSE(IsMultiDimensionArray("A"));
  EXPECT_FALSE(IsMultiDimensionArray("]"));
  EXPECT_FALSE(IsMultiDimensionArray(","));
  EXPECT_FALSE(IsMultiDimensionArray(""));
}

TEST(MultiDimension, IsDecidedByAScanFromTheEnd) {
  // A comma met before any opening bracket decides, whether a bracket follows or not.
  EXPECT_TRUE(IsMultiDimensionArray("1,2]"));
  EXPECT_TRUE(IsMultiDimensionArray(",]"));
  EXPECT_FALSE(IsMultiDimensionArray("12]"));
}

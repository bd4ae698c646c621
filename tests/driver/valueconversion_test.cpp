// SPDX-License-Identifier: MIT
// Value bytes into a command's buffer, where no reply could make them so.
#include "driver/valueconversion.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

class ValueConversion : public testing::Test {
 protected:
  std::unique_ptr<stCmdDesc> command = std::make_unique<stCmdDesc>();
};

// The low 16 bits of the length are those of a wide string.
TEST_F(ValueConversion, TextOf66046BytesIsNoWideString) {
  command->DataType = DT_STRING;
  const std::vector<unsigned char> text(65536 + 510, 'x');
  fill_data_buffer(*command, text, 0, 0);
  EXPECT_FALSE(command->is_wstring);
  EXPECT_EQ(command->DataBuffer[0], 'x');
  EXPECT_EQ(command->DataBuffer[1], 0) << "a byte a word";
  EXPECT_EQ(command->DataBytes, kDataBufferSize);
}

TEST_F(ValueConversion, TextOf510BytesIsAWideStringOfBytesAsTheyAre) {
  command->DataType = DT_STRING;
  const std::vector<unsigned char> text(510, 'x');
  fill_data_buffer(*command, text, 0, 0);
  EXPECT_TRUE(command->is_wstring);
  EXPECT_EQ(command->DataBuffer[1], 'x');
  EXPECT_EQ(command->DataBytes, 510U);
}

TEST_F(ValueConversion, OfACodeWithoutATypeLeavesTheBufferZero) {
  command->DataType = 99;
  command->WordCount = 2;
  command->DataBuffer[0] = 5;
  command->DataBytes = 1;
  fill_data_buffer(*command, std::vector<unsigned char>{1, 2, 3, 4}, 0, 0);
  EXPECT_EQ(command->DataBuffer[0], 0);
  EXPECT_EQ(command->DataBytes, 0U);
}

}  // namespace

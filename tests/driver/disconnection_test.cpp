// SPDX-License-Identifier: MIT
// A batched read that returns nothing. The symbol cache file goes then, so this program runs with a
// /mnt/project of its own.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/driver/device.h"
#include "tests/fake/fakelibrary.h"

namespace {

class Disconnection : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(std::filesystem::is_empty("/mnt/project")) << "run it through scripts/private-project";
    device.connected();
    device.read_words(3);
    for (const auto* name : {kOwnFile, kOtherFile}) std::ofstream(name) << "symbols";
  }
  void TearDown() override {
    for (const auto* name : {kOwnFile, kOtherFile}) std::filesystem::remove(name);
  }
  static RequestBuilder request(DWORD row = 0) { return RequestBuilder::Read(TagBlock(DT_INT).row(row)); }
  std::vector<INPUT_DATA> lose(std::vector<RequestBuilder> requests) {
    library.fail("AGL_Symbolic_ReadMixEx", 0x1A2B);
    return device.read(std::move(requests));
  }
  GData& data() { return device.data(); }

  static constexpr const char* kOwnFile = "/mnt/project/7_s71500_symbolic.ap";
  static constexpr const char* kOtherFile = "/mnt/project/8_s71500_symbolic.ap";
  FakeLibrary library;
  Device device{ProjectFile().tag("Motor").tag("Valve")};
};

}  // namespace

TEST_F(Disconnection, EveryRecordGetsTwoAndTheLoaderFails) {
  library.add("Motor", Item::Int16(5));
  data().read_device_state = true;
  data().write_device_state = true;
  data().device_connect_state = true;
  data().LOADER_PROJECT = 99;
  const auto records = lose({request(), request(1), request()});
  EXPECT_EQ(status_of(records[0]), "2/5");
  EXPECT_EQ(records[0].nLength, 0) << "as preset";
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(records[i].byErrCode, 2) << i;
    EXPECT_EQ(records[i].wData[0], kUntouchedWord) << i;
  }
  EXPECT_EQ(field<BYTE>(records[1], 1), kUntouchedByte) << "the other records' status is left alone";
  EXPECT_EQ(device.loader().loader_state, SymbolsLoader::Error);
  EXPECT_TRUE(device.loader().bDisconnect);
  EXPECT_EQ(data().pGCmdQueue, nullptr);
  EXPECT_EQ(data().GCmdCounts, 0U);
  EXPECT_EQ(data().GTotalStep, 0U);
  EXPECT_EQ(data().GCurrentStep, 0U);
  EXPECT_EQ(data().LOADER_PROJECT, 0U);
  EXPECT_FALSE(data().read_device_state);
  EXPECT_FALSE(data().write_device_state);
  EXPECT_FALSE(data().device_connect_state);
  EXPECT_EQ(library.liveAccesses(), 0);
}

TEST_F(Disconnection, DeletesTheSymbolFileOfItsOwnStationAlone) {
  lose({request()});
  EXPECT_FALSE(std::filesystem::exists(kOwnFile));
  EXPECT_TRUE(std::filesystem::exists(kOtherFile));
}

TEST_F(Disconnection, MissingSymbolFileIsNoError) {
  std::filesystem::remove(kOwnFile);
  EXPECT_EQ(lose({request()})[0].byErrCode, 2);
}

TEST_F(Disconnection, PrintsBothDiagnosticLinesLast) {
  library.add("Motor", Item::Int16(5));
  library.add("Valve", Item::Int16(5));
  testing::internal::CaptureStdout();
  lose({request(), request(1), request()});
  const auto printed = testing::internal::GetCapturedStdout();
  const std::string expected = "read_error_code = 1a2b,queue_size = 2\nresult_data.size()  = 0\n";
  ASSERT_GE(printed.size(), expected.size()) << printed;
  EXPECT_EQ(printed.substr(printed.size() - expected.size()), expected);
}

TEST_F(Disconnection, ErrorCodeBeginsAtZeroEachTime) {
  // A negative code is printed as the 32-bit number that it is.
  library.add("Motor", Item::Int16(5));
  library.fail("AGL_Symbolic_ReadMixEx", -1048554);
  testing::internal::CaptureStdout();
  device.read({request()});
  EXPECT_NE(testing::internal::GetCapturedStdout().find("read_error_code = fff00016,queue_size = 1\n"),
            std::string::npos);
}

TEST_F(Disconnection, GoodReadPrintsNoDiagnosticLine) {
  library.add("Motor", Item::Int16(5));
  testing::internal::CaptureStdout();
  device.read({request()});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(Disconnection, OutputFilterThenAnswersEveryCallAsFailed) {
  lose({request()});
  auto batch = device.batch({request()});
  EXPECT_EQ(status_of(device.output(batch)), "0/8/0");
  EXPECT_EQ(batch[0].byWaitResponse, 1);
  EXPECT_EQ(batch[0].nResponseLength, 8);
  EXPECT_EQ(data().pGCmdQueue, nullptr);
}

TEST_F(Disconnection, LossInALaterStepDropsTheRestOfTheCycle) {
  library.add("Motor", Item::Int16(5));
  library.add("Valve", Item::Int16(6));
  device.output({request(), request(1)});
  data().GPackSize[0] = 1;
  data().GPackSize[1] = 1;
  data().GTotalStep = 2;
  EXPECT_EQ(status_of(device.input(2)[0]), "13/5");
  library.fail("AGL_Symbolic_ReadMixEx", 5);
  const auto records = device.input(2);
  EXPECT_EQ(records[0].byErrCode, 2);
  EXPECT_EQ(records[1].byErrCode, 2);
  EXPECT_EQ(data().pGCmdQueue, nullptr);
  EXPECT_EQ(data().GTotalStep, 0U);
  EXPECT_EQ(data().GCurrentStep, 0U);
}

TEST_F(Disconnection, MarkIsNotClearedByTheFilterAndFailsTheNextReadToo) {
  // bDisconnect stays until the init command; good data does not help.
  library.add("Motor", Item::Int16(5));
  lose({request()});
  library.succeed("AGL_Symbolic_ReadMixEx");
  device.loader().loader_state = SymbolsLoader::Success;
  EXPECT_EQ(device.read({request()})[0].byErrCode, 2);
  EXPECT_EQ(device.loader().loader_state, SymbolsLoader::Error);
  EXPECT_FALSE(data().device_connect_state);

  device.address(kStation).connected();
  EXPECT_EQ(status_of(device.read({request()})[0]), "0/5");
}

TEST_F(Disconnection, RecordsOfALongBatchAllGetTwo) {
  const auto records = lose(std::vector<RequestBuilder>(35, request()));
  for (const auto& record : records) EXPECT_EQ(record.byErrCode, 2);
}

TEST_F(Disconnection, LostLibraryIsALostConnection) {
  library.fail("AGL_Symbolic_ReadMixEx", AGL40_LIB_NOT_LOADED);
  EXPECT_EQ(device.read({request()})[0].byErrCode, 2);
  EXPECT_EQ(device.loader().loader_state, SymbolsLoader::Error);
}

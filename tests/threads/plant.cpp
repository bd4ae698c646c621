// SPDX-License-Identifier: MIT
#include "tests/threads/plant.h"

#include <dirent.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>

std::set<pid_t> threads() {
  std::set<pid_t> all;
  DIR* folder = opendir("/proc/self/task");
  while (const dirent* entry = readdir(folder)) {
    if (const int id = std::atoi(entry->d_name); id != 0) all.insert(id);
  }
  closedir(folder);
  return all;
}

bool is_asleep(pid_t thread) {
  std::ifstream stat("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string line;
  return !std::getline(stat, line) || line.substr(line.rfind(')') + 2, 1) == "S";
}

namespace {

// A sanitizer may start a thread of its own beside a program's first one, and that stays.
std::set<pid_t> threads_that_stay() {
  std::thread([] {}).join();
  return threads();
}

}  // namespace

Plant::Plant() : before_(threads_that_stay()) {
  file = ProjectFile().tag("Motor").password(true, "secret").write(folder);
  KORVALE_DRV_StartDeviceEx(0, &handle, file.data(), 0);
  read_ = {RequestBuilder::Read(TagBlock(DT_INT)).device(handle).build()};
  write_ = {RequestBuilder::WordWrite(TagBlock(DT_INT), {7}).device(handle).build()};
  // What the connection threads print is of no interest, unless a test fails.
  testing::internal::CaptureStdout();
}

Plant::~Plant() {
  for (int place = 0; place < QuietLibrary::PlaceCount; ++place) {
    library.release(static_cast<QuietLibrary::Place>(place));
  }
  library.set_slowness(0);
  await_connection_threads(0);
  EXPECT_EQ(library.overlaps(), 0) << "two connection threads of one device were in SetupDevice";
  const std::string printed = testing::internal::GetCapturedStdout();
  if (HasFailure()) std::fputs(printed.c_str(), stderr);
}

void Plant::set_up_for(int plc, BYTE station) {
  auto words = parameter_words(station);
  words[4] = static_cast<WORD>(plc);
  KORVALE_DRV_InitEx(0, words.data());
  int response_length = 0;
  KORVALE_DRV_GetInitCmdEx2(&response_length, 0, station, 0, &handle);
}

Plant::Answer Plant::poll() {
  library.note_poll();
  read_[0].pdwMemAddr = handle;
  KORVALE_DRV_OutputFilterEx(read_.data(), 1);
  INPUT_DATA record;
  record.wData[0] = kUntouchedWord;
  DEVICE_INFO info{};
  info.bRead = TRUE;
  info.nReadWORDSize = 1;
  info.pdwMemAddr = handle;
  FRAME_DATA frame{};
  KORVALE_DRV_InputFilterEx(&record, &frame, &info, 1);
  return {record.byErrCode, record.byCurSysStatus, record.wData[0]};
}

void Plant::write() {
  write_[0].pdwMemAddr = handle;
  KORVALE_DRV_OutputFilterEx(write_.data(), 1);
  INPUT_DATA record;
  DEVICE_INFO info{};
  info.pdwMemAddr = handle;
  FRAME_DATA frame{};
  KORVALE_DRV_InputFilterEx(&record, &frame, &info, 1);
}

void Plant::expect_no_other_value(const Answer& answer, int plc) const {
  if (answer.value == kUntouchedWord) return;
  ASSERT_EQ(answer.error_code, 0);
  ASSERT_EQ(answer.value, plc);
}

void Plant::poll_until_value_of(int plc) {
  for (Answer answer{}; answer.value != plc; std::this_thread::yield()) {
    answer = poll();
    write();
    ASSERT_NO_FATAL_FAILURE(expect_no_other_value(answer, plc));
    ASSERT_NE(loader().loader_state, SymbolsLoader::Error) << "no value comes any more";
  }
}

void Plant::poll_times(int cycles, int plc) {
  for (int i = 0; i < cycles; ++i) {
    ASSERT_NO_FATAL_FAILURE(expect_no_other_value(poll(), plc));
    write();
  }
}

std::set<pid_t> Plant::connection_threads() const {
  std::set<pid_t> now = threads();
  for (const pid_t thread : before_) now.erase(thread);
  return now;
}

void Plant::await_connection_threads(std::size_t count) const {
  while (connection_threads().size() != count) std::this_thread::yield();
}

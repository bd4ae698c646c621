// SPDX-License-Identifier: MIT
// The symbol cache file: any bytes, as a file that is damaged or of somebody else; and any tree under a sound
// header, which no damage gets past. What loads is used as the driver uses it, and saved again.
//   input = way:byte length:u16 file{length} use*
#include <unistd.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "fuzzing/support/answers.h"
#include "fuzzing/support/demand.h"
#include "fuzzing/support/entry.h"
#include "fuzzing/support/input.h"
#include "fuzzing/support/memoryfile.h"
#include "simulator/program/encoding.h"
#include "simulator/program/fingerprint.h"
#include "simulator/standin/aglink.h"
#include "simulator/standin/handles.h"
#include "simulator/wire/symboltree.h"

using namespace ostravel;

namespace {

using Bytes = std::vector<std::uint8_t>;

// The header as symbolfile.h has it, with a checksum that holds.
Bytes with_header(std::span<const std::uint8_t> payload, std::uint64_t fingerprint) {
  Bytes file = {'A', 'G', 'L', 'S', 'Y', 'M', 'B', 0x1A, 0, 0, 0, 1};
  const auto put = [&](std::uint64_t value) {
    for (int shift = 56; shift >= 0; shift -= 8) file.push_back(static_cast<std::uint8_t>(value >> shift));
  };
  put(fingerprint);
  put(payload.size());
  std::uint64_t checksum = 0xCBF29CE484222325;
  const auto add = [&](std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) checksum = (checksum ^ byte) * 0x100000001B3;
  };
  add(file);
  add(payload);
  put(checksum);
  file.insert(file.end(), payload.begin(), payload.end());
  return file;
}

// A folder in memory for what is saved.
const std::string& saved_file() {
  static const std::string name = [] {
    std::string folder = "/dev/shm/ostravel-fuzz-XXXXXX";
    FUZZ_DEMAND(mkdtemp(folder.data()) != nullptr);
    static std::string remembered = folder;
    std::atexit([] {
      unlink((remembered + "/saved.ap").c_str());
      rmdir(remembered.c_str());
    });
    return folder + "/saved.ap";
  }();
  return name;
}

void save_and_load(HandleType root) {
  const auto tree = standin::handles().get<standin::Root>(root)->tree;
  FUZZ_DEMAND(AGL_Symbolic_SaveAGLinkSymbolsToFile(root, saved_file().c_str()) == 0);
  HandleType again = 0;
  FUZZ_DEMAND(AGL_Symbolic_LoadAGLinkSymbolsFromFile(saved_file().c_str(), &again) == 0);
  FUZZ_DEMAND(standin::handles().get<standin::Root>(again)->tree->blocks == tree->blocks);
  FUZZ_DEMAND(AGL_Symbolic_FreeHandle(again) == 0);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzz::MemoryFile file;
  fuzz::Input input(data, size);
  const std::uint8_t way = input.byte();
  const auto bytes = input.take(input.number<std::uint16_t>());
  bool loadable = false;
  if (way % 4 == 0) {
    file.hold(bytes);
  } else {
    const auto blocks = wire::decode_tree(bytes);
    loadable = blocks.has_value();
    Bytes whole = with_header(bytes, loadable ? plc::fingerprint(*blocks) : 0);
    if (way % 4 == 1 && way >= 0x80) {  // damaged
      std::uint8_t& damaged = whole[input.number<std::uint16_t>() % whole.size()];
      const auto change = input.byte();
      damaged ^= change;
      loadable = loadable && change == 0;
    }
    file.hold(whole);
  }
  HandleType root = 0;
  const agl_int32_t result = AGL_Symbolic_LoadAGLinkSymbolsFromFile(file.name(), &root);
  if (way % 4 != 0) FUZZ_DEMAND((result == 0) == loadable);
  if (result != 0) {
    FUZZ_DEMAND(root == 0);
    return 0;
  }
  if (way % 4 == 3) save_and_load(root);
  fuzz::use_tree(input, root);
  return 0;
}

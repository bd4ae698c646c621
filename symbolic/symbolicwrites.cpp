// SPDX-License-Identifier: MIT
// The write of one variable, or of elements of one array, by path.
#include "symbolic/accessbuffer.h"
#include "symbolic/accesshandles.h"
#include "symbolic/bufferwriter.h"
#include "symbolic/symbolsloader.h"

namespace {

constexpr agl_int32_t kWriteTimeout = 1;  // deliberately not the reads' 5000 milliseconds

}  // namespace

bool SymbolsLoader::WriteDataFromPlcByPath(std::string_view ITEM, const std::vector<unsigned char>& data,
                                           unsigned short source_index, unsigned char trunk_size_for_byte) {
  SymbolicRW_t rw{};
  agl_int32_t error_pos = 0;
  // Not tested, deliberately: without an access its size is not to be had either.
  AGL_Symbolic_CreateAccessByPath(root_schema_node, ITEM.data(), &rw.AccessHandle, &error_pos);
  AccessHandles handle({&rw, 1});
  agl_int32_t dataSize = 0;
  if (AGL_Symbolic_GetAccessBufferSize(rw.AccessHandle, &dataSize) != AGL40_SUCCESS) {
    handle.Keep();
    return false;
  }

  rw.BufferLen = dataSize;
  write_memory_.Attach({&rw, 1});
  BufferWriter::WriteBufferValues(rw, data, source_index, trunk_size_for_byte);
  agl_int32_t serror = 0;
  const agl_int32_t result = AGL_Symbolic_WriteMixEx(station_id, &rw, 1, &serror, kWriteTimeout, 0);
  write_memory_.Clear();
  // A job that failed keeps its access handle, deliberately.
  if (result != AGL40_SUCCESS) handle.Keep();
  return result == AGL40_SUCCESS;
}

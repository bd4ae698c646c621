// SPDX-License-Identifier: MIT
// Reads by path: a whole poll in one library job, one path, and the array behind an element path.
#include <cstdio>
#include <span>
#include <sstream>

#include "symbolic/accessbuffer.h"
#include "symbolic/accesshandles.h"
#include "symbolic/arrayhelper.h"
#include "symbolic/bufferreader.h"
#include "symbolic/symbolsloader.h"

namespace {

constexpr agl_int32_t kReadTimeout = 5000;  // milliseconds

// Creates the access and asks for its size. What fails stays in the job with whatever handle and size the
// library left: the library reports it in the job's own Result.
void prepare_access(HandleType root, const char* path, SymbolicRW_t& rw, int& ReadErrorcode) {
  agl_int32_t errorPosition = 0;
  if (AGL_Symbolic_CreateAccessByPath(root, path, &rw.AccessHandle, &errorPosition) != AGL40_SUCCESS) {
    std::puts("AGL_Symbolic_CreateAccessByPath");
    std::printf("AGL_Symbolic_CreateAccessByPath ITEMs.at(i).c_str() = %s\n", path);
    ReadErrorcode = 1;
  }
  agl_int32_t bufferSize = 0;
  if (AGL_Symbolic_GetAccessBufferSize(rw.AccessHandle, &bufferSize) != AGL40_SUCCESS) {
    std::puts("AGL_Symbolic_GetAccessBufferSize");
    std::printf("AGL_Symbolic_GetAccessBufferSize ITEMs.at(i).c_str() = %s\n", path);
    ReadErrorcode = 1;
  }
  rw.BufferLen = bufferSize;
}

// An array as the host sees it, from element 0 on; everything else as it is.
void rebase_to_zero(HandleType root, std::string_view path, agl_int32_t element_size, ArrayBounds& bounds,
                    ValueBytes& value) {
  if (get_array_description(root, path, bounds) && bounds.needs_rebasing()) {
    value.PrependZeros(array_fill_bytes(static_cast<unsigned>(element_size), bounds.lower, bounds.upper));
  }
}

void take_value(HandleType root, std::string_view path, const SymbolicRW_t& rw, ArrayBounds& bounds,
                ValueBytes& value) {
  BufferReader::GetBufferValues(rw, value);
  agl_int32_t element_size = 0;
  AGL_Symbolic_GetAccessBufferElementSize(rw.AccessHandle, &element_size);
  rebase_to_zero(root, path, element_size, bounds, value);
}

// The indices of the last bracket group; a piece without a number counts as 0.
std::vector<agl_int32_t> indices_of(const std::string& path) {
  const std::size_t start = path.rfind('[');
  const std::size_t end = path.rfind(']');
  std::vector<agl_int32_t> indices;
  if (start == std::string::npos || end == std::string::npos) return indices;
  for (const std::string& piece : split(path.substr(start + 1, end - start - 1), ',')) {
    agl_int32_t index = 0;
    std::istringstream(piece) >> index;
    indices.push_back(index);
  }
  return indices;
}

}  // namespace

std::map<std::string, Values> SymbolsLoader::ReadMapMultiDataFromPlcByPath(
    const std::vector<std::string>& ITEMs, int& ReadErrorcode) {
  ReadBatch batch;
  for (const std::string& path : ITEMs) batch.Add(path);
  std::map<std::string, Values> result_data;
  if (!ReadPaths(batch, ReadErrorcode)) return result_data;
  for (std::size_t i = 0; i < ITEMs.size(); ++i) {
    const auto value = batch.value(i);
    // Of a path that occurs twice the first occurrence wins.
    result_data.try_emplace(ITEMs[i], Values{{value.begin(), value.end()}});
  }
  return result_data;
}

bool SymbolsLoader::ReadPaths(ReadBatch& batch, int& ReadErrorcode) {
  const std::span<SymbolicRW_t> rws = batch.accesses();
  const std::span<ReadBatch::Path> paths = batch.paths();
  const AccessHandles handles(rws);
  for (std::size_t i = 0; i < rws.size(); ++i) {
    prepare_access(root_schema_node, paths[i].path.data(), rws[i], ReadErrorcode);
  }
  batch.memory_.Attach(rws);

  agl_int32_t sError = 0;
  const agl_int32_t result = AGL_Symbolic_ReadMixEx(
      station_id, rws.data(), static_cast<agl_int32_t>(rws.size()), &sError, kReadTimeout, 0);
  if (result != AGL40_SUCCESS) {
    std::printf("result = %x\n", static_cast<unsigned>(result));
    std::printf("sError = %x\n", static_cast<unsigned>(sError));
    std::printf("rws.size() = %d\n", static_cast<int>(rws.size()));
    ReadErrorcode = result;
  } else {
    for (std::size_t i = 0; i < rws.size(); ++i) {
      if (rws[i].Result != AGL40_SUCCESS) continue;
      take_value(root_schema_node, paths[i].path, rws[i], batch.bounds_, paths[i].value);
    }
  }
  batch.memory_.Clear();
  return result == AGL40_SUCCESS && !rws.empty();
}

std::vector<unsigned char> SymbolsLoader::ReadDataFromPlcByPath(const std::string& ITEM) {
  SymbolicRW_t rw{};
  agl_int32_t error_pos = 0;
  if (AGL_Symbolic_CreateAccessByPath(root_schema_node, ITEM.c_str(), &rw.AccessHandle, &error_pos) !=
      AGL40_SUCCESS) {
    return {};
  }
  ValueBytes value;
  agl_int32_t element_size = 0;
  {
    const AccessHandles handle({&rw, 1});
    agl_int32_t dataSize = 0;
    if (AGL_Symbolic_GetAccessBufferSize(rw.AccessHandle, &dataSize) != AGL40_SUCCESS) return {};
    const ZeroedMemory buffer = attach_buffer(rw, dataSize);
    agl_int32_t serror = 0;
    // The job's result alone decides; that of the single access goes unseen here, deliberately.
    if (AGL_Symbolic_ReadMixEx(station_id, &rw, 1, &serror, kReadTimeout, 0) != AGL40_SUCCESS) return {};
    BufferReader::GetBufferValues(rw, value);
    AGL_Symbolic_GetAccessBufferElementSize(rw.AccessHandle, &element_size);
  }
  ArrayBounds bounds;
  rebase_to_zero(root_schema_node, ITEM, element_size, bounds, value);
  return value.TakeVector();
}

std::vector<unsigned char> SymbolsLoader::ReadDataFromPlcByPathfor_multi_array_transfer(
    const std::string& ITEM, unsigned long* multi_array_linear_index) {
  const std::string remove_array_Symbol = RemoveLastArraySymbol(ITEM);
  HandleType arrayNodeHandle = 0;  // not freed on any path, deliberately
  agl_int32_t error_pos = 0;
  if (AGL_Symbolic_GetNodeByPath(root_schema_node, remove_array_Symbol.c_str(), &arrayNodeHandle,
                                 &error_pos) != AGL40_SUCCESS) {
    std::puts("AGL_Symbolic_GetNodeByPath error ");
    AGL_Symbolic_FreeHandle(0);  // the zero handle, deliberately, here and below
    return {};
  }
  const std::vector<agl_int32_t> index = indices_of(ITEM);
  agl_int32_t linindex = 0;
  if (AGL_Symbolic_GetArrayIndexAsLinearIndex(arrayNodeHandle, index.data(),
                                              static_cast<agl_int32_t>(index.size()),
                                              &linindex) != AGL40_SUCCESS) {
    std::puts("Symbolic_CreateArrayAccessByIndex error ");
    AGL_Symbolic_FreeHandle(0);
    return {};
  }
  *multi_array_linear_index = static_cast<unsigned long>(linindex);
  return ReadDataFromPlcByPath(remove_array_Symbol);
}

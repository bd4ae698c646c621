// SPDX-License-Identifier: MIT
// Symbol trees: upload, files, looking up paths.
#include <optional>
#include <string_view>

#include "simulator/program/encoding.h"
#include "simulator/standin/aglink.h"
#include "simulator/standin/device.h"
#include "simulator/standin/errors.h"
#include "simulator/standin/handles.h"
#include "simulator/standin/symbolfile.h"

using namespace ostravel;
using namespace ostravel::standin;

namespace {

HandleType add_tree(Tree tree) {
  return handles().add(Root{std::make_shared<const Tree>(std::move(tree))});
}

// Resolves a path below a root and hands the target to make, whose handle goes to *handle.
template <typename Make>
agl_int32_t look_up(HandleType root, const agl_char8_t* path, HandleType* handle, agl_int32_t* error_position,
                    Make&& make) {
  return guarded([&] {
    require(path != nullptr && handle != nullptr, Error::InvalidParameter);
    *handle = 0;
    if (error_position != nullptr) *error_position = 0;
    const auto tree = handles().get<Root>(root)->tree;
    std::size_t position = 0;
    const auto target = plc::resolve(tree->blocks, path, &position);
    if (!target && error_position != nullptr) *error_position = static_cast<agl_int32_t>(position);
    require(target.has_value(), Error::PathUnknown);
    *handle = handles().add(make(tree, *target));
  });
}

Access make_access(const std::shared_ptr<const Tree>& tree, const plc::Target& target) {
  const auto type = element_type(target.symbol->type);
  require(type.value != ValueType_t::vt_UNDEFINED, Error::NotAccessible);
  // A sound tree has no more elements and bytes than 64 Mi, nor addresses beyond.
  const auto elements = target.element ? 1 : plc::element_count(*target.symbol);
  return {tree,
          target.symbol,
          static_cast<std::uint32_t>(target.address),
          static_cast<std::int32_t>(elements),
          static_cast<std::int32_t>(target.symbol->element_size),
          type};
}

}  // namespace

extern "C" {

agl_int32_t AGL_Symbolic_LoadAGLinkSymbolsFromPLC(agl_int32_t ConnNr, HandleType* RootNodeHandle) {
  return guarded([&] {
    require(RootNodeHandle != nullptr, Error::InvalidParameter);
    const auto place = place_of(ConnNr);
    const auto limit = effective_timeout(0, place.device.parameter_timeout());
    *RootNodeHandle = add_tree(place.device.connection(place.position)->upload(limit));
  });
}

agl_int32_t AGL_Symbolic_SaveAGLinkSymbolsToFile(HandleType RootNodeHandle, const agl_char8_t* FileName) {
  return guarded([&] {
    require(FileName != nullptr, Error::InvalidParameter);
    save_symbols(*handles().get<Root>(RootNodeHandle)->tree, FileName);
  });
}

agl_int32_t AGL_Symbolic_LoadAGLinkSymbolsFromFile(const agl_char8_t* FileName, HandleType* RootNodeHandle) {
  return guarded([&] {
    require(FileName != nullptr && RootNodeHandle != nullptr, Error::InvalidParameter);
    *RootNodeHandle = add_tree(load_symbols(FileName));
  });
}

agl_int32_t AGL_Symbolic_FreeHandle(HandleType Handle) {
  return guarded([&] { handles().free(Handle); });
}

agl_int32_t AGL_Symbolic_GetNodeByPath(HandleType RootNodeHandle, const agl_char8_t* Path,
                                       HandleType* NodeHandle, agl_int32_t* ErrorPos) {
  return look_up(RootNodeHandle, Path, NodeHandle, ErrorPos, [](const auto& tree, const plc::Target& target) {
    return Node{tree, target};
  });
}

agl_int32_t AGL_Symbolic_CreateAccessByPath(HandleType RootNodeHandle, const agl_char8_t* Path,
                                            HandleType* AccessHandle, agl_int32_t* ErrorPos) {
  return look_up(RootNodeHandle, Path, AccessHandle, ErrorPos, make_access);
}
}

// SPDX-License-Identifier: MIT
// Arrays and their indexes.
#include <vector>

#include "simulator/program/paths.h"
#include "simulator/standin/aglink.h"
#include "simulator/standin/errors.h"
#include "simulator/standin/handles.h"

using namespace ostravel;
using namespace ostravel::standin;

namespace {

// An element of an array has no dimensions of its own.
const std::vector<plc::Dimension>& dimensions_of(const Node& node) {
  static const std::vector<plc::Dimension> kNone;
  return node.target.element ? kNone : node.target.symbol->dimensions;
}

}  // namespace

extern "C" {

agl_int32_t AGL_Symbolic_GetArrayDimensionCount(HandleType NodeHandle, agl_int32_t* Count) {
  return guarded([&] {
    require(Count != nullptr, Error::InvalidParameter);
    *Count = static_cast<agl_int32_t>(dimensions_of(*handles().get<Node>(NodeHandle)).size());
  });
}

agl_int32_t AGL_Symbolic_GetArrayDimension(HandleType NodeHandle, agl_int32_t Dimension, agl_int32_t* Lower,
                                           agl_int32_t* Upper) {
  return guarded([&] {
    require(Lower != nullptr && Upper != nullptr, Error::InvalidParameter);
    const auto node = handles().get<Node>(NodeHandle);
    const auto& dimensions = dimensions_of(*node);
    require(Dimension >= 0 && static_cast<std::size_t>(Dimension) < dimensions.size(),
            Error::DimensionInvalid);
    const auto& bounds = dimensions[static_cast<std::size_t>(Dimension)];
    *Lower = bounds.lower;
    *Upper = bounds.upper;
  });
}

agl_int32_t AGL_Symbolic_GetArrayIndexAsLinearIndex(HandleType NodeHandle, const agl_int32_t* Index,
                                                    agl_int32_t IndexCount, agl_int32_t* LinearIndex) {
  return guarded([&] {
    require(LinearIndex != nullptr, Error::InvalidParameter);
    const auto node = handles().get<Node>(NodeHandle);
    const auto count = dimensions_of(*node).size();
    // An index list is read only when it has as many entries as there are dimensions.
    require(count != 0 && IndexCount >= 0 && static_cast<std::size_t>(IndexCount) == count,
            Error::IndexInvalid);
    require(Index != nullptr, Error::InvalidParameter);
    const auto element = plc::element_of_index(*node->target.symbol, {Index, Index + IndexCount});
    require(element.has_value(), Error::IndexInvalid);
    *LinearIndex = static_cast<agl_int32_t>(*element);
  });
}

agl_int32_t AGL_Symbolic_GetIndexSize(HandleType NodeHandle, agl_int32_t* Size) {
  return guarded([&] {
    require(Size != nullptr, Error::InvalidParameter);
    const auto node = handles().get<Node>(NodeHandle);
    *Size = node->target.element ? static_cast<agl_int32_t>(node->target.index.size()) : 0;
  });
}

agl_int32_t AGL_Symbolic_GetIndex(HandleType NodeHandle, agl_int32_t Position, agl_int32_t* Value) {
  return guarded([&] {
    require(Value != nullptr, Error::InvalidParameter);
    const auto node = handles().get<Node>(NodeHandle);
    const auto& index = node->target.index;
    require(node->target.element && Position >= 0 && static_cast<std::size_t>(Position) < index.size(),
            Error::IndexInvalid);
    *Value = index[static_cast<std::size_t>(Position)];
  });
}
}

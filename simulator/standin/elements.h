// SPDX-License-Identifier: MIT
// One element of an access buffer, checked once for all functions that get or set a value.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "simulator/standin/errors.h"
#include "simulator/standin/handles.h"

namespace ostravel::standin {

template <typename Byte>
struct Element {
  std::shared_ptr<const Access> access;
  std::span<Byte> bytes;
};

// The element's bytes in the caller's buffer. Throws Failure for a bad handle, another value type, no buffer,
// no such element, or a buffer that ends before the element does.
template <typename Byte, typename Buffer>
Element<Byte> element_in(HandleType handle, Buffer* buffer, agl_int32_t length, agl_int32_t element,
                         ElementType expected) {
  auto access = handles().get<Access>(handle);
  require(access->type.value == expected.value &&
              (expected.system == SystemType_t::st_UNDEFINED || access->type.system == expected.system),
          Error::WrongType);
  require(buffer != nullptr, Error::InvalidParameter);
  require(element >= 0 && element < access->elements, Error::ElementInvalid);
  const auto end = (std::int64_t{element} + 1) * access->element_size;
  require(length >= end, Error::BufferTooSmall);
  const auto size = static_cast<std::size_t>(access->element_size);
  const std::span<Byte> bytes(static_cast<Byte*>(buffer) + static_cast<std::size_t>(end) - size, size);
  return {std::move(access), bytes};
}

inline Element<const std::uint8_t> read_element(HandleType handle, const void* buffer, agl_int32_t length,
                                                agl_int32_t element, ElementType expected) {
  return element_in<const std::uint8_t>(handle, buffer, length, element, expected);
}

inline Element<std::uint8_t> write_element(HandleType handle, void* buffer, agl_int32_t length,
                                           agl_int32_t element, ElementType expected) {
  return element_in<std::uint8_t>(handle, buffer, length, element, expected);
}

}  // namespace ostravel::standin

// SPDX-License-Identifier: MIT
// Requests as the runtime builds them, byte by byte and at literal offsets, so that the driver's records are
// tested against the layout and not against themselves. Every byte that a test does not set holds a pattern:
// whoever reads a reserved byte is found out.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "driver/hostrecords.h"

inline constexpr BYTE kReservedPattern = 0xA5;

// The 19 bytes that say which tag element is meant: row 0, index 0xFFFF, one element unless told otherwise.
class TagBlock {
 public:
  explicit TagBlock(int type) {
    bytes_.fill(kReservedPattern);
    row(0).alternate(0).selector(0).index_off(0).index(0xFFFF).count(1);
    bytes_[4] = static_cast<BYTE>(type);
  }
  TagBlock& row(DWORD value) {
    for (std::size_t i = 0; i < 4; ++i) bytes_[i] = static_cast<BYTE>(value >> (8 * i));
    return *this;
  }
  TagBlock& alternate(int type) { return at(6, type); }
  TagBlock& selector(int value) { return at(9, value); }
  TagBlock& bit(int number) { return selector(number + 1); }
  TagBlock& index_off(int value) { return at(10, value); }
  TagBlock& index(int value) { return at(13, value & 0xFF).at(14, value >> 8); }
  TagBlock& count(int value) { return at(15, value & 0xFF).at(16, value >> 8); }

  BYTE* data() { return bytes_.data(); }
  const std::array<BYTE, 19>& bytes() const { return bytes_; }

 private:
  TagBlock& at(std::size_t offset, int value) {
    bytes_[offset] = static_cast<BYTE>(value);
    return *this;
  }
  std::array<BYTE, 19> bytes_{};
};

class RequestBuilder {
 public:
  static constexpr std::size_t kSize = 4200;

  static RequestBuilder Read(const TagBlock& tag, int words = 1) {
    RequestBuilder request(0, tag);
    request.put_word(52, words);
    return request;
  }
  static RequestBuilder WordWrite(const TagBlock& tag, const std::vector<WORD>& words) {
    RequestBuilder request(1, tag);
    request.put_word(52, static_cast<int>(words.size()));
    for (std::size_t i = 0; i < words.size(); ++i) request.put_word(54 + 2 * i, words[i]);
    return request;
  }
  static RequestBuilder BitWrite(const TagBlock& tag, int value, int bit_offset = 0) {
    RequestBuilder request(2, tag);
    request.bytes_[52] = static_cast<BYTE>(bit_offset);
    request.bytes_[53] = static_cast<BYTE>(value);
    return request;
  }

  RequestBuilder& function(int code) {
    bytes_[36] = static_cast<BYTE>(code);
    return *this;
  }
  // The number of words that the request announces, whatever it holds.
  RequestBuilder& announce(int words) {
    put_word(52, words);
    return *this;
  }
  RequestBuilder& use_tag(int value) {
    bytes_[4170] = static_cast<BYTE>(value);
    return *this;
  }
  RequestBuilder& device(DWORD* handle) {
    std::memcpy(&bytes_[4192], &handle, sizeof handle);
    return *this;
  }

  GUI_REQUEST build() const {
    static_assert(sizeof(GUI_REQUEST) == kSize);
    GUI_REQUEST request;
    std::memcpy(&request, bytes_.data(), kSize);
    return request;
  }

 private:
  RequestBuilder(int function_code, const TagBlock& tag) {
    bytes_.fill(kReservedPattern);
    function(function_code);
    std::memcpy(&bytes_[4171], tag.bytes().data(), tag.bytes().size());
    device(nullptr);
  }
  void put_word(std::size_t offset, int value) {
    bytes_[offset] = static_cast<BYTE>(value & 0xFF);
    bytes_[offset + 1] = static_cast<BYTE>(value >> 8);
  }
  std::array<BYTE, kSize> bytes_{};
};

// One byte or little-endian number of a record, taken at its offset.
template <class T, class Record>
T field(const Record& record, std::size_t offset) {
  T value;
  std::memcpy(&value, reinterpret_cast<const BYTE*>(&record) + offset, sizeof value);
  return value;
}

// SPDX-License-Identifier: MIT
#include "simulator/program/image.h"

#include <fmt/format.h>

#include <algorithm>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/paths.h"

namespace ostravel::plc {
namespace {

// What a variable holds that no declaration gives a value. Memory is zero before.
void put_default(const Symbol& symbol, std::span<std::uint8_t> element) {
  switch (symbol.type) {
    case DataType::Char:
    case DataType::WChar:
      store_number(element, ' ');
      break;
    case DataType::String:
      store_string(element, {});
      break;
    case DataType::WString:
      store_wstring(element, {});
      break;
    case DataType::Dtl:
      store_dtl(element, DateTime{});
      break;
    case DataType::DateAndTime: {
      DateTime first;
      first.year = 1990;
      store_date_and_time(element, first);
      break;
    }
    default:
      break;
  }
}

}  // namespace

void repeat_pattern(std::span<std::uint8_t> bytes, std::size_t pattern) {
  if (pattern == 0) return;
  // Each copy doubles what is there.
  for (std::size_t done = pattern; done < bytes.size();) {
    const std::size_t step = std::min(done, bytes.size() - done);
    std::copy_n(bytes.begin(), step, bytes.begin() + static_cast<std::ptrdiff_t>(done));
    done += step;
  }
}

void Image::fill_block(const Declaration& block, const Symbol& symbol, Memory memory) {
  fill(symbol, block.content, &block, memory.subspan(symbol.offset, byte_count(symbol)));
}

void Image::fill(const Symbol& symbol, const TypeUse& use, const Declaration* scope, Memory whole) {
  const std::size_t size = symbol.element_size;
  if (size == 0 || whole.size() < size) return;
  fill_element(symbol, use, scope, whole.first(size));
  repeat_pattern(whole, size);
}

void Image::fill_element(const Symbol& symbol, const TypeUse& use, const Declaration* scope, Memory element) {
  if (symbol.type != DataType::Struct) {
    put_default(symbol, element);
    return;
  }
  const Declaration* const declaration = use.structure ? nullptr : catalogue_.meaning(use).declaration;
  const std::vector<Member>& members = declaration == nullptr ? use.members : declaration->content.members;
  const Declaration* const inner = declaration == nullptr ? scope : declaration;
  for (std::size_t i = 0; i < members.size() && i < symbol.members.size(); ++i) {
    const Symbol& member = symbol.members[i];
    if (!members[i].view_of.empty()) continue;
    const Memory part = element.subspan(member.offset, byte_count(member));
    fill(member, members[i].type, inner, part);
    if (members[i].initial) apply(member, *members[i].initial, inner, part);
  }
}

std::string Image::path_text(const Declaration& block, const Assignment& assignment) const {
  std::string path = path_name(block.name);
  for (const PathPart& part : assignment.path) {
    path += '.' + path_name(part.name);
    std::string index;
    for (const Value& value : part.index) {
      index += fmt::format("{}{}", index.empty() ? '[' : ',', catalogue_.integer(value, &block));
    }
    if (!index.empty()) path += index + ']';
  }
  return path;
}

void Image::assign(const Declaration& block, const std::vector<Symbol>& blocks, Memory memory) {
  for (const Assignment& assignment : block.assignments) {
    const std::string path = path_text(block, assignment);
    std::size_t fits = 0;
    const std::optional<Target> target = resolve(blocks, path, &fits);
    if (!target) {
      // Below a type without layout there is nothing to find, nor to lose.
      const std::optional<Target> above = resolve(blocks, std::string_view(path).substr(0, fits));
      if (above && above->symbol->type == DataType::Opaque) continue;
      fail(assignment.position, fmt::format("{} does not exist; check the names and the bounds", path));
    }
    const Memory bytes = bytes_of(*target, memory);
    if (target->element) {
      apply_element(*target->symbol, assignment.value, &block, bytes);
    } else {
      apply(*target->symbol, assignment.value, &block, bytes);
    }
  }
}

}  // namespace ostravel::plc

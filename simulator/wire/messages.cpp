// SPDX-License-Identifier: MIT
#include "simulator/wire/messages.h"

#include <type_traits>
#include <utility>

#include "simulator/wire/symboltree.h"
#include "simulator/wire/unpack.h"

MSGPACK_ADD_ENUM(ostravel::wire::JobResult)
MSGPACK_ADD_ENUM(ostravel::wire::ItemResult)

namespace ostravel::wire {
namespace {

// The fields of each body, in order, for packing and unpacking alike.
auto fields(auto& body) {
  using Body = std::remove_cvref_t<decltype(body)>;
  if constexpr (std::is_same_v<Body, HelloRequest>) {
    return std::tie(body.version);
  } else if constexpr (std::is_same_v<Body, PasswordRequest>) {
    return std::tie(body.password);
  } else if constexpr (std::is_same_v<Body, ReadItem>) {
    return std::tie(body.address, body.length);
  } else if constexpr (std::is_same_v<Body, WriteItem>) {
    return std::tie(body.address, body.data);
  } else if constexpr (std::is_same_v<Body, ReadRequest> || std::is_same_v<Body, WriteRequest>) {
    return std::tie(body.fingerprint, body.items);
  } else if constexpr (std::is_same_v<Body, HelloAnswer>) {
    return std::tie(body.version, body.order_number, body.fingerprint, body.password_needed);
  } else if constexpr (std::is_same_v<Body, SymbolsAnswer>) {
    return std::tie(body.fingerprint, body.blocks);
  } else if constexpr (std::is_same_v<Body, ReadAnswerItem>) {
    return std::tie(body.result, body.data);
  } else if constexpr (std::is_same_v<Body, ReadAnswer>) {
    return std::tie(body.cycle, body.items);
  } else if constexpr (std::is_same_v<Body, WriteAnswer>) {
    return std::tie(body.items);
  } else {
    return std::tie();  // SymbolsRequest, PasswordAnswer
  }
}

template <typename T>
inline constexpr bool kHasFields =
    std::is_same_v<T, ReadItem> || std::is_same_v<T, WriteItem> || std::is_same_v<T, ReadAnswerItem>;

using Packer = msgpack::packer<msgpack::sbuffer>;

template <typename Body>
void pack_fields(Packer& out, const Body& body);

template <typename T>
void pack_value(Packer& out, const T& value) {
  out.pack(value);
}

template <typename T>
requires kHasFields<T>
void pack_value(Packer& out, const std::vector<T>& items) {
  out.pack_array(static_cast<std::uint32_t>(items.size()));
  for (const T& item : items) pack_fields(out, item);
}

template <typename Body>
void pack_fields(Packer& out, const Body& body) {
  std::apply(
      [&out](const auto&... field) {
        out.pack_array(sizeof...(field));
        (pack_value(out, field), ...);
      },
      fields(body));
}

std::span<const msgpack::object> array_of(const msgpack::object& from) {
  if (from.type != msgpack::type::ARRAY) throw msgpack::type_error();
  return {from.via.array.ptr, from.via.array.size};
}

template <typename Body>
void unpack_fields(const msgpack::object& from, Body& body);

template <typename T>
void unpack_value(const msgpack::object& from, T& value) {
  from.convert(value);
}

template <typename T>
requires kHasFields<T>
void unpack_value(const msgpack::object& from, std::vector<T>& items) {
  const auto values = array_of(from);
  if (values.size() > kMaxItems) throw msgpack::type_error();
  items.resize(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) unpack_fields(values[i], items[i]);
}

template <typename Body>
void unpack_fields(const msgpack::object& from, Body& body) {
  const auto values = array_of(from);
  std::apply(
      [&values](auto&... field) {
        if (values.size() != sizeof...(field)) throw msgpack::type_error();
        std::size_t i = 0;
        (unpack_value(values[i++], field), ...);
        (void)i;
      },
      fields(body));
}

template <typename Variant, std::size_t... I>
void unpack_body(std::size_t kind, const msgpack::object& from, Variant& body, std::index_sequence<I...>) {
  const bool known = ((kind == I && (unpack_fields(from, body.template emplace<I>()), true)) || ...);
  if (!known) throw msgpack::type_error();
}

// The third field is the one in which request and answer differ.
template <typename Message>
auto& third(Message& message) {
  if constexpr (std::is_same_v<std::remove_const_t<Message>, Request>) {
    return message.time_limit;
  } else {
    return message.result;
  }
}

template <typename Message>
Bytes encode_message(const Message& message) {
  msgpack::sbuffer buffer;
  Packer out(buffer);
  out.pack_array(4).pack(message.body.index()).pack(message.sequence).pack(third(message));
  std::visit([&out](const auto& body) { pack_fields(out, body); }, message.body);
  return {buffer.data(), buffer.data() + buffer.size()};
}

template <typename Message>
std::optional<Message> decode_message(std::span<const std::uint8_t> bytes) {
  if (!is_one_object(bytes)) return std::nullopt;
  try {
    const auto object = msgpack::unpack(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto part = array_of(object.get());
    if (part.size() != 4) return std::nullopt;
    Message message;
    part[1].convert(message.sequence);
    part[2].convert(third(message));
    unpack_body(part[0].as<std::size_t>(), part[3], message.body,
                std::make_index_sequence<std::variant_size_v<decltype(message.body)>>());
    return message;
  } catch (const msgpack::type_error&) {
  } catch (const msgpack::unpack_error&) {
  }
  return std::nullopt;
}

}  // namespace

Bytes encode(const Request& request) {
  return encode_message(request);
}
Bytes encode(const Answer& answer) {
  return encode_message(answer);
}

std::optional<Request> decode_request(std::span<const std::uint8_t> bytes) {
  return decode_message<Request>(bytes);
}

std::optional<Answer> decode_answer(std::span<const std::uint8_t> bytes) {
  auto answer = decode_message<Answer>(bytes);
  if (!answer || answer->result > JobResult::TooLarge) return std::nullopt;
  if (const auto* symbols = std::get_if<SymbolsAnswer>(&answer->body);
      symbols && !is_sound(symbols->blocks)) {
    return std::nullopt;
  }
  return answer;
}

}  // namespace ostravel::wire

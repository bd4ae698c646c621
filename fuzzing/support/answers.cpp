// SPDX-License-Identifier: MIT
#include "fuzzing/support/answers.h"

#include <array>
#include <cstring>
#include <utility>
#include <vector>

#include "fuzzing/support/demand.h"
#include "simulator/plc/plc.h"
#include "simulator/program/source.h"
#include "simulator/standin/aglink.h"
#include "simulator/wire/client.h"

namespace {

using namespace ostravel;

// What comes over the connections of the run that is under way.
fuzz::Input* answers = nullptr;
std::optional<plc::Plc> honest;
plc::ClientRights rights;

}  // namespace

namespace ostravel::wire {

struct Client::Link {
  FrameReader reader{1 << 20};
  std::uint32_t sequence = 0;
  bool alive = true;
};

Client::Client(const std::string&, std::uint16_t, Milliseconds) : link_(std::make_unique<Link>()) {
  switch (answers->byte() % 16) {
    case 1:
      throw TimedOut("");
    case 2:
      throw ConnectionLost("");
    case 3:
      throw std::invalid_argument("");
    default:
      break;
  }
}

Client::~Client() = default;

// As the client of a socket does it, but for where the bytes come from: mostly from an honest PLC, else from
// it with a byte changed, or from the input.
Answer Client::ask(RequestBody body, Milliseconds limit) {
  const auto lose = [&](const char* why) {
    link_->alive = false;
    throw ConnectionLost(why);
  };
  if (!link_->alive) throw ConnectionLost("not connected");
  const Request request{++link_->sequence, static_cast<std::uint32_t>(limit.count()), std::move(body)};
  const auto sent = decode_request(encode(request));
  FUZZ_DEMAND(sent.has_value());
  const std::uint8_t how = answers->byte() % 16;
  if (how == 15) throw TimedOut("");
  if (how == 14) lose("");
  Bytes message = encode(honest->serve(*sent, rights));
  if (how >= 10) {
    const auto given = answers->take(answers->byte());
    message.assign(given.begin(), given.end());
  } else if (how >= 6) {
    message[answers->number<std::uint16_t>() % message.size()] = answers->byte();
  }
  Bytes frames = message_frames(message, kPreferredUnit);
  if (how == 9) frames[answers->byte() % frames.size()] ^= answers->byte();
  try {
    link_->reader.feed(frames);
  } catch (const BadFrame& error) {
    lose(error.what());
  }
  while (const auto event = link_->reader.next()) {
    if (event->kind != TransportEvent::Kind::Message) lose("transport connection ended");
    auto answer = decode_answer(event->message);
    if (!answer) lose("not an answer");
    if (answer->sequence != request.sequence) continue;
    if (answer->body.index() != request.body.index()) lose("answer to another question");
    return std::move(*answer);
  }
  throw TimedOut("");
}

bool Client::alive() const {
  return link_->alive;
}
std::uint64_t Client::bytes_sent() const {
  return 1;
}
std::uint64_t Client::bytes_received() const {
  return 1;
}

}  // namespace ostravel::wire

namespace fuzz {
namespace {

constexpr agl_int32_t kDevice = 1;
constexpr agl_int32_t kMostBytes = 1 << 16;  // of a buffer; larger ones are left alone

std::string path_from(Input& input) {
  static constexpr std::array<const char*, 12> kPaths = {
      "Plant",        "Plant.Level",  "Plant.Level[2]",    "Plant.Name", "Plant.On", "Plant.When",
      "Plant.Locked", "Plant.Matrix", "Plant.Matrix[2,0]", "Plant.Wide", "A",        "A[0].B"};
  const std::uint8_t which = input.byte();
  return which < 0xC0 ? kPaths[which % kPaths.size()] : std::string(input.text());
}

void ask_node(Input& input, HandleType root) {
  HandleType node = 0;
  agl_int32_t position = 0;
  if (AGL_Symbolic_GetNodeByPath(root, path_from(input).c_str(), &node, &position) != 0) return;
  agl_int32_t count = 0;
  FUZZ_DEMAND(AGL_Symbolic_GetArrayDimensionCount(node, &count) == 0 && count >= 0);
  std::vector<agl_int32_t> index;
  for (agl_int32_t i = 0; i < count; ++i) {
    agl_int32_t lower = 0;
    agl_int32_t upper = 0;
    FUZZ_DEMAND(AGL_Symbolic_GetArrayDimension(node, i, &lower, &upper) == 0 && lower <= upper);
    index.push_back(input.byte() % 2 == 0 ? lower : upper);
  }
  agl_int32_t linear = -1;
  const agl_int32_t result = AGL_Symbolic_GetArrayIndexAsLinearIndex(node, index.data(), count, &linear);
  FUZZ_DEMAND(count == 0 ? result != 0 : result == 0 && linear >= 0);
  const agl_int32_t any = input.number<agl_int32_t>();
  (void)AGL_Symbolic_GetArrayIndexAsLinearIndex(node, &any, 1, &linear);
  (void)AGL_Symbolic_GetIndex(node, any, &linear);
  FUZZ_DEMAND(AGL_Symbolic_GetArrayDimension(node, count, &linear, &linear) != 0);
  FUZZ_DEMAND(AGL_Symbolic_FreeHandle(node) == 0 && AGL_Symbolic_FreeHandle(node) != 0);
}

// All functions on one element, of which those of another type must refuse.
void use_elements(Input& input, HandleType access, std::vector<std::uint8_t>& buffer, agl_int32_t element) {
  auto* const bytes = buffer.data();
  const auto length = static_cast<agl_int32_t>(buffer.size());
  int accepted = 0;
#define STANDIN_USE(name, type, value_type)                                                         \
  {                                                                                                 \
    type value{};                                                                                   \
    accepted += AGL_Symbolic_GetAccessBuffer##name(access, bytes, length, element, &value) == 0;    \
    (void)AGL_Symbolic_SetAccessBuffer##name(access, bytes, length, element, input.number<type>()); \
  }
  STANDIN_VALUES(STANDIN_USE)
#undef STANDIN_USE
  FUZZ_DEMAND(accepted <= 1);
  std::array<agl_char8_t, 32> text{};
  std::array<agl_char16_t, 32> wide{};
  agl_int32_t count = 0;
  const agl_int32_t room = input.byte() % 33;
  if (AGL_Symbolic_GetAccessBufferString8(access, bytes, length, element, text.data(), room, &count) == 0) {
    FUZZ_DEMAND(count < room);
  }
  if (AGL_Symbolic_GetAccessBufferString16(access, bytes, length, element, wide.data(), room, &count) == 0) {
    FUZZ_DEMAND(count < room);
  }
  (void)AGL_Symbolic_SetAccessBufferString8(access, bytes, length, element, text.data(), input.byte() % 33);
  (void)AGL_Symbolic_SetAccessBufferString16(access, bytes, length, element, wide.data(), input.byte() % 33);
  agl_uint16_t year = input.number<agl_uint16_t>();
  std::array<agl_uint8_t, 6> part{};
  input.fill(part.data(), part.size());
  agl_uint32_t nanoseconds = input.number<agl_uint32_t>();
  auto milliseconds = static_cast<agl_uint16_t>(nanoseconds);
  (void)AGL_Symbolic_SetAccessBufferS7_DTLParts(access, bytes, length, element, year, part[0], part[1],
                                                part[2], part[3], part[4], part[5], nanoseconds);
  (void)AGL_Symbolic_GetAccessBufferS7_DTLParts(access, bytes, length, element, &year, &part[0], &part[1],
                                                &part[2], &part[3], &part[4], &part[5], &nanoseconds);
  (void)AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts(access, bytes, length, element, year, part[0],
                                                          part[1], part[2], part[3], part[4], part[5],
                                                          milliseconds);
  (void)AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts(access, bytes, length, element, &year, &part[0],
                                                          &part[1], &part[2], &part[3], &part[4], &part[5],
                                                          &milliseconds);
  (void)AGL_Symbolic_SetAccessBufferS7_S5TimeMs(access, bytes, length, element, nanoseconds, 1);
  (void)AGL_Symbolic_GetAccessBufferS7_S5TimeMs(access, bytes, length, element, &nanoseconds);
  (void)AGL_Symbolic_SetAccessBufferS7_Counter(access, bytes, length, element, year);
  (void)AGL_Symbolic_GetAccessBufferS7_Counter(access, bytes, length, element, &year);
}

void use_access(Input& input, HandleType root, bool connected) {
  SymbolicRW_t item{};
  agl_int32_t position = 0;
  if (AGL_Symbolic_CreateAccessByPath(root, path_from(input).c_str(), &item.AccessHandle, &position) != 0)
    return;
  agl_int32_t size = -1;
  agl_int32_t element_size = -1;
  agl_int32_t elements = -1;
  agl_int32_t string_size = -1;
  SystemType_t::enum_t system_type = SystemType_t::st_UNDEFINED;
  ValueType_t::enum_t value_type = ValueType_t::vt_UNDEFINED;
  FUZZ_DEMAND(AGL_Symbolic_GetAccessBufferSize(item.AccessHandle, &size) == 0);
  FUZZ_DEMAND(AGL_Symbolic_GetAccessBufferElementSize(item.AccessHandle, &element_size) == 0);
  FUZZ_DEMAND(AGL_Symbolic_GetAccessBufferElementCount(item.AccessHandle, &elements) == 0);
  FUZZ_DEMAND(AGL_Symbolic_GetAccessElementSystemType(item.AccessHandle, &system_type) == 0);
  FUZZ_DEMAND(AGL_Symbolic_GetAccessElementValueType(item.AccessHandle, &value_type) == 0);
  FUZZ_DEMAND(elements > 0 && element_size > 0 && size == elements * element_size);
  (void)AGL_Symbolic_GetAccessStringSize(item.AccessHandle, &string_size);
  if (size <= kMostBytes) {
    // A buffer that ends where it must, or one byte before.
    std::vector<std::uint8_t> buffer(static_cast<std::size_t>(size) - input.byte() % 2);
    item.Buffer = buffer.data();
    item.BufferLen = static_cast<agl_long_t>(buffer.size());
    agl_int32_t error = 0;
    if (connected) (void)AGL_Symbolic_ReadMixEx(kDevice, &item, 1, &error, 0, 0);
    input.fill(buffer.data(), std::min<std::size_t>(buffer.size(), 16));
    const std::uint8_t element = input.byte();
    use_elements(input, item.AccessHandle, buffer,
                 element < 0xF0 ? element % elements : input.number<agl_int32_t>());
    if (connected) (void)AGL_Symbolic_WriteMixEx(kDevice, &item, 1, &error, 0, 0);
  }
  FUZZ_DEMAND(AGL_Symbolic_FreeHandle(item.AccessHandle) == 0);
}

void connect() {
  std::array<std::uint8_t, 512> parameters{};
  parameters[8] = 40;  // class of PLC
  std::memcpy(&parameters[32], "127.0.0.1", 10);
  FUZZ_DEMAND(AGL_SetParas(kDevice, 21, parameters.data(), 512) == 0);
  (void)AGL_CloseDevice(kDevice);
  FUZZ_DEMAND(AGL_OpenDevice(kDevice) == 0 && AGL_DialUp(kDevice, 0, 0) == 0);
  FUZZ_DEMAND(AGL_InitAdapter(kDevice, 0, 0) == 0);
}

}  // namespace

const plc::Program& plant() {
  static const plc::Program program = plc::load_text(
      "DATA_BLOCK \"Plant\"\nSTRUCT\n Level : Array[0..3] of Int;\n Name : String[8];\n On : Bool;\n"
      " Wide : WString[4];\n Locked { ExternalWritable := 'False'} : DInt;\n When : DTL;\n"
      " Matrix : Array[1..2, 0..1] of LReal;\n At : Date_And_Time;\n For : S5Time;\nEND_STRUCT;\nBEGIN\n"
      "END_DATA_BLOCK\n",
      "plant.db");
  return program;
}

void use_tree(Input& input, std::int64_t root) {
  for (int uses = 0; uses < 4; ++uses) {
    ask_node(input, root);
    use_access(input, root, false);
  }
  FUZZ_DEMAND(AGL_Symbolic_FreeHandle(root) == 0);
}

void ask_hostile_plc(Input& input) {
  answers = &input;
  const bool protect = input.byte() % 4 == 0;
  honest.emplace(plant(), plc::PlcOptions{protect ? "open" : "", "OST", {}});
  rights = honest->admit();
  connect();
  agl_int32_t connection = -1;
  if (AGL_PLCConnectEx(kDevice, 0, 0, 0, &connection, 0, 0) == 0) {
    FUZZ_DEMAND(connection == kDevice);
    std::array<char, 21> order_number{};
    (void)AGL_ReadMLFBNr(connection, order_number.data(), 0, 0);
    if (protect) (void)AGL_SetPassword(connection, "open", 0, 0);
    HandleType root = 0;
    if (AGL_Symbolic_LoadAGLinkSymbolsFromPLC(connection, &root) == 0) {
      for (int uses = 0; uses < 8 && !input.empty(); ++uses) {
        if (input.byte() % 4 == 0) ask_node(input, root);
        use_access(input, root, true);
      }
      FUZZ_DEMAND(AGL_Symbolic_FreeHandle(root) == 0);
    }
  }
  FUZZ_DEMAND(AGL_CloseDevice(kDevice) == 0);
  honest.reset();
  answers = nullptr;
}

}  // namespace fuzz

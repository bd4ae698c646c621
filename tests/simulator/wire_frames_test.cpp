// SPDX-License-Identifier: MIT
#include "simulator/wire/frames.h"

#include <gtest/gtest.h>

#include <random>

namespace ostravel::wire {
namespace {

constexpr std::size_t kRoom = 10'000;

TEST(Frames, ConnectRequestHasTheBytesOfIsoTransport) {
  EXPECT_EQ(connect_request(0x1234, 13), (Bytes{0x03, 0x00, 0x00, 0x0E,                    // TPKT
                                                0x09, 0xE0, 0x00, 0x00, 0x12, 0x34, 0x00,  // CR
                                                0xC0, 0x01, 0x0D}));                       // 8192 bytes
}

TEST(Frames, ConnectConfirmNamesBothReferences) {
  EXPECT_EQ(connect_confirm(0x1234, 0x0001, 10),
            (Bytes{0x03, 0x00, 0x00, 0x0E, 0x09, 0xD0, 0x12, 0x34, 0x00, 0x01, 0x00, 0xC0, 0x01, 0x0A}));
}

TEST(Frames, ShortMessageIsOneFrameWithTheEndMark) {
  EXPECT_EQ(message_frames(Bytes{0xAA, 0xBB}, 13),
            (Bytes{0x03, 0x00, 0x00, 0x09, 0x02, 0xF0, 0x80, 0xAA, 0xBB}));
}

TEST(Frames, EmptyMessageIsOneEmptyFrame) {
  EXPECT_EQ(message_frames({}, 13), (Bytes{0x03, 0x00, 0x00, 0x07, 0x02, 0xF0, 0x80}));
}

TEST(Frames, LongMessageIsCutIntoUnitsOfTheAgreedSize) {
  const Bytes frames = message_frames(Bytes(126, 0x55), 7);  // 128-byte units carry 125 bytes
  ASSERT_EQ(frames.size(), 126U + 2 * 7);
  EXPECT_EQ(Bytes(frames.begin(), frames.begin() + 7), (Bytes{0x03, 0x00, 0x00, 0x84, 0x02, 0xF0, 0x00}));
  EXPECT_EQ(Bytes(frames.begin() + 132, frames.end()),
            (Bytes{0x03, 0x00, 0x00, 0x08, 0x02, 0xF0, 0x80, 0x55}));
}

TEST(Frames, MessageOfExactlyOneUnitNeedsNoSecondFrame) {
  EXPECT_EQ(message_frames(Bytes(125, 1), 7).size(), 132U);
}

TEST(FrameReader, PutsAMessageTogetherFromSingleBytes) {
  Bytes message(1000);
  for (std::size_t i = 0; i < message.size(); ++i) message[i] = static_cast<std::uint8_t>(i);
  FrameReader reader(kRoom);
  const Bytes frames = message_frames(message, 7);
  for (std::size_t i = 0; i + 1 < frames.size(); ++i) {
    reader.feed({&frames[i], 1});
    ASSERT_FALSE(reader.next());
  }
  reader.feed({&frames.back(), 1});
  const auto event = reader.next();
  ASSERT_TRUE(event);
  EXPECT_EQ(event->kind, TransportEvent::Kind::Message);
  EXPECT_EQ(event->message, message);
  EXPECT_FALSE(reader.next());
}

TEST(FrameReader, DeliversEverythingOfOnePieceInOrder) {
  Bytes all = connect_request(7, 10);
  const Bytes first = message_frames(Bytes{1}, 13);
  const Bytes second = message_frames(Bytes{2}, 13);
  all.insert(all.end(), first.begin(), first.end());
  all.insert(all.end(), second.begin(), second.end());
  FrameReader reader(kRoom);
  reader.feed(all);
  const auto request = reader.next();
  ASSERT_TRUE(request);
  EXPECT_EQ(request->kind, TransportEvent::Kind::ConnectRequest);
  EXPECT_EQ(request->reference, 7);
  EXPECT_EQ(request->unit, 10);
  EXPECT_EQ(reader.next()->message, Bytes{1});
  EXPECT_EQ(reader.next()->message, Bytes{2});
}

TEST(FrameReader, AcceptsForeignParametersOfAConnectRequest) {
  FrameReader reader(kRoom);
  reader.feed(Bytes{0x03, 0x00, 0x00, 0x16, 0x11, 0xE0, 0x00, 0x00, 0x00, 0x05, 0x00,
                    0xC1, 0x02, 0x01, 0x00, 0xC2, 0x02, 0x01, 0x02, 0xC0, 0x01, 0x09});
  EXPECT_EQ(reader.next()->unit, 9);
}

TEST(FrameReader, SeesADisconnect) {
  FrameReader reader(kRoom);
  reader.feed(Bytes{0x03, 0x00, 0x00, 0x0B, 0x06, 0x80, 0x00, 0x01, 0x00, 0x01, 0x00});
  EXPECT_EQ(reader.next()->kind, TransportEvent::Kind::Disconnect);
}

struct Malformed {
  const char* name;
  Bytes bytes;
};
class FrameReaderRefuses : public testing::TestWithParam<Malformed> {};

TEST_P(FrameReaderRefuses, ByException) {
  FrameReader reader(16);
  EXPECT_THROW(reader.feed(GetParam().bytes), BadFrame);
}

INSTANTIATE_TEST_SUITE_P(
    Malformed, FrameReaderRefuses,
    testing::Values(Malformed{"WrongVersion", {0x04, 0x00, 0x00, 0x07, 0x02, 0xF0, 0x80}},
                    Malformed{"LengthZero", {0x03, 0x00, 0x00, 0x00}},
                    Malformed{"NoRoomForAHeader", {0x03, 0x00, 0x00, 0x05, 0x00}},
                    Malformed{"HeaderBeyondFrame", {0x03, 0x00, 0x00, 0x07, 0x09, 0xF0, 0x80}},
                    Malformed{"HeaderEmpty", {0x03, 0x00, 0x00, 0x07, 0x00, 0xF0, 0x80}},
                    Malformed{"UnknownUnit", {0x03, 0x00, 0x00, 0x07, 0x02, 0x70, 0x80}},
                    Malformed{"LongDataHeader", {0x03, 0x00, 0x00, 0x08, 0x03, 0xF0, 0x80, 0x00}},
                    Malformed{"ConnectTooShort", {0x03, 0x00, 0x00, 0x08, 0x03, 0xE0, 0x00, 0x00}},
                    Malformed{"ParameterBeyondUnit",
                              {0x03, 0x00, 0x00, 0x0D, 0x08, 0xE0, 0, 0, 0, 1, 0, 0xC0, 0x05}},
                    Malformed{"MessageTooLong", message_frames(Bytes(17, 0), 13)}),
    [](const auto& one) { return std::string(one.param.name); });

TEST(FrameReader, RefusesAMessageThatGrowsTooLongOverManyFrames) {
  FrameReader reader(16);
  const Bytes part{0x03, 0x00, 0x00, 0x0F, 0x02, 0xF0, 0x00, 1, 2, 3, 4, 5, 6, 7, 8};
  reader.feed(part);
  reader.feed(part);
  EXPECT_THROW(reader.feed(part), BadFrame);
}

TEST(FrameReader, SurvivesDamagedFrames) {
  std::mt19937 random(1);  // the same damage every time
  const Bytes good = message_frames(Bytes(300, 7), 7);
  for (int round = 0; round < 5000; ++round) {
    Bytes bytes = connect_request(1);
    bytes.insert(bytes.end(), good.begin(), good.end());
    for (int i = 0; i < 3; ++i) bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
    FrameReader reader(kRoom);
    std::size_t length = 0;
    try {
      reader.feed(bytes);
      while (const auto event = reader.next()) length += event->message.size();
    } catch (const BadFrame&) {
    }
    ASSERT_LE(length, bytes.size());
  }
}

}  // namespace
}  // namespace ostravel::wire

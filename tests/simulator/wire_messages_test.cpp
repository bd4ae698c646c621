// SPDX-License-Identifier: MIT
#include "simulator/wire/messages.h"

#include <gtest/gtest.h>

#include <random>

namespace ostravel::wire {
namespace {

TEST(Messages, ReadRequestHasTheDocumentedBytes) {
  const Request request{5, 1000, ReadRequest{0x1122334455667788, {{16, 4}}}};
  EXPECT_EQ(encode(request),
            (Bytes{0x94, 0x03, 0x05, 0xCD, 0x03, 0xE8,                          // read, 5, 1000 ms
                   0x92, 0xCF, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88,  // fingerprint
                   0x91, 0x92, 0x10, 0x04}));                                   // one item
}

TEST(Messages, WriteAnswerHasTheDocumentedBytes) {
  const Answer answer{6, JobResult::Ok, WriteAnswer{{ItemResult::Ok, ItemResult::NotPermitted}}};
  EXPECT_EQ(encode(answer), (Bytes{0x94, 0x04, 0x06, 0x00, 0x91, 0x92, 0x00, 0x02}));
}

TEST(Messages, EveryRequestComesBackAsItWas) {
  auto round_trip = [](const Request& request) {
    const auto bytes = encode(request);
    const auto decoded = decode_request(bytes);
    EXPECT_TRUE(decoded);
    EXPECT_EQ(decoded->sequence, request.sequence);
    EXPECT_EQ(decoded->time_limit, request.time_limit);
    EXPECT_EQ(decoded->body.index(), request.body.index());
    EXPECT_EQ(encode(*decoded), bytes);
    return *decoded;
  };
  round_trip({1, 2, HelloRequest{7}});
  EXPECT_EQ(std::get<PasswordRequest>(round_trip({1, 2, PasswordRequest{"geheim"}}).body).password, "geheim");
  round_trip({0xFFFFFFFF, 0xFFFFFFFF, SymbolsRequest{}});
  const auto write = std::get<WriteRequest>(round_trip({1, 2, WriteRequest{3, {{4, {5, 6}}, {7, {}}}}}).body);
  ASSERT_EQ(write.items.size(), 2U);
  EXPECT_EQ(write.items[0].data, (Bytes{5, 6}));
}

TEST(Messages, EveryAnswerComesBackAsItWas) {
  auto round_trip = [](const Answer& answer) {
    const auto bytes = encode(answer);
    const auto decoded = decode_answer(bytes);
    EXPECT_TRUE(decoded);
    EXPECT_EQ(decoded->result, answer.result);
    EXPECT_EQ(encode(*decoded), bytes);
    return *decoded;
  };
  const auto hello =
      std::get<HelloAnswer>(round_trip({1, JobResult::Ok, HelloAnswer{1, "X1", 9, true}}).body);
  EXPECT_EQ(hello.order_number, "X1");
  EXPECT_TRUE(hello.password_needed);
  round_trip({1, JobResult::PasswordWrong, PasswordAnswer{}});
  plc::Symbol flag;
  flag.name = "Flag";
  flag.type = plc::DataType::Bool;
  flag.element_size = 1;
  const auto symbols = std::get<SymbolsAnswer>(round_trip({1, JobResult::Ok, SymbolsAnswer{9, {flag}}}).body);
  EXPECT_EQ(symbols.blocks, std::vector{flag});
  const auto read = std::get<ReadAnswer>(
      round_trip({1, JobResult::Ok, ReadAnswer{77, {{ItemResult::Ok, {1}}, {ItemResult::Faulty, {}}}}}).body);
  EXPECT_EQ(read.cycle, 77U);
  EXPECT_EQ(read.items[1].result, ItemResult::Faulty);
}

TEST(Messages, EveryTruncationIsRefused) {
  const auto bytes = encode(Request{1, 2, WriteRequest{3, {{4, {5, 6}}, {7, {8}}}}});
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_FALSE(decode_request(std::span(bytes).first(length))) << length;
  }
}

TEST(Messages, TrailingBytesAreRefused) {
  auto bytes = encode(Request{1, 2, HelloRequest{}});
  bytes.push_back(0xC0);
  EXPECT_FALSE(decode_request(bytes));
}

TEST(Messages, UnknownKindIsRefused) {
  EXPECT_FALSE(decode_request(Bytes{0x94, 0x05, 0x01, 0x01, 0x90}));
  EXPECT_FALSE(decode_answer(Bytes{0x94, 0x05, 0x01, 0x00, 0x90}));
}

TEST(Messages, WrongNumberOfFieldsIsRefused) {
  EXPECT_TRUE(decode_request(Bytes{0x94, 0x02, 0x01, 0x01, 0x90}));
  EXPECT_FALSE(decode_request(Bytes{0x94, 0x02, 0x01, 0x01, 0x91, 0x00}));
  EXPECT_FALSE(decode_request(Bytes{0x93, 0x02, 0x01, 0x01}));
}

TEST(Messages, UnknownJobResultIsRefused) {
  EXPECT_TRUE(decode_answer(Bytes{0x94, 0x01, 0x01, 0x04, 0x90}));
  EXPECT_FALSE(decode_answer(Bytes{0x94, 0x01, 0x01, 0x05, 0x90}));
}

TEST(Messages, AClaimOfFourBillionItemsIsRefusedWithoutReservingThem) {
  EXPECT_FALSE(decode_request(Bytes{0x94, 0x03, 0x01, 0x01, 0x92, 0x00, 0xDD, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(Messages, TooManyItemsAreRefused) {
  Request request{1, 1, ReadRequest{1, std::vector<ReadItem>(kMaxItems)}};
  EXPECT_TRUE(decode_request(encode(request)));
  std::get<ReadRequest>(request.body).items.emplace_back();
  EXPECT_FALSE(decode_request(encode(request)));
}

TEST(Messages, UnsoundTreeIsRefused) {
  plc::Symbol symbol;
  symbol.name = "Flag";
  symbol.type = plc::DataType::LReal;
  symbol.element_size = 1;
  EXPECT_FALSE(decode_answer(encode(Answer{1, JobResult::Ok, SymbolsAnswer{9, {symbol}}})));
}

TEST(Messages, DamagedMessagesNeverDoHarm) {
  std::mt19937 random(2);  // the same damage every time
  const auto good = encode(Request{1, 2, WriteRequest{3, {{4, Bytes(20, 9)}, {7, {8}}}}});
  std::size_t refused = 0;
  for (int round = 0; round < 20'000; ++round) {
    auto bytes = good;
    for (int i = 0; i < 2; ++i) bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
    if (!decode_request(bytes)) ++refused;
    if (!decode_answer(bytes)) ++refused;
  }
  EXPECT_GT(refused, 10'000U);
}

}  // namespace
}  // namespace ostravel::wire

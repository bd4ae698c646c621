// SPDX-License-Identifier: MIT
// The judge itself, on words written by hand from the record's bytes. The PLC's programs are the plant's own.
#include "tests/plant/comparer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/format.h>

#include <filesystem>

#include "host/tagscsv.h"
#include "simulator/program/source.h"
#include "simulator/program/tags.h"
#include "tests/host/scratch.h"
#include "tests/plant/programtext.h"
#include "tests/plant/values.h"

namespace ostravel::plant {
namespace {

using testing::HasSubstr;

class ComparerTest : public testing::Test {
 protected:
  ComparerTest() {
    for (unsigned i = 0; i < 6; ++i) {
      sources.push_back(scratch.write(fmt::format("{}.db", i), program_text(i)));
      plcs.push_back(
          std::make_unique<plc::Plc>(plc::load_program(std::vector<std::filesystem::path>{sources.back()})));
    }
    project = host::project_from_csv(
        plc::export_tags(plc::load_program(std::vector<std::filesystem::path>{sources[0]})).csv, "");
    comparer = std::make_unique<Comparer>(record, shown_of(project), sources);
  }

  // So many moments with a program.
  void pass(int moments, std::size_t program = 0) {
    auto& plc = *plcs[program];
    const Values values(plc.program());
    for (int i = 0; i < moments; ++i) {
      values.put(record.moment() + 1, plc.memory());
      record.keep(plc.program().fingerprint, plc.memory());
    }
  }

  std::size_t position(const std::string& text) const {
    for (std::size_t i = 0; i < comparer->shown().size(); ++i) {
      if (comparer->shown()[i].selection.text == text) return i;
    }
    throw std::runtime_error(text + " is not shown");
  }

  std::vector<std::uint8_t> bytes(const std::string& path, std::uint64_t moment,
                                  std::size_t program = 0) const {
    const auto target = plc::resolve(plcs[program]->program().blocks, path).value();
    const auto held = plc::bytes_of(target, record.image(moment).memory);
    return {held.begin(), held.end()};
  }

  // A number as the runtime gets it: the low word first.
  host::Words number(const std::string& path, std::uint64_t moment, std::size_t words,
                     std::size_t program = 0) const {
    const auto value = plc::load_number(bytes(path, moment, program));
    host::Words result;
    for (std::size_t i = 0; i < words; ++i) result.push_back(static_cast<std::uint16_t>(value >> (16 * i)));
    return result;
  }

  Verdict judge(const std::string& text, const host::Words& words, std::uint64_t first,
                std::uint64_t last) const {
    return comparer->judge(position(text), words, first, last);
  }

  Scratch scratch;
  std::vector<std::string> sources;
  std::vector<std::unique_ptr<plc::Plc>> plcs;
  Record record{scratch.path("record")};
  host::Project project;
  std::unique_ptr<Comparer> comparer;
};

TEST_F(ComparerTest, TakesWhatThePlcHeldWithinTheTimeOfTheRequest) {
  pass(10);
  for (const auto moment : {4U, 5U, 6U}) {
    EXPECT_EQ(judge("Line3.Medium", number("Line3.Medium", moment, 2), 4, 6), Verdict::Right) << moment;
  }
}

TEST_F(ComparerTest, FindsAStaleValueAndOneThatIsStillToCome) {
  pass(10);
  EXPECT_EQ(judge("Line3.Medium", number("Line3.Medium", 3, 2), 4, 6), Verdict::Wrong);
  EXPECT_EQ(judge("Line3.Medium", number("Line3.Medium", 7, 2), 4, 6), Verdict::Wrong);
  EXPECT_THAT(comparer->explain(position("Line3.Medium"), number("Line3.Medium", 3, 2), 4, 6),
              HasSubstr("it held them at 3"));
}

TEST_F(ComparerTest, FindsAnotherTagsValue) {
  pass(3);
  EXPECT_EQ(judge("Line3.Medium", number("Line4.Medium", 2, 2), 1, 3), Verdict::Wrong);
  EXPECT_THAT(comparer->explain(position("Line3.Medium"), number("Line4.Medium", 2, 2), 1, 3),
              HasSubstr("those of Line4.Medium"));
  EXPECT_EQ(judge("Line3.Small", number("Line3.SmallCount", 2, 1), 2, 2), Verdict::Wrong);
}

TEST_F(ComparerTest, FindsEveryWrongBitOfANumber) {
  pass(1);
  const auto right = number("Line0.Widest", 1, 4);
  ASSERT_EQ(judge("Line0.Widest", right, 1, 1), Verdict::Right);
  for (unsigned bit = 0; bit < 64; ++bit) {
    auto words = right;
    words[bit / 16] = static_cast<std::uint16_t>(words[bit / 16] ^ (1U << bit % 16));
    EXPECT_EQ(judge("Line0.Widest", words, 1, 1), Verdict::Wrong) << bit;
  }
}

TEST_F(ComparerTest, FindsZerosAndNoWordsAtAll) {
  pass(1);
  EXPECT_EQ(judge("Line1.Exact", {0, 0, 0, 0}, 1, 1), Verdict::Wrong);
  EXPECT_EQ(judge("Line1.Exact", {}, 1, 1), Verdict::Wrong);
  EXPECT_EQ(judge("Line1.Name", {}, 1, 1), Verdict::Wrong);
}

TEST_F(ComparerTest, FindsAForeignBoolInTheCourseOfTime) {
  pass(64);
  int wrong = 0;
  for (std::uint64_t moment = 1; moment <= 64; ++moment) {
    EXPECT_EQ(judge("Line0.Flag", number("Line0.Flag", moment, 1), moment, moment), Verdict::Right);
    wrong += judge("Line0.Flag", number("Line1.Flag", moment, 1), moment, moment) == Verdict::Wrong ? 1 : 0;
  }
  EXPECT_GT(wrong, 16);
}

TEST_F(ComparerTest, FindsAWrongBit) {
  pass(1);
  const auto mask = plc::load_number(bytes("Line2.Mask", 1));
  const auto bit = static_cast<std::uint16_t>((mask >> 3U) & 1U ? 0xFFFF : 0);
  EXPECT_EQ(judge("Line2.Mask.%X3", {bit}, 1, 1), Verdict::Right);
  EXPECT_EQ(judge("Line2.Mask.%X3", {static_cast<std::uint16_t>(~bit)}, 1, 1), Verdict::Wrong);
}

TEST_F(ComparerTest, FindsAWrongCharacterOfAText) {
  pass(1);
  const auto held = bytes("Line5.Name", 1);
  host::Words words(20);
  for (std::size_t i = 0; i < held[1]; ++i) words[i] = held[2 + i];
  EXPECT_EQ(judge("Line5.Name", words, 1, 1), Verdict::Right);
  words[held[1] - 1U] ^= 1U;
  EXPECT_EQ(judge("Line5.Name", words, 1, 1), Verdict::Wrong);
}

TEST_F(ComparerTest, FindsOneWrongElementOfAnArray) {
  pass(1);
  const auto held = bytes("Line6.Levels", 1);
  host::Words words;
  for (std::size_t i = 0; i < held.size(); i += 2)
    words.push_back(static_cast<std::uint16_t>(held[i] << 8U | held[i + 1]));
  EXPECT_EQ(judge("Line6.Levels", words, 1, 1), Verdict::Right);
  std::swap(words[8], words[9]);
  EXPECT_EQ(judge("Line6.Levels", words, 1, 1), Verdict::Wrong);
}

TEST_F(ComparerTest, FindsAValueOfAVariableThatTheProgramDoesNotHave) {
  pass(1);
  std::size_t gone = 0;
  for (std::size_t program = 1; program < plcs.size(); ++program) {
    pass(1, program);
    const auto now = record.moment();
    for (unsigned line = 0; line < 11; ++line) {
      const auto path = fmt::format("Line{}.Medium", line);
      if (plc::resolve(plcs[program]->program().blocks, path)) continue;
      ++gone;
      EXPECT_EQ(judge(path, number(path, 1, 2), now, now), Verdict::Wrong);
    }
  }
  EXPECT_GT(gone, 0U);
}

TEST_F(ComparerTest, TakesTheBitsOfAVariableOfAnotherTypeAndNoOtherWords) {
  std::size_t retyped = 0;
  for (std::size_t program = 1; program < plcs.size(); ++program) {
    pass(1, program);
    const auto now = record.moment();
    for (unsigned line = 0; line < 11; ++line) {
      const auto path = fmt::format("Line{}.Medium", line);
      const auto target = plc::resolve(plcs[program]->program().blocks, path);
      if (!target || target->symbol->type != plc::DataType::Real) continue;
      ++retyped;
      auto words = number(path, now, 2, program);
      EXPECT_EQ(judge(path, words, now, now), Verdict::RightBits);
      words[1] ^= 1U;
      EXPECT_EQ(judge(path, words, now, now), Verdict::Wrong);
    }
  }
  EXPECT_GT(retyped, 0U);
}

TEST_F(ComparerTest, DoesNotJudgeFromARecordThatIsGone) {
  pass(static_cast<int>(kMoments) + 5);
  EXPECT_THROW(judge("Line3.Medium", {0, 0}, 1, 1), RecordTooShort);
  EXPECT_THROW(judge("Line3.Medium", {0, 0}, record.moment() + 1, record.moment() + 1), RecordTooShort);
}

}  // namespace
}  // namespace ostravel::plant

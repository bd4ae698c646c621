// SPDX-License-Identifier: MIT
// The program try-sources, with the real PLC, driver and host, and with a host that lies.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/process.h"

namespace {

using ostravel::host::Process;
using testing::HasSubstr;
using testing::Not;

class TrySources : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "ostravel-try-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    std::filesystem::create_directories(folder / "sources");
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  void write(const std::string& name, std::string_view text) const {
    std::ofstream(folder / "sources" / name) << text;
  }
  // Output of a run, then the exit code in a line of its own.
  std::string run(const std::string& sources, std::vector<std::string> more = {},
                  std::string programs = PROGRAMS) {
    std::vector<std::string> arguments{"env",        std::string("LD_LIBRARY_PATH=") + STANDIN_FOLDER,
                                       TRY_SOURCES,  sources,
                                       "--programs", programs,
                                       "--work",     (folder / "work").string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    Process process(PRIVATE_PROJECT, arguments);
    process.close_input();
    const auto output = process.read_all();
    return output + "code " + std::to_string(process.wait()) + "\n";
  }
  std::string run_own(const std::vector<std::string>& more = {}) {
    return run((folder / "sources").string(), more);
  }

  std::filesystem::path folder;
};

TEST_F(TrySources, SamplesAreReadAsThePlcHoldsThem) {
  const auto output = run(SAMPLES);
  EXPECT_THAT(output,
              HasSubstr("ok         plant.db with motor.udt: 34 variables, 34 read as the PLC holds them\n"));
  EXPECT_THAT(output, HasSubstr("ok         values.db: 28 variables, 28 read"));
  EXPECT_THAT(output, HasSubstr("ok         limits.db: 2 variables, 0 read"));
  EXPECT_THAT(output,
              HasSubstr("5 files: 5 loaded, 0 refused; 84 variables, 82 read as the PLC holds them; 0 files "
                        "with differences\ncode 0\n"));
}

// Each of them was exported as a tag that reads wrong or not at all, or is near one that is.
TEST_F(TrySources, UnusualArraysAndTextsAreReadToo) {
  write("unusual.db", R"(
DATA_BLOCK "D"
VAR
  WideShort : WString[10]; Wide : WString[254]; WideLong : WString[1024]; WideOne : WString[1];
  WideFew : Array[0..2] of WString[10]; WidePaired : Array[0..2] of WString[254];
  Texts2D : Array[1..2, 1..3] of String[8]; Wide2D : Array[0..1, 0..2] of WString[8];
  DtlFrom0 : Array[0..1] of DTL; DtlFrom3 : Array[3..4] of DTL; Dtl2D : Array[1..2, 1..2] of DTL;
  DtFrom0 : Array[0..1] of Date_And_Time; DtFrom3 : Array[3..4] of Date_And_Time;
  Dt2D : Array[1..2, 1..2] of Date_And_Time;
  Large2D : Array[0..99, 0..99] of Int; Large3D : Array[1..20, 1..10, 1..20] of LReal;
  Bits2D : Array[0..99, 0..99] of Bool; BitsFrom1 : Array[1..5000] of Bool; Below2D : Array[-2..2, -3..3] of Int;
  Far : Array[60000..60010] of Int; FarBytes : Array[60000..60010] of Byte; FarReals : Array[65000..65010] of LReal;
  Long : Array[0..65540] of Byte; Letters2D : Array[0..1, 0..1] of Char; Dates : Array[2..3] of Date;
  Short5 : Array[0..2] of S5Time; Times5 : Array[0..1, 3..4] of S5Time; Clocks : Array[5..6] of LTOD;
  Parts : Array[1..2] of Struct
    s : String[5]; w : WString[6]; d : DTL; n : Array[0..1] of String[3];
  END_STRUCT;
  "a[1]" : Array[0..1] of String[3]; "a]" : Int; "b.c" : Array[0..1] of Int; "x,y" : Array[0..0] of Bool;
END_VAR
BEGIN
END_DATA_BLOCK
)");
  const auto output = run_own();
  EXPECT_THAT(output, HasSubstr("ok         unusual.db: 40 variables, 40 read as the PLC holds them\n"));
  EXPECT_THAT(output, Not(HasSubstr("left out")));
  EXPECT_THAT(output, HasSubstr("code 0"));
}

TEST_F(TrySources, RefusedFileIsNamedWithTheReasonAndIsNoFailure) {
  write("bad.db", "DATA_BLOCK \"B\" \"Nowhere\" BEGIN END_DATA_BLOCK");
  const auto output = run_own();
  EXPECT_THAT(output, HasSubstr("refused    bad.db\n           "));
  EXPECT_THAT(output, HasSubstr("bad.db:1:16: the type or function block \"Nowhere\" is not declared"));
  EXPECT_THAT(output, HasSubstr("1 files: 0 loaded, 1 refused;"));
  EXPECT_THAT(output, HasSubstr("code 0"));
}

TEST_F(TrySources, TypesAreTriedByAnInstance) {
  write("t.udt", "TYPE \"T\" VERSION : 0.1 STRUCT x : Int := 3; END_STRUCT; END_TYPE");
  EXPECT_THAT(run_own(), HasSubstr("ok         t.udt: 1 variables, 1 read"));
}

TEST_F(TrySources, InaccessibleVariablesAreLeftOutUnlessTheyAreAskedFor) {
  write("b.db",
        "DATA_BLOCK \"B\" VAR x { ExternalAccessible := 'False' } : Int := 3; END_VAR BEGIN END_DATA_BLOCK");
  EXPECT_THAT(run_own(),
              HasSubstr("1 variables, 0 read as the PLC holds them\n           1 left out: it is not "
                        "accessible from outside"));
  EXPECT_THAT(run_own({"--accessible"}), HasSubstr("1 variables, 1 read as the PLC holds them"));
}

TEST_F(TrySources, ConstantsAreHandedOn) {
  write("b.db", "DATA_BLOCK \"B\" VAR x : Array[1..\"LAST\"] of Int; END_VAR BEGIN END_DATA_BLOCK");
  EXPECT_THAT(run_own(), HasSubstr("refused    b.db"));
  EXPECT_THAT(run_own({"--constant", "LAST=3"}), HasSubstr("ok         b.db: 1 variables, 1 read"));
}

// A host in place of the real one that passes its lines through a command.
class LyingHost : public TrySources {
 protected:
  std::string run_with(const std::string& filter) {
    const auto programs = folder / "programs";
    std::filesystem::remove_all(programs);
    std::filesystem::create_directories(programs);
    for (const auto* name : {"ostravel-plc", "ostravel-tags"}) {
      std::filesystem::create_symlink(std::filesystem::path(PROGRAMS) / name, programs / name);
    }
    const auto host = programs / "ostravel-host";
    std::ofstream(host) << "#!/bin/bash\n" << PROGRAMS << "/ostravel-host \"$@\" | " << filter << "\n";
    std::filesystem::permissions(host, std::filesystem::perms::owner_all);
    write("b.db",
          "DATA_BLOCK \"B\" VAR x : Int := 77; y : Array[0..2] of Int := [1, 2, 3]; END_VAR BEGIN "
          "END_DATA_BLOCK");
    return run((folder / "sources").string(), {}, programs.string());
  }
};

TEST_F(LyingHost, TruthPasses) {
  EXPECT_THAT(run_with("cat"), HasSubstr("code 0"));
}

TEST_F(LyingHost, AnotherValueIsADifference) {
  const auto output = run_with("sed 's/:77,/:78,/'");
  EXPECT_THAT(output, HasSubstr("DIFFERENT  b.db: 2 variables, 2 read"));
  EXPECT_THAT(output, HasSubstr("B.x (start value): the PLC holds [77], the driver delivers 78 (ok)"));
  EXPECT_THAT(output, HasSubstr("1 files with differences\ncode 1\n"));
}

TEST_F(LyingHost, ElementsInAnotherOrderAreADifference) {
  EXPECT_THAT(run_with("sed 's/\\[1,2,3\\]/[1,3,2]/'"),
              HasSubstr("B.y (start value): the PLC holds [1,2,3], the "
                        "driver delivers [1,3,2] (ok)"));
}

TEST_F(LyingHost, TagThatIsMissingEndsTheTrial) {
  EXPECT_THAT(run_with("head -n 1"), HasSubstr("code 2"));
}

TEST_F(TrySources, MissingFolderIsOneLineAndCodeTwo) {
  EXPECT_THAT(run((folder / "none").string()), HasSubstr("code 2"));
}

}  // namespace

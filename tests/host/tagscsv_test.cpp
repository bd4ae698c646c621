// SPDX-License-Identifier: MIT
#include "host/tagscsv.h"

#include <gtest/gtest.h>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

std::string failure(std::string_view text) {
  try {
    project_from_csv(text, "t.csv");
  } catch (const UserError& error) {
    return error.what();
  }
  return "none";
}

TEST(TagsCsv, ColumnsMayComeInAnyOrderAndCase) {
  const auto project = project_from_csv("ID,Device,count,TYPE,name\n9,2,4,dint,A.B\n", "t");
  ASSERT_EQ(project.tags.size(), 1U);
  const auto& tag = project.tags[0];
  EXPECT_EQ(tag.name, "A.B");
  EXPECT_EQ(tag.type->name, "DINT");
  EXPECT_EQ(tag.count, 4);
  EXPECT_EQ(tag.device, 2);
  EXPECT_EQ(tag.id, 9U);
  EXPECT_EQ(tag.first, std::nullopt);
  EXPECT_EQ(tag.elements, 1);
}

TEST(TagsCsv, SettingsStandInCommentsBeforeTheHeader) {
  const auto project = project_from_csv(
      "# password:  let me in \n#strings: char-paired\n# anything\nname,type,count,device,id\n", "t");
  EXPECT_EQ(project.password, "let me in");
  EXPECT_TRUE(project.char_paired);
}

TEST(TagsCsv, WhatIsPrintedReadsBackAsTheSame) {
  const std::string text =
      "# password: p\n# strings: char-paired\nname,type,count,first,elements,device,id\n"
      "\"M[1,2]\",REAL,1,,1,1,1\n\"\"\"a.b\"\".c\",STRING,20,0,5,1,2\nLow,INT,7,-3,1,255,4294967295\n";
  EXPECT_EQ(project_to_csv(project_from_csv(text, "t")), text);
}

TEST(TagsCsv, ErrorsNameFileLineAndColumn) {
  const std::string header = "name,type,count,first,elements,device,id\n";
  EXPECT_EQ(failure(header + "A,FLOAT,1,,1,1,1\n").substr(0, 43),
            "t.csv:2:3: type 'FLOAT' is not known; use o");
  EXPECT_EQ(failure(header + "A,INT,x,,1,1,1\n"), "t.csv:2:7: count 'x' is no whole number from 1 to 65535");
  EXPECT_EQ(failure(header + "A,INT,1,,1,256,1\n"),
            "t.csv:2:12: device '256' is no whole number from 0 to 255");
  EXPECT_EQ(failure(header + "A,INT,1,65535,1,1,1\n"),
            "t.csv:2:9: first '65535' is no whole number from -32768 to 65534");
  EXPECT_EQ(failure(header + "A,INT,1,,1,1,-1\n"),
            "t.csv:2:14: id '-1' is no whole number from 0 to 4294967295");
  EXPECT_EQ(failure(header + ",INT,1,,1,1,1\n"), "t.csv:2:1: the name must have 1 to 65535 bytes");
  EXPECT_EQ(failure(header + "A,INT,1\n"),
            "t.csv:2:7: 3 fields, and the header line has 7; put names with commas in quotes");
}

TEST(TagsCsv, HeaderIsChecked) {
  EXPECT_EQ(failure(""),
            "t.csv: has no header line; begin it with: name,type,count,first,elements,device,id");
  EXPECT_EQ(failure("name,type,count,device\n"),
            "t.csv:1:1: column 'id' is missing from the header line; add it");
  EXPECT_EQ(failure("name,name\n"), "t.csv:1:6: column 'name' stands there twice; remove one");
  EXPECT_EQ(failure("name,address\n"),
            "t.csv:1:6: column 'address' is not known; use name, type, count, first, elements, device, id");
}

TEST(TagsCsv, NameWithANulIsRefusedWithItsPlace) {
  const std::string list = std::string("name,type,count,device,id\na") + '\0' + "b,INT,1,1,1\n";
  EXPECT_EQ(failure(list), "t.csv:2:1: the name holds a NUL, which would end it for the driver; remove it");
}

TEST(TagsCsv, Utf16IsNamed) {
  EXPECT_EQ(failure("\xFF\xFEn"), "t.csv:1:1: is UTF-16; save the list as UTF-8");
  EXPECT_EQ(failure("\xFE\xFFn"), "t.csv:1:1: is UTF-16; save the list as UTF-8");
}

}  // namespace
}  // namespace ostravel::host

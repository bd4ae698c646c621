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
            "t.csv:2:7: 3 fields, and the header line has 7; put names with a separator in them in "
            "quotes");
}

TEST(TagsCsv, HeaderIsChecked) {
  EXPECT_EQ(failure(""),
            "t.csv:1:1: has no header line; begin it with: name,type,count,first,elements,device,id");
  EXPECT_EQ(failure("name,type,count,device\n"),
            "t.csv:1:1: column 'id' is missing from the header line; add it");
  EXPECT_EQ(failure("name,name\n"), "t.csv:1:6: column 'name' stands there twice; remove one");
  EXPECT_EQ(failure("name,address\n"), "t.csv:1:1: column 'type' is missing from the header line; add it");
}

TEST(TagsCsv, NameWithANulIsRefusedWithItsPlace) {
  const std::string list = std::string("name,type,count,device,id\na") + '\0' + "b,INT,1,1,1\n";
  EXPECT_EQ(failure(list), "t.csv:2:1: the name holds a NUL, which would end it for the driver; remove it");
}

TEST(TagsCsv, FaultOfATagStandsAtTheFieldToBeChanged) {
  const std::string header = "name,type,count,first,elements,device,id\n";
  EXPECT_EQ(failure(header + "A,INT,1,,2,1,1\n"),
            "t.csv:2:10: elements belongs to arrays of texts; leave it 1, or give first");
  EXPECT_EQ(failure(header + "A,BOOL,2,,1,1,1\n"),
            "t.csv:2:3: an array of Bool has the type BitArray; change the type");
}

TEST(TagsCsv, PasswordSurvivesWhateverItIs) {
  for (const std::string password :
       {"", " a ", "a\nb\rc", "\"", "a,,,,,,", "a;;;;;;", "#", "\t", "strings: x"}) {
    Project project;
    project.password = password;
    EXPECT_EQ(project_from_csv(project_to_csv(project), "t").password, password);
  }
}

TEST(TagsCsv, SettingsArePutBeforeTheHeaderAsItsLineEnds) {
  Project project;
  project.password = "new";
  project.char_paired = true;
  const ListText list{"\xEF\xBB\xBF# password: old\r\n\r\nid;name;type;count;device\r\n", std::nullopt};
  const auto changed = with_settings(list, project);
  EXPECT_EQ(changed.text,
            "\xEF\xBB\xBF# password: old\r\n\r\n# password: new\r\n# strings: char-paired\r\n"
            "id;name;type;count;device\r\n");
  EXPECT_EQ(project_from_csv(changed.text, "t"), project);
  EXPECT_EQ(with_settings(changed, project), changed);
}

TEST(TagsCsv, ListIsKeptInTheProjectUnlessItIsInTheNormalForm) {
  const std::string normal = "name,type,count,first,elements,device,id\nA,INT,1,,1,1,1\n";
  const auto project = project_from_csv(normal, "t");
  EXPECT_EQ(encode_with_list(project, {normal, std::nullopt}), encode_project(project));

  const ListText own{"Name\tTYPE\tcount\tdevice\tid\tnote\r\"A\"\tint\t01\t1\t1\tx\r", '\t'};
  const auto file = decode_project(encode_with_list(project, own), "p");
  EXPECT_EQ(file.project, project);
  EXPECT_EQ(list_of(file).list, own);
  EXPECT_FALSE(list_of(file).outdated);
}

TEST(TagsCsv, ListThatNoLongerSaysWhatTheProjectDoesGivesWayToTheNormalForm) {
  const std::string normal = "name,type,count,first,elements,device,id\nA,INT,1,,1,1,1\n";
  const auto project = project_from_csv(normal, "t");
  for (const auto* other : {"name,type,count,device,id\nB,INT,1,1,1\n", "no list", ""}) {
    const auto own = list_of(decode_project(encode_project(project, ListText{other, std::nullopt}), "p"));
    EXPECT_EQ(own.list.text, normal);
    EXPECT_TRUE(own.outdated);
  }
  EXPECT_FALSE(list_of(decode_project(encode_project(project), "p")).outdated);
}

}  // namespace
}  // namespace ostravel::host

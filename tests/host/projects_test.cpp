// SPDX-License-Identifier: MIT
// Tags of several devices by name.
#include "host/config/projects.h"

#include <gtest/gtest.h>

#include "host/project.h"
#include "host/tagscsv.h"
#include "host/usererror.h"
#include "tests/host/scratch.h"

namespace ostravel::host {
namespace {

struct Plant : Scratch {
  DeviceConfig device(const std::string& name, const std::string& tags) const {
    DeviceConfig config;
    config.name = name;
    config.project =
        write(name + ".project",
              encode_project(project_from_csv("name,type,count,first,elements,device,id\n" + tags, "t")));
    return config;
  }
  Projects projects{{device("press", "Speed,INT,1,,1,1,1\nForce,REAL,1,,1,1,2\n"),
                     device("saw", "Speed,INT,1,,1,1,1\nTeeth,INT,3,0,1,1,2\n")}};

  std::string found(const std::string& text) const {
    try {
      const auto tag = projects.find(text);
      return tag.label + " " + std::to_string(tag.device) + " " + tag.selection.text;
    } catch (const UserError& error) {
      return error.what();
    }
  }
};

TEST(Projects, DeviceAndTagAreParted) {
  const Plant plant;
  EXPECT_EQ(plant.found("press/Speed"), "press/Speed 0 Speed");
  EXPECT_EQ(plant.found("saw/Teeth[2]"), "saw/Teeth[2] 1 Teeth[2]");
}

TEST(Projects, TagAloneIsEnoughWhenOneDeviceHasIt) {
  const Plant plant;
  EXPECT_EQ(plant.found("Force"), "press/Force 0 Force");
  EXPECT_EQ(plant.found("Teeth[1].%X2"), "saw/Teeth[1].%X2 1 Teeth[1].%X2");
}

TEST(Projects, TagOfSeveralDevicesMustNameOne) {
  EXPECT_EQ(Plant().found("Speed"),
            "Speed: devices press and saw both have it; write press/Speed or saw/Speed");
}

TEST(Projects, UnknownTagIsNamedWithWhereToLook) {
  const Plant plant;
  EXPECT_EQ(plant.found("None"),
            "None: no device has a tag of that name; see: ostravel-host browse --no-values");
  EXPECT_EQ(plant.found("saw/Force"), "Force: the project has no tag of that name; see: ostravel-tags dump " +
                                          plant.path("saw.project"));
  EXPECT_EQ(plant.found("Teeth[3]"), "Teeth[3]: the index must be 0 to 2");
}

TEST(Projects, WithoutNamesAllTagsInTheirOrder) {
  const Plant plant;
  std::vector<std::string> labels;
  for (const auto& tag : plant.projects.tags({})) {
    labels.push_back(tag.label);
  }
  EXPECT_EQ(labels, (std::vector<std::string>{"press/Speed", "press/Force", "saw/Speed", "saw/Teeth"}));
}

TEST(Projects, OneDeviceNeedsNoNameInItsLabels) {
  const Plant plant;
  const Projects one({plant.projects.device(0)});
  EXPECT_EQ(one.find("Speed").label, "Speed");
  EXPECT_EQ(one.find("press/Speed").label, "Speed");
}

}  // namespace
}  // namespace ostravel::host

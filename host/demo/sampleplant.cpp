// SPDX-License-Identifier: MIT
#include "host/demo/sampleplant.h"

#include <algorithm>
#include <array>

#include "host/tagscsv.h"

namespace ostravel::host {
namespace {

constexpr std::array kWrites{
    SampleWrite{"Values.Flag", "false"},
    SampleWrite{"Values.Octet", "90"},
    SampleWrite{"Values.Mask", "4660"},
    SampleWrite{"Values.Wide", "305419896"},
    SampleWrite{"Values.Widest", "18364758544493064720"},
    SampleWrite{"Values.Tiny", "-128"},
    SampleWrite{"Values.Small", "-32768"},
    SampleWrite{"Values.Medium", "2147483647"},
    SampleWrite{"Values.Large", "-9223372036854775808"},
    SampleWrite{"Values.TinyCount", "200"},
    SampleWrite{"Values.SmallCount", "65535"},
    SampleWrite{"Values.MediumCount", "4294967295"},
    SampleWrite{"Values.LargeCount", "18446744073709551615"},
    SampleWrite{"Values.Ratio", "-0.125"},
    SampleWrite{"Values.Exact", "1.4142135623730951"},
    SampleWrite{"Values.Letter", "90"},
    SampleWrite{"Values.Name", R"("Pumpe 7")"},
    SampleWrite{"Values.Umlaut", R"("größer")"},
    // Every character of a wide text must have two bytes that are not zero: the driver drops zero bytes.
    SampleWrite{"Values.Note", R"("圧力は高い")"},
    SampleWrite{"Values.Span", "-90061001"},
    SampleWrite{"Values.LongSpan", "3723000000004"},
    SampleWrite{"Values.OldSpan", "5500"},
    SampleWrite{"Values.Day", "12000"},
    SampleWrite{"Values.Clock", "86399999"},
    SampleWrite{"Values.LongClock", "43200000000001"},
    SampleWrite{"Values.LongStamp", "1709730855123456789"},
    // Parts in words: 2031-12-24 18:30:59, Wednesday, 250 ms.
    SampleWrite{"Values.OldStamp", "[2031,6156,4612,15134,250]"},
    // Parts in words: 2031-12-24 18:30:59, Wednesday, 987654321 ns.
    SampleWrite{"Values.Stamp", "[2031,6156,4612,15134,26801,15070]"},
    SampleWrite{"Arrays.Bits", "[true,true,false,false,true,false,true,false,true,false,true,true]"},
    SampleWrite{"Arrays.Octets", "[255,0,127,128,1,2,3,4]"},
    SampleWrite{"Arrays.Levels", "[-1,2,-3,4,-5,6,-7,8,-9,10]"},
    SampleWrite{"Arrays.FromOne", "[1,-2,3,-4,5,-6]"},
    SampleWrite{"Arrays.Ratios", "[0.5,1.5,2.5,3.5,4.5,5.5,6.5,7.5]"},
    SampleWrite{"Arrays.Masks", "[61680,3855,255,65280]"},
    SampleWrite{"Arrays.Counts", "[500,400,300,200,100]"},
    SampleWrite{"Arrays.Exact", "[0.1,-1e+300]"},
    SampleWrite{"Arrays.Signed", "[5,-4,3,-2,1]"},
    SampleWrite{"Arrays.Matrix", "[1,2,3,4,5,6]"},
    SampleWrite{"Arrays.Matrix[2,1]", "-555"},
    SampleWrite{"Arrays.Cube", "[8.0,7.0,6.0,5.0,4.0,3.0,2.0,1.0]"},
    SampleWrite{"Arrays.Cube[-1,2,1]", "0.0625"},
    SampleWrite{"Arrays.Names", R"(["rot","grün","","blau"])"},
    SampleWrite{"Arrays.Flags", "[true,false,true]"},
    SampleWrite{"Arrays.Long", "[18446744073709551615,0,1]"},
    SampleWrite{"Arrays.Times", "[-1,1]"},
    SampleWrite{"Plant.Motors[1].Running", "true"},
    SampleWrite{"Plant.Motors[2].Label", R"("stirrer")"},
    SampleWrite{"Plant.Motors[2].Hours[3]", "4000000001"},
    SampleWrite{"Plant.\"Tank.1 (north)\".Level", "12.5"},
    SampleWrite{"Plant.\"Tank.1 (north)\".\"1_valve\"", "true"},
    SampleWrite{"Limits.BelowZero[-3]", "-333"},
    SampleWrite{"Limits.NamesFromOne", R"(["Erde","Mars"])"},
};

}  // namespace

Project sample_project(const std::string& exported, const std::string& more, const std::string& more_source) {
  auto project = project_from_csv(exported, "exported tags");
  for (auto& tag : project_from_csv(more, more_source).tags) {
    const auto same = std::find_if(project.tags.begin(), project.tags.end(),
                                   [&tag](const Tag& other) { return other.name == tag.name; });
    if (same == project.tags.end()) {
      project.tags.push_back(std::move(tag));
    } else {
      *same = std::move(tag);
    }
  }
  std::uint32_t id = 0;
  for (auto& tag : project.tags) {
    tag.id = ++id;
  }
  return project;
}

bool is_known_limit(std::string_view tag) {
  return tag.starts_with("Limits.");
}

bool is_nothing(const nlohmann::json& value) {
  if (value.is_array()) {
    return std::all_of(value.begin(), value.end(), is_nothing);
  }
  return value.is_string() ? value.get_ref<const std::string&>().empty() : value == 0 || value == false;
}

std::span<const SampleWrite> sample_writes() {
  return kWrites;
}

}  // namespace ostravel::host

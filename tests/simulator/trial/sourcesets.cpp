// SPDX-License-Identifier: MIT
#include "tests/simulator/trial/sourcesets.h"

#include <algorithm>
#include <deque>
#include <set>
#include <stdexcept>
#include <string>

#include "simulator/program/parser.h"
#include "simulator/program/source.h"
#include "simulator/program/text.h"
#include "simulator/program/text_file.h"

namespace ostravel::trial {
namespace {

using plc::folded;

struct File {
  std::filesystem::path path;
  std::set<std::string> declares;
  std::set<std::string> uses;
};

void add_uses(const plc::TypeUse& use, std::set<std::string>& uses) {
  if (!use.name.empty()) uses.insert(folded(use.name));
  for (const auto& member : use.members) add_uses(member.type, uses);
}

File look_into(const std::filesystem::path& path) {
  File file{path, {}, {}};
  try {
    const auto text = plc::read_source(path);
    const auto name = path.string();
    std::vector<std::string> warnings;
    for (const auto& declaration : plc::Parser(text, name, &warnings).parse()) {
      if (declaration.kind != plc::Declaration::Kind::DataBlock)
        file.declares.insert(folded(declaration.name));
      add_uses(declaration.content, file.uses);
    }
  } catch (const plc::SourceError&) {  // loading it will say the same
  }
  return file;
}

// Nearest first: the file's own folder, then the others.
const File* declaring(const std::deque<File>& files, const std::string& type,
                      const std::filesystem::path& near) {
  const File* found = nullptr;
  for (const auto& file : files) {
    if (!file.declares.contains(type)) continue;
    if (file.path.parent_path() == near) return &file;
    if (found == nullptr) found = &file;
  }
  return found;
}

SourceSet set_of(const std::deque<File>& files, const File& start) {
  SourceSet set{start.path, {}};
  std::set<std::string> declared = start.declares;
  std::deque<std::string> wanted(start.uses.begin(), start.uses.end());
  for (; !wanted.empty(); wanted.pop_front()) {
    const auto type = wanted.front();
    if (declared.contains(type)) continue;
    const auto* file = declaring(files, type, start.path.parent_path());
    if (file == nullptr) continue;
    set.others.push_back(file->path);
    declared.insert(file->declares.begin(), file->declares.end());
    wanted.insert(wanted.end(), file->uses.begin(), file->uses.end());
  }
  return set;
}

}  // namespace

std::vector<std::filesystem::path> SourceSet::files() const {
  std::vector<std::filesystem::path> all{file};
  all.insert(all.end(), others.begin(), others.end());
  return all;
}

std::vector<SourceSet> source_sets(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const auto extension = folded(entry.path().extension().string());
    const bool is_source = extension == ".db" || extension == ".udt" || extension == ".scl";
    if (is_source && entry.is_regular_file()) paths.push_back(entry.path());
  }
  if (paths.empty()) {
    throw std::runtime_error(folder.string() +
                             ": holds no .db, .udt or .scl files; name a folder of PLC sources");
  }
  std::sort(paths.begin(), paths.end());
  std::deque<File> files;
  std::transform(paths.begin(), paths.end(), std::back_inserter(files), look_into);
  std::vector<SourceSet> sets;
  std::transform(files.begin(), files.end(), std::back_inserter(sets),
                 [&](const File& file) { return set_of(files, file); });
  return sets;
}

}  // namespace ostravel::trial

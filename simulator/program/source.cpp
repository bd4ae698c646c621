// SPDX-License-Identifier: MIT
#include "simulator/program/source.h"

#include <algorithm>
#include <deque>
#include <iterator>

#include "simulator/program/catalogue.h"
#include "simulator/program/fingerprint.h"
#include "simulator/program/image.h"
#include "simulator/program/layout.h"
#include "simulator/program/parser.h"
#include "simulator/program/text.h"
#include "simulator/program/text_file.h"

namespace ostravel::plc {
namespace {

// Declarations name places in their files, so names stay where they are until all is done.
struct Sources {
  std::deque<std::string> names;
  std::vector<Declaration> declarations;

  void add(std::string name, const std::string& text, std::vector<std::string>* warnings) {
    names.push_back(std::move(name));
    std::vector<Declaration> found = Parser(text, names.back(), warnings).parse();
    std::move(found.begin(), found.end(), std::back_inserter(declarations));
  }
};

bool has_block(const std::vector<Declaration>& declarations, std::string_view name, std::string_view of) {
  return std::any_of(declarations.begin(), declarations.end(), [&](const Declaration& other) {
    return other.kind == Declaration::Kind::DataBlock &&
           (equal_names(other.name, name) || equal_names(other.content.name, of));
  });
}

void add_instances(std::vector<Declaration>& declarations) {
  std::vector<Declaration> instances;
  for (const Declaration& declaration : declarations) {
    const std::string name = declaration.name + "_DB";
    if (declaration.kind == Declaration::Kind::DataBlock || has_block(declarations, name, declaration.name))
      continue;
    Declaration& instance = instances.emplace_back();
    instance.kind = Declaration::Kind::DataBlock;
    instance.position = declaration.position;
    instance.name = name;
    instance.content.position = declaration.position;
    instance.content.name = declaration.name;
    instance.content.quoted = true;
  }
  std::move(instances.begin(), instances.end(), std::back_inserter(declarations));
}

void grant_access(std::vector<Member>& members) {
  for (Member& member : members) {
    member.accessible = true;
    member.writable = true;
    grant_access(member.type.members);
  }
}

// What the options add to the declarations.
void amend(std::vector<Declaration>& declarations, const LoadOptions& options) {
  if (options.instances) add_instances(declarations);
  if (!options.accessible) return;
  for (Declaration& declaration : declarations) {
    declaration.read_only = false;
    grant_access(declaration.content.members);
  }
}

Program build(const Sources& sources, const LoadOptions& options, std::vector<std::string>* warnings) {
  const Catalogue catalogue(sources.declarations, options);
  Layout layout(catalogue, options.memory_limit, warnings);
  Program program;
  std::vector<const Declaration*> blocks;
  for (const Declaration& declaration : sources.declarations) {
    if (declaration.kind != Declaration::Kind::DataBlock) continue;
    program.blocks.push_back(layout.place(declaration));
    blocks.push_back(&declaration);
  }
  program.initial.resize(layout.size());
  Image image(catalogue, warnings);
  for (std::size_t i = 0; i < blocks.size(); ++i)
    image.fill_block(*blocks[i], program.blocks[i], program.initial);
  for (const Declaration* const block : blocks) image.assign(*block, program.blocks, program.initial);
  program.fingerprint = fingerprint(program.blocks);
  return program;
}

}  // namespace

Program load_program(std::span<const std::filesystem::path> files, const LoadOptions& options,
                     std::vector<std::string>* warnings) {
  Sources sources;
  for (const std::filesystem::path& file : files) sources.add(file.string(), read_source(file), warnings);
  amend(sources.declarations, options);
  return build(sources, options, warnings);
}

Program load_text(std::string_view text, std::string_view name, const LoadOptions& options,
                  std::vector<std::string>* warnings) {
  Sources sources;
  sources.add(std::string(name), decode_source(std::string(text), name), warnings);
  amend(sources.declarations, options);
  return build(sources, options, warnings);
}

}  // namespace ostravel::plc

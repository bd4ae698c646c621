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
  return build(sources, options, warnings);
}

Program load_text(std::string_view text, std::string_view name, const LoadOptions& options,
                  std::vector<std::string>* warnings) {
  Sources sources;
  sources.add(std::string(name), decode_source(std::string(text), name), warnings);
  return build(sources, options, warnings);
}

}  // namespace ostravel::plc

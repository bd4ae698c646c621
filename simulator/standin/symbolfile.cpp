// SPDX-License-Identifier: MIT
#include "simulator/standin/symbolfile.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <system_error>

#include "simulator/program/encoding.h"
#include "simulator/program/fingerprint.h"
#include "simulator/wire/symboltree.h"

namespace ostravel::standin {
namespace {

constexpr std::array<std::uint8_t, 8> kMagic{'A', 'G', 'L', 'S', 'Y', 'M', 'B', 0x1A};
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kHeader = 36;
constexpr std::size_t kChecksum = 28;  // its place in the header
constexpr std::uintmax_t kMaxFile = std::uintmax_t{256} << 20;

using View = std::span<const std::uint8_t>;

std::uint64_t fnv1a(View bytes, std::uint64_t hash) {
  constexpr std::uint64_t kPrime = 0x100000001B3;
  for (const auto byte : bytes) hash = (hash ^ byte) * kPrime;
  return hash;
}

std::uint64_t checksum(View file) {
  constexpr std::uint64_t kStart = 0xCBF29CE484222325;
  return fnv1a(file.subspan(kHeader), fnv1a(file.first(kChecksum), kStart));
}

wire::Bytes read_file(const std::string& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  require(!error, Error::FileUnreadable);
  require(size <= kMaxFile, Error::FileForeign);
  std::ifstream in(path, std::ios::binary);
  require(in.is_open(), Error::FileUnreadable);
  wire::Bytes bytes(static_cast<std::size_t>(size));
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  require(static_cast<std::size_t>(in.gcount()) == bytes.size(), Error::FileUnreadable);
  return bytes;
}

}  // namespace

void save_symbols(const Tree& tree, const std::string& path) {
  const auto payload = wire::encode_tree(tree.blocks);
  wire::Bytes file(kHeader);
  const std::span header(file);
  std::copy(kMagic.begin(), kMagic.end(), file.begin());
  plc::store_number(header.subspan(8, 4), kVersion);
  plc::store_number(header.subspan(12, 8), tree.fingerprint);
  plc::store_number(header.subspan(20, 8), payload.size());
  file.insert(file.end(), payload.begin(), payload.end());
  plc::store_number(std::span(file).subspan(kChecksum, 8), checksum(file));

  // Others may save the same file at the same time: each writes one of its own until it is complete.
  static std::atomic<unsigned> drafts = 0;
  const auto draft = path + "." + std::to_string(getpid()) + "-" + std::to_string(++drafts) + ".new";
  std::ofstream out(draft, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
  out.close();
  std::error_code error;
  if (out.good()) std::filesystem::rename(draft, path, error);
  if (!out.good() || error) {
    std::filesystem::remove(draft, error);
    throw Failure(Error::FileUnwritable);
  }
}

Tree load_symbols(const std::string& path) {
  const auto file = read_file(path);
  const View view(file);
  require(file.size() >= kMagic.size() && std::equal(kMagic.begin(), kMagic.end(), file.begin()),
          Error::FileForeign);
  require(file.size() >= kHeader, Error::FileDamaged);
  require(plc::load_number(view.subspan(8, 4)) == kVersion, Error::FileVersion);
  require(plc::load_number(view.subspan(20, 8)) == file.size() - kHeader, Error::FileDamaged);
  require(plc::load_number(view.subspan(kChecksum, 8)) == checksum(view), Error::FileDamaged);
  auto blocks = wire::decode_tree(view.subspan(kHeader));
  require(blocks.has_value(), Error::FileDamaged);
  Tree tree{std::move(*blocks), plc::load_number(view.subspan(12, 8))};
  require(plc::fingerprint(tree.blocks) == tree.fingerprint, Error::FileDamaged);
  return tree;
}

}  // namespace ostravel::standin

// SPDX-License-Identifier: MIT
#include "tests/host/plot/xml.h"

#include <cctype>
#include <stdexcept>

#include "host/text.h"

namespace ostravel::host {
namespace {

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {
    if (!utf16_from_utf8(text)) {
      fail("not UTF-8");
    }
  }

  std::vector<XmlElement> parse() {
    if (take("<?xml ")) {
      until("?>");
    }
    while (!text_.empty()) {
      if (take("</")) {
        end_tag();
      } else if (take("<")) {
        start_tag();
      } else {
        character_data();
      }
    }
    if (!open_.empty() || elements_.empty()) {
      fail("an element is not closed, or there is none");
    }
    return std::move(elements_);
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw std::runtime_error(what + " before: " + std::string(text_.substr(0, 60)));
  }

  bool take(std::string_view what) {
    if (!text_.starts_with(what)) {
      return false;
    }
    text_.remove_prefix(what.size());
    return true;
  }

  std::string until(std::string_view what) {
    const auto end = text_.find(what);
    if (end == std::string_view::npos) {
      fail("no end");
    }
    std::string found(text_.substr(0, end));
    text_.remove_prefix(end + what.size());
    return found;
  }

  std::string name() {
    std::string found;
    while (!text_.empty() && (std::isalnum(static_cast<unsigned char>(text_.front())) != 0 ||
                              std::string_view("-_:").find(text_.front()) != std::string_view::npos)) {
      found += text_.front();
      text_.remove_prefix(1);
    }
    return found.empty() ? (fail("no name"), found) : found;
  }

  void blanks() {
    while (!text_.empty() && std::isspace(static_cast<unsigned char>(text_.front())) != 0) {
      text_.remove_prefix(1);
    }
  }

  std::string resolved(std::string_view raw) const {
    std::string text;
    while (!raw.empty()) {
      const auto c = static_cast<unsigned char>(raw.front());
      if (c == '<' || (c < 0x20 && c != '\n' && c != '\t')) {
        fail("a character that must not be there");
      }
      if (c != '&') {
        text += raw.front();
        raw.remove_prefix(1);
        continue;
      }
      static const std::map<std::string_view, char> kEntities{
          {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
      const auto entity = kEntities.find(raw.substr(0, raw.find(';') + 1));
      if (entity == kEntities.end()) {
        fail("an unknown entity");
      }
      text += entity->second;
      raw.remove_prefix(entity->first.size());
    }
    return text;
  }

  void start_tag() {
    if (open_.empty() && !elements_.empty()) {
      fail("a second root");
    }
    XmlElement element{name(), {}, {}};
    for (blanks(); !text_.starts_with(">") && !text_.starts_with("/>"); blanks()) {
      const auto attribute = name();
      if (!take("=\"")) {
        fail("an attribute without a quoted value");
      }
      if (!element.attributes.emplace(attribute, resolved(until("\""))).second) {
        fail("an attribute twice");
      }
    }
    elements_.push_back(std::move(element));
    if (take("/>")) {
      return;
    }
    take(">");
    open_.push_back(elements_.size() - 1);
  }

  void end_tag() {
    const auto closed = name();
    if (!take(">") || open_.empty() || elements_[open_.back()].name != closed) {
      fail("an end tag of another element");
    }
    open_.pop_back();
  }

  void character_data() {
    const auto end = text_.find('<');
    const auto found = resolved(text_.substr(0, end));
    for (const auto place : open_) {
      elements_[place].text += found;
    }
    if (open_.empty() && found.find_first_not_of(" \n\t") != std::string::npos) {
      fail("text outside the root");
    }
    text_.remove_prefix(std::min(end, text_.size()));
  }

  std::string_view text_;
  std::vector<XmlElement> elements_;
  std::vector<std::size_t> open_;
};

}  // namespace

std::vector<XmlElement> parse_xml(std::string_view text) {
  return Parser(text).parse();
}

}  // namespace ostravel::host

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

// XML out of files. The parser follows no reference out of the document, expands no entity that the
// document declares, and neither it nor what walks the nodes calls itself, so a document can do no
// more harm than its size.

namespace corvinex::inspect::reading {

/// The longest document that is parsed. A parsed one takes up to 20 times its text, and packets of
/// real files are a tenth as long as this.
inline constexpr std::size_t longestXml = std::size_t{4} << 20U;

/// The document, or null: it is not well formed, or longer than the longest. Text and attributes of
/// its nodes are bytes that need not be UTF-8.
[[nodiscard]] std::unique_ptr<pugi::xml_document> parseXml(std::string_view text);

/// The name behind a prefix: "title" of "dc:title".
[[nodiscard]] std::string_view localName(std::string_view name) noexcept;

/// Calls visit with each element below a node in document order, until it returns false.
void forEachElement(pugi::xml_node root, const std::function<bool(pugi::xml_node)>& visit);

/// The first child with this local name, or an empty node.
[[nodiscard]] pugi::xml_node childNamed(pugi::xml_node parent, std::string_view name);

/// The document with each element on a line of its own, indented by its depth. Nothing when the
/// text is not well formed, or nested so deeply that indentation would make up most of it.
[[nodiscard]] std::optional<std::string> indentedXml(std::string_view text);

}  // namespace corvinex::inspect::reading

#include "inspect/reading/xml.h"

namespace corvinex::inspect::reading {
namespace {

constexpr int deepestIndented = 64;

/// The node behind this one in document order, within root. Keeps the depth below root.
pugi::xml_node nextNode(pugi::xml_node node, pugi::xml_node root, int& depth) {
    if (const pugi::xml_node child = node.first_child()) {
        ++depth;
        return child;
    }
    while (node != root && !node.next_sibling()) {
        node = node.parent();
        --depth;
    }
    return node == root ? pugi::xml_node() : node.next_sibling();
}

class StringWriter : public pugi::xml_writer {
  public:
    void write(const void* data, std::size_t size) override {
        text_.append(static_cast<const char*>(data), size);
    }
    std::string takeText() { return std::move(text_); }

  private:
    std::string text_;
};

}  // namespace

std::unique_ptr<pugi::xml_document> parseXml(std::string_view text) {
    if (text.empty() || text.size() > longestXml) {
        return nullptr;
    }
    auto document = std::make_unique<pugi::xml_document>();
    return document->load_buffer(text.data(), text.size()) ? std::move(document) : nullptr;
}

std::string_view localName(std::string_view name) noexcept {
    const std::size_t colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

void forEachElement(pugi::xml_node root, const std::function<bool(pugi::xml_node)>& visit) {
    int depth = 0;
    for (pugi::xml_node node = root.first_child(); node; node = nextNode(node, root, depth)) {
        if (node.type() == pugi::node_element && !visit(node)) {
            return;
        }
    }
}

pugi::xml_node childNamed(pugi::xml_node parent, std::string_view name) {
    return parent.find_child(
        [name](pugi::xml_node child) { return localName(child.name()) == name; });
}

std::optional<std::string> indentedXml(std::string_view text) {
    const auto document = parseXml(text);
    if (!document) {
        return std::nullopt;
    }
    const pugi::xml_node root = document->root();
    int depth = 0;
    for (pugi::xml_node node = root; node; node = nextNode(node, root, depth)) {
        if (depth > deepestIndented) {
            return std::nullopt;
        }
    }
    StringWriter writer;
    document->save(writer, "  ", pugi::format_indent | pugi::format_no_declaration);
    return writer.takeText();
}

}  // namespace corvinex::inspect::reading

#include "inspect/record/derived_json.h"

#include <variant>

namespace corvinex::inspect {

namespace {

struct FactWriter {
    JsonWriter& json;
    void operator()(std::uint64_t number) const { json.integer(number); }
    void operator()(double number) const { json.number(number); }
    void operator()(const std::string& text) const { json.string(text); }
    void operator()(const std::vector<double>& numbers) const {
        json.beginList();
        for (const double number : numbers) {
            json.number(number);
        }
        json.endArray();
    }
};

}  // namespace

void writeDerived(JsonWriter& json, std::span<const DerivedFact> facts) {
    json.beginRow();
    for (const DerivedFact& fact : facts) {
        json.key(fact.name);
        std::visit(FactWriter{json}, fact.value);
    }
    json.endObject();
}

}  // namespace corvinex::inspect

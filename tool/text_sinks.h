#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "inspect/record/json_writer.h"

namespace tool {

/// Adds to a text, which must outlive it.
class StringSink final : public corvinex::inspect::TextSink {
  public:
    explicit StringSink(std::string& text) : text_(text) {}
    void write(std::string_view part) override { text_ += part; }

  private:
    std::string& text_;
};

/// Writes to a stream, which must outlive it and knows whether that succeeded.
class StreamSink final : public corvinex::inspect::TextSink {
  public:
    explicit StreamSink(std::ostream& out) : out_(out) {}
    void write(std::string_view part) override { out_ << part; }

  private:
    std::ostream& out_;
};

}  // namespace tool

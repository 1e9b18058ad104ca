#include <array>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "host-kit/check.h"

// Whole calls of a module.

namespace hostkit {

namespace {

using Message = resource_core::BaseMsgID;

struct Entry {
    std::uint16_t tag;
    std::uint16_t type;
    std::uint16_t value;
};

/// A little-endian TIFF file of one directory with values that stand in their entries.
std::string tiffOf(const std::vector<Entry>& entries) {
    std::string bytes("II*\0\10\0\0\0", 8);
    const auto number = [&](std::uint32_t value, int width) {
        for (int i = 0; i < width; ++i) {
            bytes += static_cast<char>(value >> (8 * i) & 0xFF);
        }
    };
    number(static_cast<std::uint32_t>(entries.size()), 2);
    for (const Entry& entry : entries) {
        number(entry.tag, 2);
        number(entry.type, 2);
        number(1, 4);
        number(entry.value, 4);
    }
    number(0, 4);
    return bytes;
}

constexpr std::uint16_t SHORT = 3;
constexpr std::uint16_t noType = 99;

std::u16string writeTiff(const Context& context, std::u16string_view name,
                         const std::vector<Entry>& entries) {
    std::ofstream(context.folder / name, std::ios::binary) << tiffOf(entries);
    return (context.folder / name).u16string();
}

/// A sound file of this width.
std::u16string soundFile(const Context& context, std::uint16_t width) {
    return writeTiff(context, u"sound.tif", {{256, SHORT, width}, {257, SHORT, 5}});
}

/// One of which an entry is dropped with a warning.
std::u16string warningFile(const Context& context, std::uint16_t width) {
    return writeTiff(context, u"warning.tif",
                     {{256, SHORT, width}, {257, SHORT, 5}, {270, noType, 0}});
}

Owner call(const Context& context, const Owner& name) {
    const std::array<Owner, 3> numbers{makeNumber(0), makeNumber(0), makeNumber(0)};
    const zxArray* inputs[] = {name.get(), numbers[0].get(), numbers[1].get(), numbers[2].get()};
    zxArray* outputs[] = {nullptr};
    context.entry(1, outputs, 4, inputs);
    return Owner(outputs[0]);
}

Owner callOn(const Context& context, const std::u16string& name) {
    return call(context, matrix::create(name.data(), name.size()));
}

bool hasWidth(const Context& context, const Owner& output, double width) {
    return is(context.host, output.get(), ValueClass::Struct, {1, 1}) &&
           isNumber(context.host, context.host.fieldAt(*output, 0, "Width"), width);
}

/// The ID of the error that a call ends in; empty when it does not, or in one without an ID.
std::string errorOf(const Context& context, const Owner& name) {
    try {
        call(context, name);
    } catch (...) {
        const auto message = context.host.messageOf(std::current_exception());
        return message ? message->id() : "";
    }
    return "";
}

bool filesAreRead(Context& context) {
    const std::u16string name =
        writeTiff(context, u"\u00FC \U0001F600.tif", {{256, SHORT, 7}, {257, SHORT, 5}});
    const Owner output = callOn(context, name);
    return hasWidth(context, output, 7) &&
           isText(context.host, context.host.fieldAt(*output, 0, "Filename"), name);
}

bool stringsNameFiles(Context& context) {
    const Owner name = context.host.makeString(soundFile(context, 7));
    return name == nullptr || hasWidth(context, call(context, name), 7);
}

bool missingFilesAreErrors(Context& context) {
    const std::u16string missing = (context.folder / "missing.tif").u16string();
    return errorOf(context, matrix::create(missing.data(), missing.size())) ==
               "quorra:corvinex:statFailure" &&
           errorOf(context, makeNumber(1)) == "quorra:corvinex:statFailure";
}

bool missingNamesAreErrors(Context& context) {
    const Owner name = context.host.makeString(std::nullopt);
    return name == nullptr || errorOf(context, name) == "KORVEL:string:MissingNotSupported";
}

bool warningsArrive(Context& context) {
    std::vector<Message> warnings;
    context.host.setWarningSink([&](const Message& warning) { warnings.push_back(warning); });
    const Owner output = callOn(context, warningFile(context, 7));
    return hasWidth(context, output, 7) && warnings.size() == 1 &&
           warnings.front().id() == "quorra:corvinex:unrecognizedTagFormatId" &&
           warnings.front().arguments() == std::vector<Message::Argument>{std::uint64_t{noType}};
}

bool callsNest(Context& context) {
    const std::u16string inner = soundFile(context, 9);
    bool innerIsRead = false;
    context.host.setWarningSink([&](const Message& /*warning*/) {
        innerIsRead = hasWidth(context, callOn(context, inner), 9);
    });
    const Owner output = callOn(context, warningFile(context, 7));
    return innerIsRead && hasWidth(context, output, 7);
}

struct SinkFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

bool exceptionsPass(Context& context) {
    context.host.setWarningSink(
        [](const Message& /*warning*/) { throw SinkFailure("out of the sink"); });
    try {
        callOn(context, warningFile(context, 7));
    } catch (const SinkFailure& failure) {
        return failure.what() == std::string_view("out of the sink");
    }
    return false;
}

bool nothingIsLeft(Context& context) {
    const std::size_t before = context.host.livingValues();
    callOn(context, soundFile(context, 7)).reset();
    const std::u16string missing = (context.folder / "missing.tif").u16string();
    static_cast<void>(raises([&] { callOn(context, missing); }));
    return context.host.livingValues() == before;
}

constexpr Check checks[] = {
    {"module-reads", "zekFunction",
     "A file must be read, with its name and its width in the result.", filesAreRead},
    {"module-string-name", "zekFunction", "The file name may be a string scalar.",
     stringsNameFiles},
    {"module-missing-file", "zekFunction",
     "A file that is not there must end the call in the error quorra:corvinex:statFailure.",
     missingFilesAreErrors},
    {"module-missing-name", "zekFunction",
     "A missing string as the name must end in the error KORVEL:string:MissingNotSupported.",
     missingNamesAreErrors},
    {"module-warning", "zekFunction",
     "A damaged file must issue its warning and still give a result.", warningsArrive},
    {"module-nested-call", "zekFunction",
     "What takes a warning must be able to call the module for another file.", callsNest},
    {"module-exception", "zekFunction",
     "What the taker of a warning raises must come out of the call unchanged.", exceptionsPass},
    {"module-nothing-left", "zekFunction",
     "No value may be left over when the result is destroyed or the call has failed.",
     nothingIsLeft},
};

}  // namespace

std::span<const Check> moduleChecks() {
    return checks;
}

}  // namespace hostkit

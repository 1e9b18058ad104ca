#include <boost/date_time/posix_time/ptime.hpp>
#include <filesystem>

#include "host/interface/message.h"
#include "host/interface/platform.h"
#include "tests/reading/issued_warnings.h"

// All that reading asks of its host.

namespace test {

std::vector<std::string>& issuedWarnings() {
    static std::vector<std::string> warnings;
    return warnings;
}

}  // namespace test

void zxWarningMsgId(const resource_core::BaseMsgID& message) {
    test::issuedWarnings().push_back(message.id());
}

namespace matrix::detail {

// Returns, so that the module throws the exception itself.
void do_legacy_zx_error(const foundation::core::except::IUserException& /*error*/) {}

}  // namespace matrix::detail

namespace fl::filesystem {

bool exists(const std::u16string& path) {
    return std::filesystem::exists(path);
}

file_status status(const std::u16string& path) {
    file_status status;
    status.type = file_status::regular_file;
    status.fileSize = std::filesystem::file_size(path);
    return status;
}

std::FILE* fopen(const std::u16string& path, const std::string& mode) {
    return std::fopen(std::filesystem::path(path).c_str(), mode.c_str());
}

}  // namespace fl::filesystem

#include "tests/faults/file_services.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "host/interface/platform.h"

namespace test {

namespace {

struct Services {
    Buffering buffering = Buffering::None;
    ScopedFileServices::Judge judge;
    std::function<void()> onClose;
    std::size_t openStreams = 0;
    std::set<std::FILE*> ownStreams;  // of the host, on which the C library's calls may fail
};

Services services;

FileEffect effectOf(const FileCall& call) {
    return services.judge ? services.judge(call) : FileEffect{};
}

/// Sets errno for an effect that is a failure; whether it is one.
bool isFailure(const FileEffect& effect) noexcept {
    if (effect.kind == FileEffect::Fails) {
        errno = EIO;
    } else if (effect.kind == FileEffect::Interrupted) {
        errno = EINTR;
    }
    return effect.kind == FileEffect::Fails || effect.kind == FileEffect::Interrupted;
}

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

/// What stands behind a stream: the host's own, and the position in it.
struct Cookie {
    std::unique_ptr<std::FILE, CloseFile> file;
    off64_t position = 0;
    std::array<char, 64> smallBuffer{};
};

ssize_t readCookie(void* pointer, char* bytes, std::size_t count) {
    auto& cookie = *static_cast<Cookie*>(pointer);
    const FileEffect effect =
        effectOf({FileOperation::Read, static_cast<std::uint64_t>(cookie.position), count});
    if (isFailure(effect)) {
        return -1;
    }
    const std::size_t wanted =
        effect.kind == FileEffect::Short ? std::min(count, effect.limit) : count;
    const ssize_t length = ::pread(::fileno(cookie.file.get()), bytes, wanted, cookie.position);
    cookie.position += std::max<ssize_t>(length, 0);
    return length;
}

int seekCookie(void* pointer, off64_t* offset, int whence) {
    auto& cookie = *static_cast<Cookie*>(pointer);
    const bool isTell = whence == SEEK_CUR && *offset == 0;
    const off64_t target = whence == SEEK_CUR ? cookie.position + *offset : *offset;
    const FileCall call{isTell ? FileOperation::Tell : FileOperation::Seek,
                        static_cast<std::uint64_t>(target), 0};
    if (isFailure(effectOf(call))) {
        return -1;
    }
    if (whence == SEEK_END || target < 0) {
        errno = EINVAL;
        return -1;
    }
    cookie.position = target;
    *offset = target;
    return 0;
}

int closeCookie(void* cookie) {
    const std::unique_ptr<Cookie> owner(static_cast<Cookie*>(cookie));
    --services.openStreams;
    if (services.onClose) {
        services.onClose();
    }
    return 0;
}

void setBuffering(std::FILE* stream, Cookie& cookie) {
    if (services.buffering == Buffering::None) {
        std::setvbuf(stream, nullptr, _IONBF, 0);
    } else if (services.buffering == Buffering::Small) {
        std::setvbuf(stream, cookie.smallBuffer.data(), _IOFBF, cookie.smallBuffer.size());
    }
}

/// The definition that a library has of a function that this program defines, too.
template <class Function>
Function* libraryOwn(const char* symbol) {
    void* const address = ::dlsym(RTLD_NEXT, symbol);
    if (address == nullptr) {
        throw std::runtime_error(std::string("no library has ") + symbol);
    }
    return reinterpret_cast<Function*>(address);
}

std::uint64_t positionOf(std::FILE* stream) {
    return static_cast<std::uint64_t>(::lseek(::fileno(stream), 0, SEEK_CUR));
}

/// What becomes of a call on one of the host's own streams; others are not judged.
FileEffect effectOn(std::FILE* stream, FileOperation operation, std::uint64_t position,
                    std::size_t size) {
    return services.ownStreams.contains(stream) ? effectOf({operation, position, size})
                                                : FileEffect{};
}

/// What a service does whose call was interrupted and that has no way to return that.
void raiseWhenInterrupted(const FileEffect& effect) {
    if (effect.kind == FileEffect::Interrupted) {
        throw std::system_error(EINTR, std::generic_category());
    }
}

}  // namespace

ScopedFileServices::ScopedFileServices(Buffering buffering, Judge judge,
                                       std::function<void()> onClose) {
    services.buffering = buffering;
    services.judge = std::move(judge);
    services.onClose = std::move(onClose);
}

ScopedFileServices::~ScopedFileServices() {
    services.judge = nullptr;
    services.onClose = nullptr;
}

std::size_t ScopedFileServices::openStreams() noexcept {
    return services.openStreams;
}

}  // namespace test

namespace fl::filesystem {

bool exists(const std::u16string& path) {
    static auto* const own = test::libraryOwn<decltype(exists)>(
        "_ZN2fl10filesystem6existsERKNSt7__cxx1112basic_stringIDsSt11char_traitsIDsESaIDsEEE");
    const test::FileEffect effect = test::effectOf({test::FileOperation::Exists, 0, 0});
    test::raiseWhenInterrupted(effect);
    return effect.kind != test::FileEffect::Fails && own(path);
}

file_status status(const std::u16string& path) {
    static auto* const own = test::libraryOwn<decltype(status)>(
        "_ZN2fl10filesystem6statusERKNSt7__cxx1112basic_stringIDsSt11char_traitsIDsESaIDsEEE");
    const test::FileEffect effect = test::effectOf({test::FileOperation::Status, 0, 0});
    test::raiseWhenInterrupted(effect);
    if (effect.kind == test::FileEffect::Fails) {
        return {};
    }
    file_status result = own(path);
    if (effect.kind == test::FileEffect::Short) {
        --result.fileSize;
    } else if (effect.kind == test::FileEffect::Told) {
        result.fileSize = effect.limit;
    }
    return result;
}

std::FILE* fopen(const std::u16string& path, const std::string& mode) {
    static auto* const own = test::libraryOwn<decltype(fopen)>(
        "_ZN2fl10filesystem5fopenERKNSt7__cxx1112basic_stringIDsSt11char_traitsIDsESaIDsEEE"
        "RKNS2_IcS3_IcESaIcEEE");
    if (test::isFailure(test::effectOf({test::FileOperation::Open, 0, 0}))) {
        return nullptr;
    }
    if (!test::services.judge) {
        return own(path, mode);
    }
    if (test::services.buffering == test::Buffering::Own) {
        std::FILE* const stream = own(path, mode);
        if (stream != nullptr) {
            test::services.ownStreams.insert(stream);
            ++test::services.openStreams;
        }
        return stream;
    }
    auto cookie = std::make_unique<test::Cookie>();
    cookie->file.reset(own(path, mode));
    if (cookie->file == nullptr) {
        return nullptr;
    }
    const cookie_io_functions_t functions{test::readCookie, nullptr, test::seekCookie,
                                          test::closeCookie};
    std::FILE* const stream = ::fopencookie(cookie.get(), mode.c_str(), functions);
    if (stream != nullptr) {
        test::setBuffering(stream, *cookie.release());  // closeCookie takes it back
        ++test::services.openStreams;
    }
    return stream;
}

}  // namespace fl::filesystem

// What the module calls of the C library.
extern "C" {

[[gnu::visibility("default")]] std::size_t fread(void* data, std::size_t size, std::size_t count,
                                                 std::FILE* stream) {
    static auto* const own =
        test::libraryOwn<std::size_t(void*, std::size_t, std::size_t, std::FILE*)>("fread");
    const test::FileEffect effect =
        test::effectOn(stream, test::FileOperation::Read, test::positionOf(stream), size * count);
    if (test::isFailure(effect)) {
        return 0;
    }
    if (effect.kind == test::FileEffect::Short) {
        return own(data, 1, std::min(size * count, effect.limit), stream) / size;
    }
    return own(data, size, count, stream);
}

[[gnu::visibility("default")]] int fseek(std::FILE* stream, long offset, int whence) {
    static auto* const own = test::libraryOwn<int(std::FILE*, long, int)>("fseek");
    const auto target = static_cast<std::uint64_t>(offset);
    return test::isFailure(test::effectOn(stream, test::FileOperation::Seek, target, 0))
               ? -1
               : own(stream, offset, whence);
}

[[gnu::visibility("default")]] long ftell(std::FILE* stream) {
    static auto* const own = test::libraryOwn<long(std::FILE*)>("ftell");
    return test::isFailure(test::effectOn(stream, test::FileOperation::Tell, 0, 0)) ? -1
                                                                                    : own(stream);
}

[[gnu::visibility("default")]] int fclose(std::FILE* stream) {
    static auto* const own = test::libraryOwn<int(std::FILE*)>("fclose");
    test::services.openStreams -= test::services.ownStreams.erase(stream);
    return own(stream);
}
}

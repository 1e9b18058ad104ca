#include "host-kit/run.h"

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "host-kit/check.h"

namespace hostkit {

namespace {

/// A folder of its own in the temporary folder, gone with its owner.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "host-kit-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), pattern);
        }
        path_ = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// Why a check does not hold, in words that may be empty; nothing when it does.
using Fault = std::optional<std::string>;

Fault faultOf(const Check& check, Context& context) {
    try {
        return check.holds(context) ? std::nullopt : Fault("");
    } catch (const std::exception& error) {
        return std::string("an operation raised: ") + error.what();
    } catch (...) {
        return "an operation raised an exception that is no std::exception";
    }
}

/// What the child wrote about its check: '+' when it holds, '-' and the words when not.
std::string outcomeFrom(int descriptor) {
    std::string outcome;
    std::array<char, 512> buffer{};
    for (ssize_t length = 0; (length = ::read(descriptor, buffer.data(), buffer.size())) > 0;) {
        outcome.append(buffer.data(), static_cast<std::size_t>(length));
    }
    ::close(descriptor);
    return outcome;
}

[[noreturn]] void runInChild(const Check& check, Context& context, int descriptor) {
    constexpr unsigned secondsForOneCheck = 120;
    ::alarm(secondsForOneCheck);
    const Fault fault = faultOf(check, context);
    const std::string outcome = fault ? "-" + *fault : "+";
    const bool isWritten = ::write(descriptor, outcome.data(), outcome.size()) >= 0;
    ::_exit(isWritten ? 0 : 1);
}

Fault faultInChild(const Check& check, Context& context) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    std::cout.flush();
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        ::close(ends[0]);
        runInChild(check, context, ends[1]);
    }
    ::close(ends[1]);
    const std::string outcome = outcomeFrom(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return signal == SIGALRM ? "the check does not come to an end"
                                 : std::string("the process was ended by ") + ::strsignal(signal);
    }
    if (outcome.empty()) {
        return "the process ended in mid-check";
    }
    return outcome == "+" ? std::nullopt : Fault(outcome.substr(1));
}

std::vector<Check> allChecks(bool withModule) {
    std::vector<Check> checks;
    for (const auto group : {arrayChecks(), textChecks(), containerChecks(), reportChecks(),
                             fileChecks(), textServiceChecks()}) {
        checks.insert(checks.end(), group.begin(), group.end());
    }
    if (withModule) {
        checks.insert(checks.end(), moduleChecks().begin(), moduleChecks().end());
    }
    return checks;
}

struct Options {
    bool list = false;
    const char* module = nullptr;
    const char* only = nullptr;
};

std::optional<Options> optionsFrom(std::span<char* const> arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view word = arguments[i];
        const bool hasNext = i + 1 < arguments.size();
        if (word == "--list") {
            options.list = true;
        } else if (word == "--module" && hasNext) {
            options.module = arguments[++i];
        } else if (word == "--only" && hasNext) {
            options.only = arguments[++i];
        } else {
            return std::nullopt;
        }
    }
    return options;
}

decltype(&zekFunction) entryOf(const char* module) {
    void* const library = ::dlopen(module, RTLD_NOW | RTLD_LOCAL);
    void* const entry = library == nullptr ? nullptr : ::dlsym(library, "zekFunction");
    if (entry == nullptr) {
        throw std::runtime_error(::dlerror());
    }
    return reinterpret_cast<decltype(&zekFunction)>(entry);
}

void print(const Check& check, const std::string& detail) {
    std::cout << check.operation << ": " << check.sentence;
    if (!detail.empty()) {
        std::cout << " (" << detail << ')';
    }
    std::cout << '\n';
}

int runChecks(Inspector& host, const Options& options) {
    const TemporaryFolder folder;
    Context context{host, folder.path(), options.module ? entryOf(options.module) : nullptr};
    std::size_t run = 0;
    std::size_t failed = 0;
    for (const Check& check : allChecks(options.module != nullptr)) {
        if (options.only != nullptr && check.name != std::string_view(options.only)) {
            continue;
        }
        context.folder = folder.path() / check.name;
        std::filesystem::create_directory(context.folder);
        // A single check stays in this process, where a debugger sees it.
        const Fault fault =
            options.only != nullptr ? faultOf(check, context) : faultInChild(check, context);
        ++run;
        if (fault) {
            ++failed;
            print(check, *fault);
        }
    }
    if (run == 0) {
        std::cerr << "host-kit: there is no check " << options.only << '\n';
        return 2;
    }
    std::cout << run - failed << " of " << run << " checks hold"
              << (options.module == nullptr ? "; those with a module were left out" : "") << '\n';
    return failed == 0 ? 0 : 1;
}

}  // namespace

int run(Inspector& host, std::span<char* const> arguments) {
    const std::optional<Options> options = optionsFrom(arguments);
    if (!options) {
        std::cerr << "usage: host-kit [--list] [--module FILE] [--only NAME]\n";
        return 2;
    }
    if (options->list) {
        for (const Check& check : allChecks(true)) {
            std::cout << check.name << ": ";
            print(check, "");
        }
        return 0;
    }
    // Narrow texts are those of the locale; the checks write them in UTF-8.
    if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) {
        std::cerr << "host-kit: there is no locale C.UTF-8\n";
        return 2;
    }
    try {
        return runChecks(host, *options);
    } catch (const std::exception& error) {
        std::cerr << "host-kit: " << error.what() << '\n';
        return 2;
    }
}

}  // namespace hostkit

// Measures what pointer bombs cost: the processor time, peak memory and stack of one call each,
// every bomb in a process of its own. The program ends with status 1 when a bomb passes a limit.
//   bombs [NAME]

#include <pthread.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>

#include "host/loading/module.h"
#include "tests/bombs/bomb_files.h"

namespace {

constexpr double mostSeconds = 1;
constexpr long mostKibibytes = 256L * 1024;
constexpr std::size_t stackSize = std::size_t{2} << 20;
constexpr double directoryLimit = 5;

/// A stack that can tell how much of it was ever used.
class MeasuredStack {
  public:
    MeasuredStack()
        : memory_(::mmap(nullptr, stackSize, PROT_READ | PROT_WRITE,
                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0)) {
        if (memory_ == MAP_FAILED) {
            std::abort();
        }
    }
    ~MeasuredStack() { ::munmap(memory_, stackSize); }
    MeasuredStack(const MeasuredStack&) = delete;
    MeasuredStack& operator=(const MeasuredStack&) = delete;

    /// Runs a function on this stack.
    void run(const std::function<void()>& function) {
        pthread_attr_t attributes;
        pthread_t thread{};
        if (::pthread_attr_init(&attributes) != 0 ||
            ::pthread_attr_setstack(&attributes, memory_, stackSize) != 0 ||
            ::pthread_create(&thread, &attributes, call,
                             const_cast<void*>(static_cast<const void*>(&function))) != 0) {
            std::abort();
        }
        ::pthread_join(thread, nullptr);
        ::pthread_attr_destroy(&attributes);
    }

    /// The bytes from the lowest one that was written up to the top. Pages that nobody has written
    /// are zero.
    [[nodiscard]] std::size_t used() const {
        const auto* const first = static_cast<const unsigned char*>(memory_);
        const auto* const last = first + stackSize;
        const auto* const lowest =
            std::find_if(first, last, [](unsigned char byte) { return byte != 0; });
        return static_cast<std::size_t>(last - lowest);
    }

  private:
    void* memory_;

    static void* call(void* function) {
        (*static_cast<const std::function<void()>*>(function))();
        return nullptr;
    }
};

double processorSeconds() {
    std::timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

std::string outcomeOf(const host::CallResult& result) {
    std::string text = "output";
    if (result.failure) {
        text = result.failure->report ? result.failure->report->id : result.failure->message;
    }
    return text + ", " + std::to_string(result.warnings.size()) + " warning(s)";
}

/// Makes one call and prints its row. Returns false when the call passes a limit.
bool measure(const host::Module& module, const std::string& title, const std::u16string& file,
             double headerPosition) {
    double seconds = 0;
    std::string outcome;
    MeasuredStack stack;
    stack.run([&] {
        const double start = processorSeconds();
        const host::CallResult result = module.call(file, headerPosition, 0, directoryLimit);
        seconds = processorSeconds() - start;
        outcome = outcomeOf(result);
    });
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const bool holds = seconds <= mostSeconds && usage.ru_maxrss <= mostKibibytes;
    std::printf("%-44s %7.3f s %7ld KiB %5zu KiB stack  %s  %s\n", title.c_str(), seconds,
                usage.ru_maxrss, stack.used() / 1024, holds ? "holds" : "PASSED", outcome.c_str());
    return holds;
}

/// Does the same in a process of its own, because the peak memory of a process never falls.
bool measureApart(const test::PointerBomb& bomb, test::Container container,
                  const std::filesystem::path& path) {
    static_cast<void>(std::fflush(stdout));
    const pid_t child = ::fork();
    if (child == 0) {
        const host::Module module(CORVINEX_MODULE);
        const std::string title = std::string(bomb.name) + " (" + test::nameOf(container) + ")";
        std::size_t headerPosition = 0;
        std::ifstream(path.string() + ".header") >> headerPosition;
        const bool holds =
            measure(module, title, path.u16string(), static_cast<double>(headerPosition));
        static_cast<void>(std::fflush(stdout));
        ::_exit(holds ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status)) {
        std::printf("%s (%s): ended by signal %d\n", bomb.name, test::nameOf(container),
                    WTERMSIG(status));
        return false;
    }
    return WEXITSTATUS(status) == 0;
}

/// Makes the file in a process of its own, so that its memory does not count.
void makeFile(const test::PointerBomb& bomb, test::Container container,
              const std::filesystem::path& path) {
    const pid_t child = ::fork();
    if (child == 0) {
        const test::BombFile file = test::inContainer(bomb.build(container), container);
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(file.bytes.data()),
                   static_cast<std::streamsize>(file.bytes.size()));
        std::ofstream(path.string() + ".header") << file.headerPosition;
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
    const std::string_view wanted = argumentCount > 1 ? arguments[1] : "";
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("bomb-" + std::to_string(::getpid()));
    bool allHold = true;
    for (const test::PointerBomb& bomb : test::pointerBombs()) {
        if (!wanted.empty() && wanted != bomb.name) {
            continue;
        }
        for (const test::Container container : test::allContainers) {
            makeFile(bomb, container, path);
            allHold = measureApart(bomb, container, path) && allHold;
        }
    }
    std::filesystem::remove(path);
    std::filesystem::remove(path.string() + ".header");
    return allHold ? 0 : 1;
}

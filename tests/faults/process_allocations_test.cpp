#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "tests/faults/doubles/failing_allocation.h"
#include "tests/tool/tiff_bytes.h"

// The tool as a process whose allocations are refused, each in turn, from its start to its end.

namespace {

namespace fs = std::filesystem;

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = fs::temp_directory_path() / "corvinex-faults-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), pattern);
        }
        path_ = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    [[nodiscard]] std::string path(const char* name) const { return path_ / name; }
    /// Writes a file and gives its path.
    [[nodiscard]] std::string file(const char* name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

  private:
    fs::path path_;
};

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

struct ProcessEnd {
    int signal = 0;  ///< that ended it; 0 when it ended by itself
    int exitStatus = -1;
    std::string out;
    std::string err;
    std::uint64_t allocations = 0;
};

/// What the tool is run with: its arguments, and the file that is its standard input.
struct Invocation {
    std::vector<std::string> arguments;
    std::string input = "/dev/null";
};

/// Runs the tool again and again, one process at a time, in a folder of its own.
class Runner {
  public:
    explicit Runner(const Invocation& invocation)
        : words_(invocation.arguments), input_(invocation.input) {
        words_.insert(words_.begin(), CORVINEX_TOOL);
        // A locale and a time zone of their own are read at the start, which takes memory.
        environment_ = {"LD_PRELOAD=" CORVINEX_FAILING_ALLOCATION,
                        std::string(test::allocationPlanVariable) + "=" + folder_.path("plan"),
                        "LC_ALL=C.UTF-8", "TZ=Europe/Berlin"};
    }

    ProcessEnd run(std::uint64_t refusedCall) {
        writePlan(refusedCall);
        const pid_t child = spawn();
        int status = 0;
        waitpid(child, &status, 0);
        return {.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0,
                .exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
                .out = contentOf(folder_.path("out")),
                .err = contentOf(folder_.path("err")),
                .allocations = readPlan().calls};
    }

  private:
    void writePlan(std::uint64_t refusedCall) {
        const test::AllocationPlan plan{.refusedCall = refusedCall, .calls = 0};
        std::array<char, sizeof plan> bytes{};
        std::memcpy(bytes.data(), &plan, sizeof plan);
        std::ofstream(folder_.path("plan"), std::ios::binary).write(bytes.data(), bytes.size());
    }

    test::AllocationPlan readPlan() {
        const std::string bytes = contentOf(folder_.path("plan"));
        test::AllocationPlan plan;
        std::memcpy(&plan, bytes.data(), std::min(bytes.size(), sizeof plan));
        return plan;
    }

    pid_t spawn() {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, input_.c_str(), O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, folder_.path("out").c_str(),
                                         flags, 0600);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, folder_.path("err").c_str(),
                                         flags, 0600);
        pid_t child = 0;
        const int error = posix_spawn(&child, CORVINEX_TOOL, &actions, nullptr,
                                      pointers(words_).data(), pointers(environment_).data());
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0) {
            throw std::system_error(error, std::generic_category(), CORVINEX_TOOL);
        }
        return child;
    }

    static std::vector<char*> pointers(std::vector<std::string>& texts) {
        std::vector<char*> found;
        for (std::string& text : texts) {
            found.push_back(text.data());
        }
        found.push_back(nullptr);
        return found;
    }

    TemporaryFolder folder_;
    std::vector<std::string> words_;
    std::string input_;
    std::vector<std::string> environment_;
};

/// Whether a process told that it failed for want of memory, or that what it needed at that place
/// is not to be had. A call tells by its record, where there is one.
bool isFailureTold(const ProcessEnd& end) {
    constexpr std::array told{
        "out of memory",
        "corvinex.so: ",  // the loader has words of its own
        // The C library gives the module no stream, and the module looks no further.
        R"(or it cannot be opened [quorra:corvinex:unsupportedFileFormat])",
        R"({"id":"quorra:corvinex:unsupportedFileFormat","arguments":[]})",
    };
    const std::string& text = end.err.empty() ? end.out : end.err;
    const bool isError =
        text.starts_with("corvinex: ") || text.find(R"("error":{"id":)") != std::string::npos;
    return isError && std::any_of(told.begin(), told.end(), [&text](const char* words) {
               return text.find(words) != std::string::npos;
           });
}

/// What is wrong with the end of a process one of whose allocations was refused; empty for nothing.
std::string faultOf(const ProcessEnd& end, const ProcessEnd& undisturbed) {
    if (end.signal != 0) {
        return "signal " + std::to_string(end.signal);
    }
    if (end.exitStatus == undisturbed.exitStatus && end.out == undisturbed.out &&
        end.err == undisturbed.err) {
        return "";
    }
    if (end.exitStatus != 1) {
        return "the refusal changed the output; exit status " + std::to_string(end.exitStatus);
    }
    return isFailureTold(end) ? "" : "nothing is told";
}

/// Refuses each allocation in turn, by several processes at once.
void refuseEach(const Invocation& invocation, int exitStatus) {
    const ProcessEnd undisturbed = Runner(invocation).run(0);
    ASSERT_EQ(undisturbed.exitStatus, exitStatus) << undisturbed.err;
    ASSERT_GT(undisturbed.allocations, 10U) << "the library that refuses is not loaded";
    std::atomic<std::uint64_t> next = 1;
    std::mutex reporting;
    const auto work = [&] {
        Runner runner(invocation);
        for (std::uint64_t call = next++; call <= undisturbed.allocations; call = next++) {
            const ProcessEnd end = runner.run(call);
            const std::string fault = faultOf(end, undisturbed);
            const std::scoped_lock lock(reporting);
            EXPECT_EQ(fault, "") << "allocation " << call << " of " << undisturbed.allocations
                                 << "; standard error: " << end.err;
        }
    };
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < std::max(std::thread::hardware_concurrency(), 2U); ++i) {
        workers.emplace_back(work);
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
}

class ProcessAllocations : public testing::Test {
  protected:
    void SetUp() override {
#ifdef CORVINEX_SANITIZED
        GTEST_SKIP() << "a sanitizer brings allocating functions of its own";
#endif
    }
};

const std::string sample = CORVINEX_SAMPLES "/photo.jpg";

/// A directory with a text that is not UTF-8, under a number with a name and one without; it leads
/// to the offset given.
std::string foreignText(std::uint64_t next) {
    const std::string text =
        "\x93\xFA\x96{\x8C\xEA\x82\xCC\x83"
        "e\x83L\x83X\x83g\x81"
        "B\x82\xB1\x82\xEA\x82\xCD\x95\xB6\x8E\x9A";
    return tool_test::TiffBytes()
        .header(8)
        .count(2)
        .entry(270, 2, text.size() + 1, 38)
        .entry(60000, 2, text.size() + 1, 38)
        .offset(next)
        .raw(text + '\0')
        .bytes();
}

TEST_F(ProcessAllocations, OneThatIsRefusedIsToldByShow) {
    refuseEach({{"show", sample}}, 0);
}

TEST_F(ProcessAllocations, OneThatIsRefusedIsToldByShowOfTheStandardInputAndOfAnyName) {
    const TemporaryFolder folder;
    const std::string chainThatComesBack = folder.file("a\xE4.tif", foreignText(8));
    refuseEach({{"show", "-", chainThatComesBack}, folder.file("a.tif", foreignText(0))}, 0);
}

TEST_F(ProcessAllocations, OneThatIsRefusedIsToldByACall) {
    refuseEach({{"call", sample, "--header-offset=30"}}, 0);
}

TEST_F(ProcessAllocations, OneThatIsRefusedIsToldByACallOfTheStandardInput) {
    const TemporaryFolder folder;
    refuseEach({{"call", "-"}, folder.file("a.tif", foreignText(0))}, 0);
}

TEST_F(ProcessAllocations, OneThatIsRefusedIsToldByARecord) {
    refuseEach({{"json", sample}}, 0);
}

TEST_F(ProcessAllocations, OneThatIsRefusedIsToldByARecordOfForeignTexts) {
    const TemporaryFolder folder;
    refuseEach({{"json", folder.file("a.tif", foreignText(0))}}, 0);
}

TEST_F(ProcessAllocations, OneThatIsRefusedIsToldByAnInspectionOfForeignTexts) {
    const TemporaryFolder folder;
    refuseEach({{"inspect", folder.file("a.tif", foreignText(0))}}, 0);
}

TEST_F(ProcessAllocations, OneThatIsRefusedDoesNotChangeTheReportOfBadUsage) {
    refuseEach({{"shwo", sample}}, 2);
}

}  // namespace

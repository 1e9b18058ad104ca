#include "python/binding/listed_paths.h"

#include <pybind11/stl.h>

#include <cstdint>
#include <utility>

#include "python/binding/bindings.h"

namespace py = pybind11;

namespace python {
namespace {

void append(std::string& bytes, std::uint64_t number) {
    for (unsigned shift = 0; shift < 64; shift += 8) {
        bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
    }
}

/// The files below operands, a number of them at a time.
class Listing {
  public:
    Listing(std::vector<std::string> operands, std::vector<std::string> extensions,
            bool followsLinks)
        : paths_(tool::PathOptions{.operands = std::move(operands),
                                   .namesFrom = std::nullopt,
                                   .extensions = std::move(extensions),
                                   .followsLinks = followsLinks,
                                   .wantsStamps = true}) {}

    py::tuple take(std::size_t most) {
        std::vector<tool::ListedPath> taken;
        {
            const py::gil_scoped_release released;
            while (taken.size() < most) {
                auto path = paths_.next();
                if (!path) {
                    break;
                }
                taken.push_back(*std::move(path));
            }
        }
        py::list names(taken.size());
        std::string asked;
        std::vector<std::optional<tool::FileStamp>> stamps;
        for (std::size_t place = 0; place < taken.size(); ++place) {
            names[place] = py::bytes(taken[place].name);
            asked.push_back(taken[place].isAsked ? '\1' : '\0');
            stamps.push_back(taken[place].stamp);
        }
        return py::make_tuple(names, py::bytes(asked), packedStamps(stamps));
    }

  private:
    tool::PathList paths_;
};

}  // namespace

py::bytes packedStamps(std::span<const std::optional<tool::FileStamp>> stamps) {
    std::string bytes;
    for (const auto& stamp : stamps) {
        const tool::FileStamp known = stamp.value_or(tool::FileStamp());
        bytes.push_back(stamp ? '\1' : '\0');
        append(bytes, known.size);
        append(bytes, static_cast<std::uint64_t>(known.modified));
        append(bytes, known.inode);
    }
    return bytes;
}

void bindListing(py::module_& extension) {
    py::class_<Listing>(extension, "Listing",
                        "The files below operands, in the order in which the tool reads them.")
        .def(py::init<std::vector<std::string>, std::vector<std::string>, bool>(),
             py::arg("operands"), py::kw_only(), py::arg("extensions"), py::arg("follow_links"))
        .def(
            "take", &Listing::take, py::arg("most"),
            "The next names, at most so many; for each a byte, 1 when it is told even if it is no\n"
            "image; and for each 25 bytes of its stamp. Empty behind the last.");
}

}  // namespace python

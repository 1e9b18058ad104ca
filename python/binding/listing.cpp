#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "python/binding/bindings.h"
#include "python/binding/refused_memory.h"
#include "python/binding/without_gil.h"
#include "tool/path_list.h"

namespace py = pybind11;

namespace python {
namespace {

/// The files below operands, a number of them at a time.
class Listing {
  public:
    Listing(std::vector<std::string> operands, std::vector<std::string> extensions,
            bool followsLinks)
        : paths_(tool::PathOptions{.operands = std::move(operands),
                                   .namesFrom = std::nullopt,
                                   .extensions = std::move(extensions),
                                   .followsLinks = followsLinks,
                                   .wantsStamps = false}) {}

    py::tuple take(std::size_t most) {
        std::vector<tool::ListedPath> taken;
        withoutGil([&] {
            while (taken.size() < most) {
                auto path = paths_.next();
                if (!path) {
                    break;
                }
                taken.push_back(*std::move(path));
            }
        });
        py::list names(taken.size());
        std::string asked;
        for (std::size_t place = 0; place < taken.size(); ++place) {
            names[place] = py::bytes(taken[place].name);
            asked.push_back(taken[place].isAsked ? '\1' : '\0');
        }
        return py::make_tuple(names, py::bytes(asked));
    }

  private:
    tool::PathList paths_;
};

}  // namespace

void bindListing(py::module_& extension) {
    addClass<Listing>(extension, "Listing",
                      "The files below operands, in the order in which the tool reads them.")
        .def(py::init<std::vector<std::string>, std::vector<std::string>, bool>(),
             py::arg("operands"), py::kw_only(), py::arg("extensions"), py::arg("follow_links"))
        .def(
            "take", &Listing::take, py::arg("most"),
            "The next names, at most so many; for each a byte, 1 when it is told even if it is no\n"
            "image; and for each 25 bytes of its stamp. Empty behind the last.");
}

}  // namespace python

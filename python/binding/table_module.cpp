#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <chrono>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <vector>

#include "python/binding/bindings.h"
#include "python/binding/entry_value.h"
#include "python/binding/inspection.h"
#include "python/binding/table_column.h"
#include "python/binding/table_rows.h"
#include "python/binding/table_run.h"
#include "python/binding/without_gil.h"
#include "python/binding/word.h"
#include "tool/usage_error.h"

namespace py = pybind11;

namespace python {
namespace {

using Places = std::vector<TableRun::Place>;

/// Objects for texts, one for those that are equal.
class TextObjects {
  public:
    enum class Encoding : std::uint8_t { Utf8, FileName };
    explicit TextObjects(Encoding encoding) : encoding_(encoding) {}

    py::object of(std::string_view text) {
        // Names of files are all different.
        if (encoding_ == Encoding::FileName) {
            return nameOf(text);
        }
        const auto found = made_.find(text);
        return found != made_.end() ? found->second
                                    : made_.emplace(text, toText(text)).first->second;
    }

  private:
    static py::object nameOf(std::string_view name) {
        auto made = py::reinterpret_steal<py::object>(
            PyUnicode_DecodeFSDefaultAndSize(name.data(), static_cast<Py_ssize_t>(name.size())));
        if (!made) {
            throw py::error_already_set();
        }
        return made;
    }

    Encoding encoding_;
    std::unordered_map<std::string_view, py::object> made_;
};

template <class Number, class Get>
py::array numbersOf(const Places& places, std::size_t column, Number nothing, Get get) {
    py::array_t<Number> numbers(static_cast<py::ssize_t>(places.size()));
    Number* next = numbers.mutable_data();
    for (const TableRun::Place& place : places) {
        const ColumnCells& cells = place.rows->column(column);
        *next++ = cells.isThere(place.row) ? get(cells, place.row) : nothing;
    }
    return numbers;
}

py::array presenceOf(const Places& places, std::size_t column) {
    py::array_t<bool> isMissing(static_cast<py::ssize_t>(places.size()));
    bool* next = isMissing.mutable_data();
    for (const TableRun::Place& place : places) {
        *next++ = !place.rows->column(column).isThere(place.row);
    }
    return isMissing;
}

py::list textsOf(const Places& places, std::size_t column, const py::object& nothing) {
    TextObjects objects(column == TableRows::File ? TextObjects::Encoding::FileName
                                                  : TextObjects::Encoding::Utf8);
    py::list texts(places.size());
    for (std::size_t row = 0; row < places.size(); ++row) {
        const ColumnCells& cells = places[row].rows->column(column);
        texts[row] =
            cells.isThere(places[row].row) ? objects.of(cells.text(places[row].row)) : nothing;
    }
    return texts;
}

/// The kind of a column, its cells, and for integers which of them are missing.
py::tuple columnOf(const Places& places, std::size_t column, ColumnKind kind,
                   const py::object& nothing) {
    const auto integer = [](const ColumnCells& cells, std::size_t row) {
        return cells.integer(row);
    };
    const auto number = [](const ColumnCells& cells, std::size_t row) { return cells.number(row); };
    switch (kind) {
        case ColumnKind::Integer:
            return py::make_tuple("Int64", numbersOf(places, column, std::int64_t{1}, integer),
                                  presenceOf(places, column));
        case ColumnKind::Number:
            return py::make_tuple(
                "float64",
                numbersOf(places, column, std::numeric_limits<double>::quiet_NaN(), number),
                py::none());
        case ColumnKind::Time:
            return py::make_tuple(
                "datetime64[ns]",
                numbersOf(places, column, std::numeric_limits<std::int64_t>::min(), integer),
                py::none());
        case ColumnKind::Text:
            break;
    }
    return py::make_tuple("string", textsOf(places, column, nothing), py::none());
}

/// Waits for the threads, and looks now and then whether the user has interrupted them.
void await(TableRun& run) {
    constexpr std::chrono::milliseconds betweenLooks{50};
    bool hasEnded = false;
    while (!hasEnded) {
        withoutGil([&] { hasEnded = run.waitFor(betweenLooks); });
        if (PyErr_CheckSignals() != 0) {
            throw py::error_already_set();
        }
    }
    run.raiseFailure();
}

py::list readTable(const std::vector<std::string>& paths, const std::vector<Word>& names,
                   unsigned jobs, std::optional<std::uint64_t> maxValues,
                   const py::object& nothing) {
    try {
        const TablePlan plan(textsOf(names), {.maxValues = maxValues, .codesAsNumbers = false});
        tool::PathOptions options;
        options.operands = paths;
        TableRun run(plan, options, jobs);
        await(run);
        const Places places = run.places();
        py::list columns;
        for (std::size_t column = 0; column < TableRows::FirstPlanned + names.size(); ++column) {
            const ColumnKind kind = column < TableRows::FirstPlanned
                                        ? ColumnKind::Text
                                        : plan.kinds[column - TableRows::FirstPlanned];
            columns.append(columnOf(places, column, kind, nothing));
        }
        return columns;
    } catch (const tool::UsageError& error) {
        throw py::value_error(error.what());
    } catch (const std::system_error& error) {
        raiseSystemError(error, {});
    }
}

}  // namespace

void bindTable(py::module_& extension) {
    extension.def("usual_columns", &tool::CsvColumns::forDirectories,
                  "The names of the columns that a table has when none are asked for.");
    extension.def("read_table", &readTable, py::arg("paths"), py::arg("names"), py::arg("jobs"),
                  py::arg("max_values"), py::arg("nothing"),
                  "The columns of a table about files: for each its type, its cells and which of "
                  "them are missing.");
}

}  // namespace python

#include "python/binding/entry_object.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/directory.h"
#include "inspect/file_content.h"
#include "python/binding/answered.h"
#include "python/binding/entry_value.h"

namespace py = pybind11;

namespace python {
namespace {

using corvinex::inspect::Entry;
using corvinex::inspect::File;

// A stack of pages holds entries by the hundred thousand, and each is made when it is looked at:
// the class is written for the interpreter itself, in which an instance costs a few words.
struct EntryObject {
    PyObject_HEAD PyObject* file;
    const Inspection* inspection;  ///< that of the file
    std::uint32_t index;
};

PyTypeObject*& entryType() {
    static PyTypeObject* type = nullptr;
    return type;
}

/// What a function of the class is asked about.
class Asked {
  public:
    explicit Asked(PyObject* object)
        // What the interpreter hands to a class's functions is an instance of the class.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
        : object_(*reinterpret_cast<EntryObject*>(object)) {}

    [[nodiscard]] const Inspection& inspection() const { return *object_.inspection; }
    [[nodiscard]] const Entry& entry() const { return in(inspection().file()); }
    [[nodiscard]] const Entry& in(const File& file) const { return file.entries()[object_.index]; }

    /// Has the value read, and what else is wanted of it.
    template <class Read>
    [[nodiscard]] auto read(Read task) const {
        return inspection().readBriefly([&](const File& file) { return isAtHand(in(file)); },
                                        [&](const File& file) { return task(in(file)); });
    }

  private:
    /// Whether the value is read in less time than it takes to let other threads go on.
    static bool isAtHand(const Entry& entry) {
        constexpr std::uint64_t fewBytes = 4096;
        const auto offset = entry.offset();
        return !offset || (entry.byteCount() <= fewBytes &&
                           entry.file().source.holds(*offset, entry.byteCount()));
    }

    EntryObject& object_;
};

py::object noneOr(std::string_view text) {
    return text.empty() ? py::object(py::none()) : py::object(toText(text));
}

py::object numberOf(const Asked& asked) {
    return py::int_(asked.entry().number());
}

py::object nameOf(const Asked& asked) {
    return noneOr(asked.entry().name());
}

py::object fieldOf(const Asked& asked) {
    return noneOr(asked.entry().fieldName());
}

py::object typeOf(const Asked& asked) {
    const std::string_view name = asked.entry().typeName();
    return name.empty() ? py::object(py::int_(asked.entry().typeCode())) : py::object(toText(name));
}

py::object countOf(const Asked& asked) {
    return py::int_(asked.entry().count());
}

py::object offsetOf(const Asked& asked) {
    const auto offset = asked.entry().offset();
    return offset ? py::object(py::int_(*offset)) : py::object(py::none());
}

py::object pathOf(const Asked& asked) {
    return toText(asked.entry().directory().path());
}

py::object valueOf(const Asked& asked) {
    const Entry& entry = asked.entry();
    if (py::object number = numberInEntry(entry)) {
        return number;
    }
    // Numbers that lie in the entry are read like what else it tells: nothing of the file is asked.
    if (!entry.offset() && corvinex::inspect::formOfNumbers(entry, 1)) {
        return toPython(readValue(entry));
    }
    return toPython(asked.read(readValue));
}

std::optional<std::string> readText(const Entry& entry) {
    return entry.text();
}

py::object textOf(const Asked& asked) {
    const auto text = asked.read(readText);
    return text ? py::object(toText(*text)) : py::object(py::none());
}

py::object wordsOf(const Asked& asked) {
    const auto words = asked.read([](const Entry& entry) {
        const auto value = entry.value();
        return value ? entry.words(*value) : std::nullopt;
    });
    return words ? py::object(toTexts(*words)) : py::object(py::none());
}

py::object charsetOf(const Asked& asked) {
    return noneOr(asked.read(readValue).interpretation.charset);
}

py::object restOf(const Asked& asked) {
    const ReadValue read = asked.read(readValue);
    const std::span<const std::uint8_t> rest = read.interpretation.rest;
    return rest.empty() ? py::object(py::none()) : py::object(toBytes(std::as_bytes(rest)));
}

py::object directoriesOf(const Asked& asked) {
    const std::span<const corvinex::inspect::Directory> all =
        asked.inspection().file().directories();
    const std::span<const std::uint32_t> targets = asked.entry().targets();
    py::tuple paths(targets.size());
    for (std::size_t place = 0; place < targets.size(); ++place) {
        const std::uint32_t target = targets[place];
        paths[place] =
            target < all.size() ? py::object(toText(all[target].path())) : py::object(py::none());
    }
    return paths;
}

template <py::object (*property)(const Asked&)>
PyObject* get(PyObject* object, void* /*nothing*/) {
    return answered([&] { return property(Asked(object)); });
}

std::array<PyGetSetDef, 14> properties{{
    {"number", get<numberOf>, nullptr, "The tag's number.", nullptr},
    {"name", get<nameOf>, nullptr,
     "The standard's name of the tag in this kind of directory; None without one.", nullptr},
    {"field", get<fieldOf>, nullptr,
     "What the result of corvinex.read() calls the tag; None when it has no name for it.", nullptr},
    {"type", get<typeOf>, nullptr,
     "The field type, such as \"SHORT\"; its code, an int, when it is none that is known.",
     nullptr},
    {"count", get<countOf>, nullptr, "The number of elements, as the file tells it.", nullptr},
    {"offset", get<offsetOf>, nullptr,
     "The value's position in the file, in bytes, past the end as well; None when it lies\n"
     "in the entry, for a count of 0 and for unknown types.",
     nullptr},
    {"directory", get<pathOf>, nullptr, "The path of the directory that holds the entry.", nullptr},
    {"value", get<valueOf>, nullptr,
     "The value, read anew each time: int, float, Rational, str, list of str, bytes, a NumPy\n"
     "array, or None for what the file does not hold. Arrays of numbers have the shape (n,) and\n"
     "the file's type, uint8 to int64, float32 or float64; those of rationals have the shape\n"
     "(n, 2), numerators and denominators, and are uint32 or int32. Raises OSError when the\n"
     "file cannot be read.",
     nullptr},
    {"text", get<textOf>, nullptr,
     "What a person wants to read, where that says more than the value; else None.", nullptr},
    {"words", get<wordsOf>, nullptr,
     "The words for codes and flags, an unknown code as its number; None for tags without\n"
     "words.",
     nullptr},
    {"charset", get<charsetOf>, nullptr,
     "The character set that a comment names: \"ASCII\", \"JIS\", \"UNICODE\" or\n"
     "\"UNDEFINED\"; else None.",
     nullptr},
    {"rest", get<restOf>, nullptr,
     "The bytes behind the zero that ends a text, unless all of them are zeros; else None.",
     nullptr},
    {"directories", get<directoriesOf>, nullptr,
     "For each value of a pointer the path of the directory that it leads to, None where it\n"
     "leads to none; an empty tuple for other tags and when the pointer was not followed.",
     nullptr},
    {},
}};

PyObject* represent(PyObject* object) {
    return answered([&]() -> py::object {
        const Asked asked(object);
        if (asked.inspection().isClosed()) {
            return py::str("<corvinex.Entry: closed>");
        }
        const py::str format("<corvinex.Entry {}.{}: {}, count {}>");
        const py::object name = nameOf(asked);
        return format.format(pathOf(asked), name.is_none() ? numberOf(asked) : name, typeOf(asked),
                             countOf(asked));
    });
}

PyObject* asText(PyObject* object) {
    return answered([&]() -> py::object {
        const Asked asked(object);
        const py::object text = textOf(asked);
        return text.is_none() ? py::object(py::str(valueOf(asked))) : text;
    });
}

PyObject* reduce(PyObject* object, PyObject* /*nothing*/) {
    static_cast<void>(object);
    PyErr_SetString(PyExc_TypeError,
                    "an entry belongs to its open file and cannot be pickled; its value can");
    return nullptr;
}

void destroy(PyObject* object) {
    PyTypeObject* const type = Py_TYPE(object);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): it is an instance of the class
    Py_XDECREF(reinterpret_cast<EntryObject*>(object)->file);
    type->tp_free(object);
    Py_DECREF(type);
}

std::array<PyMethodDef, 2> methods{{
    {"__reduce__", reduce, METH_NOARGS, "Refuses to be pickled."},
    {},
}};

constexpr const char* documentation =
    "One entry of a directory. Nothing of its value is read before it is asked for.\n\n"
    "It belongs to its file, and raises ValueError when that is closed.\n\n"
    ">>> import corvinex\n"
    ">>> entry = corvinex.inspect(\"samples/photo.jpg\")[\"0.exif.ExposureTime\"]\n"
    ">>> entry.value, entry.text\n"
    "(Rational(1, 250), '1/250 s')\n";

template <class Function>
void* slot(Function* function) {
    return reinterpret_cast<void*>(function);
}

}  // namespace

py::object makeEntry(py::handle file, const Inspection& inspection, std::uint32_t index) {
    EntryObject* const made = PyObject_New(EntryObject, entryType());
    if (made == nullptr) {
        throw py::error_already_set();
    }
    made->file = file.inc_ref().ptr();
    made->inspection = &inspection;
    made->index = index;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): it begins with an object
    return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(made));
}

void bindEntry(py::module_& extension) {
    std::array<PyType_Slot, 7> slots{{
        {Py_tp_doc, const_cast<char*>(documentation)},
        {Py_tp_dealloc, slot(destroy)},
        {Py_tp_repr, slot(represent)},
        {Py_tp_str, slot(asText)},
        {Py_tp_getset, properties.data()},
        {Py_tp_methods, methods.data()},
        {},
    }};
    PyType_Spec layout{"corvinex.Entry", sizeof(EntryObject), 0,
                       Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots.data()};
    const auto type = py::reinterpret_steal<py::object>(PyType_FromSpec(&layout));
    if (!type) {
        throw py::error_already_set();
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): a class is an object too
    entryType() = reinterpret_cast<PyTypeObject*>(py::object(type).release().ptr());
    extension.add_object("Entry", type);
}

}  // namespace python

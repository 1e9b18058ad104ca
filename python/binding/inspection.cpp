#include "python/binding/inspection.h"

#include <cerrno>
#include <string_view>

#include "tool/special_file.h"
#include "tool/tag_catalog.h"
#include "tool/usage_error.h"

namespace py = pybind11;

namespace python {
namespace {

using corvinex::inspect::File;

corvinex::inspect::TagSelection selectionOf(const std::vector<std::string>& tags) {
    try {
        return tool::tagsAskedFor(tags);
    } catch (const tool::UsageError& error) {
        throw py::value_error(error.what());
    }
}

File open(const Inspection::Input& input, const corvinex::inspect::Options& options) {
    if (input.isBytes) {
        return File::fromBytes(input.buffer.bytes(), options);
    }
    if (input.descriptor.isOpen()) {
        return File::fromDescriptor(input.descriptor.number(), options);
    }
    return File::open(input.name.value_or(std::string()), options);
}

}  // namespace

HeldBuffer::HeldBuffer(py::handle object) {
    Py_buffer view{};
    if (PyObject_GetBuffer(object.ptr(), &view, PyBUF_SIMPLE) != 0) {
        throw py::error_already_set();
    }
    view_ = view;
}

HeldBuffer::~HeldBuffer() {
    // A thread that the interpreter's end unwinds has no lock.
    if (view_ && PyGILState_Check() != 0) {
        PyBuffer_Release(&*view_);
    }
}

std::span<const std::byte> HeldBuffer::bytes() const noexcept {
    if (!view_) {
        return {};
    }
    return {static_cast<const std::byte*>(view_->buf), static_cast<std::size_t>(view_->len)};
}

void refuseClosed() {
    throw py::value_error("the file is closed");
}

void raiseSystemError(const std::system_error& error, const std::optional<std::string>& name) {
    const int number = error.code().value();
    // Of a pipe or a device the system only says that one cannot seek in it.
    const auto special =
        number == ESPIPE ? tool::refusalOfSpecialFile(name.value_or("")) : std::nullopt;
    const std::string text = special ? std::string(*special) : error.code().message();
    const py::object file =
        name ? py::reinterpret_steal<py::object>(PyUnicode_DecodeFSDefaultAndSize(
                   name->data(), static_cast<Py_ssize_t>(name->size())))
             : py::object(py::none());
    PyErr_SetObject(PyExc_OSError, py::make_tuple(number, text, file).ptr());
    throw py::error_already_set();
}

Inspection::Inspection(Input input, const corvinex::inspect::Options& options,
                       const std::vector<std::string>& tags)
    : input_(std::move(input)),
      options_{.maxValues = std::nullopt, .tags = selectionOf(tags), .codesAsNumbers = false},
      isSelective_(!tags.empty()) {
    try {
        withoutGil([&] { file_ = open(input_, options); });
    } catch (const std::system_error& error) {
        raiseSystemError(error, input_.name);
    }
}

Inspection::~Inspection() = default;

corvinex::inspect::FileFacts Inspection::facts() const {
    // As a record has them of a file that comes without a name, on standard input.
    constexpr std::string_view nameless = "-";
    corvinex::inspect::FileFacts facts;
    facts.name = input_.name.value_or(std::string(nameless));
    if (input_.name && file_) {
        facts.size = file_->size();
        facts.modified = file_->modified();
    }
    return facts;
}

void Inspection::close() {
    while (!mutex_.try_lock()) {
        withoutGil([this] { const std::lock_guard wait(mutex_); });
    }
    {
        const std::lock_guard lock(mutex_, std::adopt_lock);
        file_.reset();
    }
    input_.descriptor = tool::FileDescriptor();
    input_.buffer = HeldBuffer();
}

}  // namespace python

#pragma once

#include <pybind11/pybind11.h>

#include <exception>
#include <utility>

namespace python {

/// Does some work while other threads of the interpreter go on, and raises what the work raises.
/// Where the interpreter ends meanwhile, taking the lock again ends the thread by unwinding it,
/// which no destructor and no noexcept function can let pass: hence no scoped guard. For the same
/// reason the caller holds no Python object that it would have to give back.
template <class Work>
void withoutGil(Work&& work) {
    std::exception_ptr raised;
    PyThreadState* const thread = PyEval_SaveThread();
    try {
        std::forward<Work>(work)();
    } catch (const std::exception&) {
        raised = std::current_exception();
    }
    PyEval_RestoreThread(thread);
    if (raised) {
        std::rethrow_exception(raised);
    }
}

}  // namespace python

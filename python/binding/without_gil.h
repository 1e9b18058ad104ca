#pragma once

#include <cxxabi.h>
#include <pybind11/pybind11.h>
#include <unistd.h>

#include <exception>
#include <utility>

#include "python/binding/throwing.h"

namespace python {

/// Takes the interpreter's lock again. Where the interpreter ends meanwhile, it ends the thread by
/// unwinding it: destructors would give back Python objects without the lock, such as the
/// dictionary that pybind11 makes of keywords, and a noexcept function would end the process. Such
/// a thread stays where it is instead, until the process has ended.
inline void takeGil(PyThreadState* thread) {
    try {
        PyEval_RestoreThread(thread);
    } catch (const abi::__forced_unwind&) {
        for (;;) {
            ::pause();
        }
    }
}

/// Does some work while other threads of the interpreter go on, and raises what the work raises.
/// The work touches no Python object.
template <class Work>
void withoutGil(Work&& work) {
    prepareToThrow();
    std::exception_ptr raised;
    PyThreadState* const thread = PyEval_SaveThread();
    try {
        std::forward<Work>(work)();
    } catch (const std::exception&) {
        raised = std::current_exception();
    }
    takeGil(thread);
    if (raised) {
        std::rethrow_exception(raised);
    }
}

}  // namespace python

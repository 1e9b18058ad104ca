#pragma once

#include <pybind11/pybind11.h>

#include <typeinfo>
#include <utility>

namespace python {

/// To be given to each class that pybind11 makes: where the interpreter has no memory for an
/// instance it raises MemoryError. pybind11 itself takes the memory for granted.
[[nodiscard]] pybind11::custom_type_setup refusingWithoutMemory();

/// How pybind11 completes an instance once its object has been made.
using Completion = void (*)(pybind11::detail::instance*, const void*);

template <class Instance>
inline Completion pybindsCompletion = nullptr;

/// Completes an instance without any allocation.
template <class Instance>
void completeUnlisted(pybind11::detail::instance* made, const void* holder) {
    auto place = made->get_value_and_holder(pybind11::detail::get_type_info(typeid(Instance)));
    place.set_instance_registered(true);
    pybindsCompletion<Instance>(made, holder);
    place.set_instance_registered(false);
}

/// Adds a class to the module, from which none can be derived. An instance is either made whole, or
/// it is refused with MemoryError and nothing is left of it. Its instances are not in pybind11's
/// list of all instances: an entry there may be refused when pybind11 expects no error any more. So
/// a reference that C++ returns is never found to be an instance that is there already.
template <class Instance>
[[nodiscard]] pybind11::class_<Instance> addClass(pybind11::module_& extension, const char* name,
                                                  const char* description) {
    pybind11::class_<Instance> added(extension, name, description, refusingWithoutMemory(),
                                     pybind11::is_final());
    auto* const known = pybind11::detail::get_type_info(typeid(Instance), true);
    pybindsCompletion<Instance> = std::exchange(known->init_instance, completeUnlisted<Instance>);
    return added;
}

}  // namespace python

#pragma once

// Marks what a program may use of the shared library. Everything else in it is compiled with hidden
// visibility.
#define CORVINEX_API __attribute__((visibility("default")))

#pragma once

// Marks what crosses the border between the module and its host. Everything else in either library
// is compiled with hidden visibility.
#define ZX_HOST_API __attribute__((visibility("default")))

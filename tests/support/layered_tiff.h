#pragma once

#include "tests/support/tiff_builder.h"

namespace test {

/// Two pages, a sub-directory, an EXIF directory with an interoperability directory inside and a
/// GPS directory, with values inside and outside the entries.
inline TiffBuilder layeredTiff(Order order, Layout layout) {
    TiffBuilder builder(order, layout);
    builder.add({shorts(256, {4}), shorts(257, {3}), shorts(258, {8, 8, 8}), shorts(262, {2}),
                 text(270, "a description"), rationals(282, RATIONAL, {{72, 1}}),
                 pointers(330, LONG, {2}), pointers(34665, LONG, {3}), pointers(34853, LONG, {5}),
                 text(60000, "without a name")});
    builder.add({longs(273, {8, 16, 24}), longs(279, {8, 8, 8})});
    builder.add({text(270, "a sub-directory")});
    builder.add({text(36867, "2024:03:05 14:07:09"), pointers(40965, LONG, {4})});
    builder.add({text(1, "R98")});
    builder.add({rationals(2, RATIONAL, {{51, 1}, {30, 1}, {0, 1}})});
    return builder.chain({0, 1});
}

}  // namespace test

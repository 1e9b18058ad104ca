#pragma once

namespace tool {

/// Takes the environment's locale, by which texts are decoded and months named. A locale that is
/// not there changes nothing. Raises std::bad_alloc where one that is there could not be read for
/// lack of memory: the output would be that of another locale without a word.
void setProcessLocale();

}  // namespace tool

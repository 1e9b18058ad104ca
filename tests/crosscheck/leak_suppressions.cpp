// libtiff 4.5 forgets the field tables of EXIF and GPS directories that it writes. The module
// writes nothing, so its own leaks stay visible. The sanitizer's runtime looks for this name.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libtiff.so";
}

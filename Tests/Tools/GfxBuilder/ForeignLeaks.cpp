// Reading its configuration, fontconfig loses a few hundred bytes, once a process. Whatever else is lost is ours. The
// sanitizer looks for this function from its own library, so that it must be seen from there.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

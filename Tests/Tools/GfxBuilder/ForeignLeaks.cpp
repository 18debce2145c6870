// Reading its configuration, fontconfig loses a few hundred bytes, once a process. Whatever else is lost is ours.
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

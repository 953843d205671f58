#ifdef __GNUC__

// Asked for by the leak sanitizer, never called in other builds. The font library, which Qt's platform
// loads, keeps its tables when the process ends.
extern "C" const char* __lsan_default_suppressions();

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

#endif

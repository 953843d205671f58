#ifdef __GNUC__

// Called by the leak sanitizer only. The font library, which Qt's platform
// loads, keeps its tables when the process ends.
extern "C" const char* __lsan_default_suppressions();

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

#endif

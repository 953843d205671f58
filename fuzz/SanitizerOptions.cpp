// Linked into every target. A variable ASAN_OPTIONS still has the last word.

/// Most inputs allocate thousands of small blocks, and noting the whole stack of each one takes a tenth of the time; so
/// does touching ever new memory, as the default quarantine of 256 MB does. This one holds all that an input frees.
/// For the stacks, run a target again with the input that it left behind and ASAN_OPTIONS=malloc_context_size=30.
extern "C" const char* __asan_default_options()  // NOLINT: the sanitizer's name
{
    return "malloc_context_size=2:quarantine_size_mb=8";
}

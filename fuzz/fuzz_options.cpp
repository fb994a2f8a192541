// The sanitizers' settings of the fuzz targets: an error is told with the place where it occurs,
// and without the places of earlier allocations, which cost a third of the time.
extern "C" const char* __asan_default_options() { return "malloc_context_size=0"; }

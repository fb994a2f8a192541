// The sanitizers' settings of the fuzz targets. The places of earlier allocations are not kept, and
// freed memory only for a while: both cost more than the targets do. Leaks are for the tests, which
// look for them once per program.
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=0:quarantine_size_mb=16:detect_leaks=0";
}

// What the leak sanitizer is to pass over, where one is linked in: what the desktop's bus library
// keeps.

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() { return "leak:libdbus-1\n"; }

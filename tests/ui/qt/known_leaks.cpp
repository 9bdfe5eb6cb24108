// What the leak sanitizer is to pass over, where one is linked in: what the desktop's bus library
// keeps, and the toolkit's library, which stays open for good.

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() { return "leak:libdbus-1\nleak:OpenToolkit\n"; }

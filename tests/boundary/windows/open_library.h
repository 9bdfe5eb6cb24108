#pragma once

#include <windows.h>

static void* OpenLibrary(const char* path) { return (void*)LoadLibraryA(path); }
static void* FindSymbol(void* library, const char* name) {
  return (void*)(INT_PTR)GetProcAddress((HMODULE)library, name);
}
static int CloseLibrary(void* library) { return FreeLibrary((HMODULE)library) != 0; }

/* The decorated names of the version members, by the compiler of the host. */
#define RULE_VERSION "?version@PVTEOSLUMPRULE@@QEAAHXZ"
#define FOLDER_VERSION "?version@PVTEOSLUMPRULEFOLDER@@QEAAHXZ"
#define COMPONENT_VERSION "?version@PVTEOSLUMPRULE_COMPONENT@@QEAAHXZ"
#define ADDITION_VERSION "?version@PVTEOSLUMPRULE_COMPONENT_ADDITION@@QEAAHXZ"

#pragma once

#include <windows.h>

static void* OpenLibrary(const char* path) { return (void*)LoadLibraryA(path); }
static void* FindSymbol(void* library, const char* name) {
  return (void*)(INT_PTR)GetProcAddress((HMODULE)library, name);
}
static int CloseLibrary(void* library) { return FreeLibrary((HMODULE)library) != 0; }

static int IsLoaded(const char* path) { return GetModuleHandleA(path) != NULL; }

static int FreeSlots(void) {
  static DWORD slots[2000];
  int count = 0;
  while ((slots[count] = TlsAlloc()) != TLS_OUT_OF_INDEXES) ++count;
  for (int i = 0; i < count; ++i) TlsFree(slots[i]);
  return count;
}
/* More than a process has slots. */
enum { LOADS = 1200 };

/* This program is one in UTF-8. */
#define FILE_NAME "C:\\d\\\xC3\x98.afi"
#define STORED_FILE_NAME "C:\\d\\\xD8.afi"

/* The decorated names of the version members, by the compiler of the host. */
#define RULE_VERSION "?version@PVTEOSLUMPRULE@@QEAAHXZ"
#define FOLDER_VERSION "?version@PVTEOSLUMPRULEFOLDER@@QEAAHXZ"
#define COMPONENT_VERSION "?version@PVTEOSLUMPRULE_COMPONENT@@QEAAHXZ"
#define ADDITION_VERSION "?version@PVTEOSLUMPRULE_COMPONENT_ADDITION@@QEAAHXZ"

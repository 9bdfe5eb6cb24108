#pragma once

#include <dlfcn.h>

static void* OpenLibrary(const char* path) { return dlopen(path, RTLD_NOW | RTLD_LOCAL); }
static void* FindSymbol(void* library, const char* name) { return dlsym(library, name); }
static int CloseLibrary(void* library) { return dlclose(library) == 0; }

/* The library of this name beside another one, while it is loaded. */
static int IsLoaded(const char* path) {
  void* library = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
  if (library != NULL) dlclose(library);
  return library != NULL;
}

/* How many more slots for values of each thread the process has, where it has a number of them. */
static int FreeSlots(void) { return 0; }
enum { LOADS = 2 };

/* A name of a file as a process has it, and as case data keep it: bytes are bytes. */
#define FILE_NAME "/d/\xC3\x98.afi"
#define STORED_FILE_NAME FILE_NAME

/* The decorated names of the version members, by the compiler of this platform. */
#define RULE_VERSION "_ZN14PVTEOSLUMPRULE7versionEv"
#define FOLDER_VERSION "_ZN20PVTEOSLUMPRULEFOLDER7versionEv"
#define COMPONENT_VERSION "_ZN24PVTEOSLUMPRULE_COMPONENT7versionEv"
#define ADDITION_VERSION "_ZN33PVTEOSLUMPRULE_COMPONENT_ADDITION7versionEv"

#pragma once

#include <dlfcn.h>

static void* OpenLibrary(const char* path) { return dlopen(path, RTLD_NOW | RTLD_LOCAL); }
static void* FindSymbol(void* library, const char* name) { return dlsym(library, name); }
static int CloseLibrary(void* library) { return dlclose(library) == 0; }

/* The decorated names of the version members, by the compiler of this platform. */
#define RULE_VERSION "_ZN14PVTEOSLUMPRULE7versionEv"
#define FOLDER_VERSION "_ZN20PVTEOSLUMPRULEFOLDER7versionEv"
#define COMPONENT_VERSION "_ZN24PVTEOSLUMPRULE_COMPONENT7versionEv"
#define ADDITION_VERSION "_ZN33PVTEOSLUMPRULE_COMPONENT_ADDITION7versionEv"

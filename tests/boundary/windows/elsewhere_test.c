/* A module in a folder whose name the code page lacks finds the inflow library beside it.
   Usage: elsewhere_test LIBRARY INFLOW_LIBRARY */

#include <stdint.h>
#include <stdio.h>
#include <windows.h>

/* A library's copy in the folder, under its own name. */
static void Copy(const char* from, const wchar_t* name) {
  wchar_t wide[MAX_PATH];
  MultiByteToWideChar(CP_ACP, 0, from, -1, wide, MAX_PATH);
  CopyFileW(wide, name, FALSE);
}

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  CreateDirectoryW(L"\x65e5\x672c", NULL);
  Copy(argv[1], L"\x65e5\x672c\\Intersect.dll");
  Copy(argv[2], L"\x65e5\x672c\\InflowCalc.dll");
  wchar_t path[MAX_PATH];
  GetFullPathNameW(L"\x65e5\x672c\\Intersect.dll", MAX_PATH, path, NULL);
  const HMODULE module = LoadLibraryW(path);
  if (module == NULL) return 3;
  union {
    FARPROC address;
    int32_t (*create)(void** model, void* err);
  } entry = {GetProcAddress(module, "ExtCreateInstance")};
  char err[264];
  void* model = NULL;
  entry.create(&model, err);
  const int found = GetModuleHandleW(L"InflowCalc.dll") != NULL;
  if (!found) fprintf(stderr, "the inflow library was not found\n");
  return found ? 0 : 1;
}

// A library's slots for values of each thread. The run-time library that is linked into it takes
// them from the process and never gives them back, and a process has 1,088: a host that loads and
// unloads the library again and again would run out of them. So the library's requests come here,
// and what was given goes back when the library is unloaded.

#include <array>
#include <cstdlib>

#include "platform/windows/win32.h"

using Allocate = DWORD(WINAPI*)();

/// The system's own function, under the name that the linker gives it.
extern "C" Allocate __real___imp_TlsAlloc;

namespace {

struct ThreadSlots {
  static constexpr size_t kMost = 16;
  std::array<DWORD, kMost> slots;
  size_t count;
};

// Zero before any code of the library runs, as requests come before objects are made.
ThreadSlots taken;

DWORD WINAPI TakeSlot() {
  const DWORD slot = __real___imp_TlsAlloc();
  if (slot != TLS_OUT_OF_INDEXES && taken.count < ThreadSlots::kMost) {
    taken.slots[taken.count++] = slot;
  }
  return slot;
}

void GiveSlotsBack() {
  while (taken.count > 0) TlsFree(taken.slots[--taken.count]);
}

// Registered before anything else, so that it runs when nothing is left that may use a slot.
[[gnu::constructor(101)]] void GiveBackAtTheEnd() { std::atexit(GiveSlotsBack); }

}  // namespace

/// What the linker puts in the place of the run-time library's import of TlsAlloc.
extern "C" {
extern const Allocate __wrap___imp_TlsAlloc;
const Allocate __wrap___imp_TlsAlloc = TakeSlot;
}

// A call that survives a processor fault (illegal or privileged instruction, bad memory access).
#pragma once

namespace pxb {

// Calls function(argument); false if it faulted. The function must be plain code without
// destructors. For use while the library is loaded: on Linux the signal handlers are those of the
// whole process.
bool RunGuarded(void (*function)(void*), void* argument);

}  // namespace pxb

// What the process has freed, for the machine.
#pragma once

namespace quillon {

// Gives back the memory that the allocator keeps for later. Asked for behind work that needed
// much more than the hours after it will.
void ReturnFreeMemory();

}  // namespace quillon

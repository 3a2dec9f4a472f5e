#pragma once

/// What the program has freed, but the C library keeps for it, goes back to the system. A page
/// leaves some megabytes of that behind, which the next one would mostly not use again.
namespace FreedMemory {
/// In a while, once for all that is freed until then, in a thread beside the interface.
void giveBackSoon();
}

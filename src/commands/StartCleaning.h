#pragma once

/// Removes, beside the running program, what killed ones left unfinished in the folders that the
/// program writes in: its own, the favorites, and those that pages and downloads are mostly saved
/// in. What the user put there himself stays.
void startCleaning();

#pragma once

class AddressBox;

/// Has the address bar propose pages of the history below the field, after what its own list
/// completes in it.
void proposeVisits(AddressBox &bar);

#pragma once

/// Makes Qt describe grippers of bands to screen readers; further calls do nothing.
void installBandGripAccessible();

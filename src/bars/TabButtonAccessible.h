#pragma once

/// Makes Qt describe tabs to screen readers as buttons that are pressed or not, and that turn the
/// sound of a page that has some. Called once.
void installTabAccessible();

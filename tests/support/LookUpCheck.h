#pragma once

/// Fails the running test at each text that the program looks up and that the English file which
/// ships does not have. Whoever makes an application folder for a test has it on.
namespace LookUpCheck {
void start();
/// For tests of looking up itself.
void stop();
}

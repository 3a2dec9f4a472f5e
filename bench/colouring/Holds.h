#pragma once

class Report;

/// The longest times the interface is held: while long texts come in, and by what a user does to
/// them.
namespace Holds {
void measure(Report &report);
}

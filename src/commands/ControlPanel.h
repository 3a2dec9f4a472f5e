#pragma once

/// The platform's own internet options.
namespace ControlPanel {
/// Opens its page of that number and does not wait for it; false where the platform has none, or
/// it does not start.
bool open(int page);
}

#pragma once

class Report;

/// Text made to be slow: its time per byte stays the same at ten times the length.
namespace Growth {
void measure(Report &report);
}

#pragma once

class Peer;
class QTemporaryDir;
class Report;

/// Building the coloured document of real and generated pages, as a whole process in turn with the
/// peer's, and the memory that the largest needs.
namespace Documents {
void measure(Report &report, const Peer &peer, const QTemporaryDir &dir);
}

#pragma once

class Peer;
class QTemporaryDir;
class Report;

/// From a file of 2 MB to all of its text in view and coloured, against the peer's time for its
/// document of the same file.
namespace Screen {
void measure(Report &report, const Peer &peer, const QTemporaryDir &dir);
}

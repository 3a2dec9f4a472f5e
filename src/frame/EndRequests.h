#pragma once

class MainWindow;

/// From now on the system's requests to end the program, and the end of the desktop's session, end
/// it as its close box does, without the question. Only the former leave the desk to be offered at
/// the next start: nobody has put it away.
void followEndRequests(MainWindow &frame);

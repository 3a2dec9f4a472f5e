#pragma once

class MainWindow;

/// From now on the system's requests to end the program, and the end of the desktop's session, end
/// it as its close box does, without the question.
void followEndRequests(MainWindow &frame);

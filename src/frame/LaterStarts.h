#pragma once

class MainWindow;
class StartListener;

/// From now on what later starts of the program are for is opened in the frame, which comes to the
/// front for each, whatever question is open in it. None is taken once the frame has been left.
void followLaterStarts(MainWindow &frame, StartListener &starts);

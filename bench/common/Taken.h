#pragma once

#include <QList>
#include <functional>

/// What some work took, in milliseconds. Processor time hardly feels what else the machine does,
/// so it is what limits are held against where nothing is waited for.
struct Taken {
    double wall = 0;
    double processor = 0;
};

/// By this thread; what others do for it is in the wall time only.
Taken takenBy(const std::function<void()> &work);
/// By all programs that `work` starts and waits for.
Taken takenByPrograms(const std::function<void()> &work);

double median(QList<double> values);
Taken median(const QList<Taken> &values);

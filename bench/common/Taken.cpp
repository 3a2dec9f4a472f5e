#include "Taken.h"

#include <QElapsedTimer>
#include <algorithm>
#include <sys/resource.h>
#include <time.h>

namespace {

double threadTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double milliseconds(const timeval &time)
{
    return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
}

double programTime()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

Taken measured(double (*processorTime)(), const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    const double before = processorTime();
    work();
    return {double(timer.nsecsElapsed()) / 1e6, processorTime() - before};
}

}

Taken takenBy(const std::function<void()> &work)
{
    return measured(threadTime, work);
}

Taken takenByPrograms(const std::function<void()> &work)
{
    return measured(programTime, work);
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

Taken median(const QList<Taken> &values)
{
    QList<double> wall;
    QList<double> processor;
    for (const Taken &value : values) {
        wall.append(value.wall);
        processor.append(value.processor);
    }
    return {median(wall), median(processor)};
}

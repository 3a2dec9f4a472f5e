#include "CostMeter.h"

#include "ProcessMemory.h"
#include "ProcessStat.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <utility>

void CostMeter::measure(const QList<qint64> &processes)
{
    if (std::exchange(m_isMeasuring, true))
        return;
    QThreadPool::globalInstance()->start([self = QPointer(this), processes] {
        const QHash<qint64, Sample> samples = take(processes);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, samples] {
                if (self)
                    self->compare(samples);
            },
            Qt::QueuedConnection);
    });
}

QHash<qint64, CostMeter::Sample> CostMeter::take(const QList<qint64> &processes)
{
    QHash<qint64, Sample> samples;
    for (const qint64 process : processes) {
        if (!samples.contains(process))
            samples.insert(process,
                           {ProcessMemory::of(process), ProcessStat::processorTime(process)});
    }
    return samples;
}

void CostMeter::compare(const QHash<qint64, Sample> &samples)
{
    m_isMeasuring = false;
    const qint64 passed = m_clock.isValid() ? m_clock.elapsed() : 0;
    m_clock.start();
    Costs costs;
    for (auto each = samples.cbegin(); each != samples.cend(); ++each) {
        const qint64 before = m_last.value(each.key()).processorTime;
        Cost cost{each->memory};
        if (passed > 0 && before >= 0 && each->processorTime >= before)
            cost.processor = int((each->processorTime - before) * 100 / passed);
        costs.insert(each.key(), cost);
    }
    m_last = samples;
    emit measured(costs);
}

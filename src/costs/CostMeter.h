#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QObject>

/// Measures what processes take of the machine, beside the interface: a process may have hundreds
/// of megabytes of pages to be walked.
class CostMeter : public QObject {
    Q_OBJECT

public:
    struct Cost {
        /// Bytes.
        qint64 memory = 0;
        /// Of one processor since the last time, in hundredths; -1: not measured before.
        int processor = -1;
    };
    /// By process.
    using Costs = QHash<qint64, Cost>;

    using QObject::QObject;

    /// `measured` follows. Nothing while it is at it.
    void measure(const QList<qint64> &processes);

signals:
    void measured(const CostMeter::Costs &costs);

private:
    struct Sample {
        qint64 memory = 0;
        /// Milliseconds.
        qint64 processorTime = -1;
    };

    static QHash<qint64, Sample> take(const QList<qint64> &processes);
    void compare(const QHash<qint64, Sample> &samples);

    QHash<qint64, Sample> m_last;
    QElapsedTimer m_clock;
    bool m_isMeasuring = false;
};

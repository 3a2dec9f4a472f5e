#include "Keeping.h"

#include "DeskFile.h"
#include "Places.h"
#include "ProcessMemory.h"
#include "Report.h"
#include "Taken.h"
#include "WaitUntil.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <memory>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace {
constexpr int many = 1000;
constexpr int changeEveryMs = 100;
constexpr int settleMs = 3000;
constexpr int watchMs = 20'000;
constexpr double oldestLimitMs = 1000;
constexpr double costLimit = 2;
constexpr int kills = 500;
constexpr int killedWindows = 100;
constexpr int atOnce = 4;
constexpr int latestKillMs = 1500;

/// The program that changes its windows, with a folder of its own.
class Changing {
public:
    Changing(int count, bool isKept)
    {
        makeQuietFolder(m_folder.path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        m_process.setProcessEnvironment(environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(QString::fromLocal8Bit(PROGRAM),
                        {m_folder.path(), QString::number(count), isKept ? u"KEPT"_s : u"-"_s});
    }
    ~Changing() { kill(); }
    Q_DISABLE_COPY_MOVE(Changing)

    void untilReady()
    {
        waitUntil("the windows", [this] { return m_process.canReadLine(); });
    }
    bool hasFile() const { return QFile::exists(file()); }
    Desk desk() const { return DeskFile::load(file()).value_or(Desk()); }
    double processorMs() const { return double(treeProcessorTime(m_process.processId())); }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QString file() const { return m_folder.filePath(u"Profiles/Last desk.orp"_s); }

    QTemporaryDir m_folder;
    QProcess m_process;
};

/// What the titles of a desk tell.
struct Titles {
    qint64 newest = -1;
    qint64 oldest = -1;
    /// Of the newest.
    qint64 timeMs = 0;
};

Titles titlesOf(const Desk &desk)
{
    Titles titles;
    for (const DeskWindow &window : desk.windows) {
        const qint64 number = window.title.section(u' ', 0, 0).toLongLong();
        if (titles.oldest < 0 || number < titles.oldest)
            titles.oldest = number;
        if (number > titles.newest) {
            titles.newest = number;
            titles.timeMs = window.title.section(u' ', 1).toLongLong();
        }
    }
    return titles;
}

/// How long ago the first change was that is not in the desk; it came no sooner than that.
double ageOf(const Desk &desk, qint64 nowMs)
{
    return double(nowMs - titlesOf(desk).timeMs - changeEveryMs);
}

/// All of the windows, as they were at one moment.
bool isWhole(const Desk &desk, int count)
{
    const Titles titles = titlesOf(desk);
    return desk.windows.size() == count && desk.frame.isValid()
        && titles.newest - titles.oldest == count - 1;
}

void pass(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    waitUntil("time to pass", [&] { return clock.hasExpired(milliseconds); });
}

/// Milliseconds of processor time while it changes for `watchMs`, unobserved.
double processorTimeOf(Changing &program)
{
    pass(settleMs);
    const double before = program.processorMs();
    pass(watchMs);
    return program.processorMs() - before;
}

struct Kills {
    int done = 0;
    int broken = 0;
    QList<double> ages;
};

void look(const Changing &program, qint64 killedAtMs, Kills &result)
{
    const Desk desk = program.desk();
    ++result.done;
    if (!isWhole(desk, killedWindows))
        ++result.broken;
    result.ages.append(ageOf(desk, killedAtMs));
}

/// A program that is killed at some moment after its first writing.
struct Victim {
    Changing program{killedWindows, true};
    QElapsedTimer clock;
    int killAfterMs = 0;
    bool isDone = false;

    void step(Kills &result)
    {
        if (!clock.isValid() && program.hasFile())
            clock.start();
        if (isDone || !clock.isValid() || !clock.hasExpired(killAfterMs))
            return;
        isDone = true;
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        program.kill();
        look(program, now, result);
    }
};
}

void measureKeeping(Report &report)
{
    double without = 0;
    {
        Changing program(many, false);
        program.untilReady();
        without = processorTimeOf(program);
    }
    Changing program(many, true);
    program.untilReady();
    const double with = processorTimeOf(program);
    report.note(
        u"ten changes a second: %1 ms of %2 without a file, %3 ms with it"_s.arg(without, 0, 'f', 0)
            .arg(watchMs)
            .arg(with, 0, 'f', 0));
    report.atMost(u"keeping 1000 windows that change"_s, (with - without) / watchMs * 100,
                  costLimit, u"% of a core"_s);
    QList<double> ages;
    QElapsedTimer clock;
    clock.start();
    waitUntil("looks at the file", [&] {
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        ages.append(ageOf(program.desk(), now));
        return clock.hasExpired(watchMs);
    });
    report.atMost(u"until a change is in the file"_s, *std::max_element(ages.begin(), ages.end()),
                  oldestLimitMs, u"ms"_s);
}

void measureKills(Report &report)
{
    std::mt19937 random(1);
    std::uniform_int_distribution<int> moment(0, latestKillMs);
    Kills result;
    int begun = 0;
    std::vector<std::unique_ptr<Victim>> victims;
    while (result.done < kills) {
        std::erase_if(victims, [](const auto &victim) { return victim->isDone; });
        while (victims.size() < atOnce && begun < kills) {
            victims.push_back(std::make_unique<Victim>());
            victims.back()->killAfterMs = moment(random);
            ++begun;
        }
        const int before = result.done;
        waitUntil("a kill", [&] {
            for (const auto &victim : victims)
                victim->step(result);
            return result.done > before;
        });
    }
    report.note(u"killed %1 times, the file %2 ms old as a rule"_s.arg(result.done)
                    .arg(median(result.ages), 0, 'f', 0));
    report.atMost(u"files that are not whole"_s, result.broken, 0, u"of 500"_s);
    report.atMost(u"the oldest file after a kill"_s,
                  *std::max_element(result.ages.begin(), result.ages.end()), oldestLimitMs,
                  u"ms"_s);
}

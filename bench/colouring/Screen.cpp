#include "Screen.h"

#include "Pages.h"
#include "Peer.h"
#include "Report.h"
#include "RichTextBox.h"
#include "SourceEditor.h"

#include <QCoreApplication>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype size = 2'000'000;
constexpr int rounds = 5;

Taken open(const QString &file)
{
    SourceEditor editor;
    editor.resize(900, 700);
    editor.show();
    QCoreApplication::processEvents();
    return takenBy([&] {
        editor.openFile(file);
        while (editor.isBusy())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        editor.box().viewport()->repaint();
    });
}

void compare(Report &report, const Peer &peer, const QTemporaryDir &dir, const QString &name,
             const QString &file)
{
    QList<Taken> ours;
    QList<Taken> theirs;
    for (int i = 0; i < rounds; ++i) {
        ours.append(open(file));
        theirs.append(peer.document(file, dir.filePath(u"out.rtf"_s)));
    }
    const Taken own = median(ours);
    const Taken other = median(theirs);
    report.note(u"%1 on screen: %2 ms against %3 ms; processor %4 ms against %5 ms"_s.arg(name)
                    .arg(own.wall, 0, 'f', 0)
                    .arg(other.wall, 0, 'f', 0)
                    .arg(own.processor, 0, 'f', 0)
                    .arg(other.processor, 0, 'f', 0));
    report.atMost(name + u" to coloured text on screen, time"_s, own.processor / other.processor, 1,
                  u"times"_s);
}

}

namespace Screen {

void measure(Report &report, const Peer &peer, const QTemporaryDir &dir)
{
    const QString made = dir.filePath(u"two.html"_s);
    Pages::write(made, Pages::generated(size));
    compare(report, peer, dir, u"2 MB, generated,"_s, made);
    const QString real = Pages::nearest(size);
    if (!real.isEmpty())
        compare(report, peer, dir, u"%1,"_s.arg(real), real);
}

}

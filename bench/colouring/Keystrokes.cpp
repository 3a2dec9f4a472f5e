#include "Keystrokes.h"

#include "Pages.h"
#include "Report.h"
#include "RichTextBox.h"
#include "SourceEditor.h"
#include "Taken.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype size = 5'000'000;
constexpr double longest = 16;

double press(RichTextBox &box, int key, const QString &text)
{
    return takenBy([&] {
               QKeyEvent event(QEvent::KeyPress, key, {}, text);
               QCoreApplication::sendEvent(&box, &event);
               box.viewport()->repaint();
           })
        .processor;
}

/// What is typed into has been seen before.
void waitUntilSeen(QWidget &window)
{
    while (!window.windowHandle()->isExposed())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
}

void typeAt(Report &report, const QString &what, RichTextBox &box, int position)
{
    box.setSelStart(position);
    waitUntilSeen(*box.window());
    QList<double> times;
    const QString typed = u"<p class=\"x\">text</p>"_s;
    for (const QChar c : typed.repeated(5))
        times.append(press(box, Qt::Key_unknown, QString(c)));
    times.append(press(box, Qt::Key_Return, u"\r"_s));
    times.append(press(box, Qt::Key_Backspace, u"\b"_s));
    const double first = times.takeFirst();
    report.note(u"%1, median: %2 ms"_s.arg(what).arg(median(times), 0, 'f', 2));
    report.atMost(what + u", the first key"_s, first, longest, u"ms"_s);
    report.atMost(what + u", the slowest later key"_s,
                  *std::max_element(times.begin(), times.end()), longest, u"ms"_s);
}

void typeIn(Report &report, const QString &name, const QString &text)
{
    struct Place {
        QString name;
        double part;
    };
    const QList<Place> places = {{u"inside"_s, 0.5}, {u"at the start"_s, 0}, {u"at the end"_s, 1}};
    for (const bool wrapped : {true, false}) {
        // The first key comes first in a new window at each place.
        for (const Place &place : places) {
            SourceEditor editor;
            editor.resize(900, 700);
            editor.show();
            editor.box().setWrapping(wrapped);
            editor.setText(text);
            editor.finish();
            const QString what = u"key in 5 MB %1, %2, %3"_s.arg(
                name, wrapped ? u"wrapped"_s : u"unwrapped"_s, place.name);
            typeAt(report, what, editor.box(), int(place.part * editor.box().textLength()));
        }
    }
}

/// Each key makes the colouring begin anew.
void typeWhileColouring(Report &report, const QString &name, const QString &text)
{
    SourceEditor editor;
    editor.resize(900, 700);
    editor.show();
    waitUntilSeen(editor);
    editor.setText(text);
    editor.setSelStart(int(text.size() / 2));
    QList<double> times;
    while (times.size() < 20 && editor.isBusy()) {
        QCoreApplication::processEvents();
        times.append(press(editor.box(), Qt::Key_X, u"x"_s));
    }
    report.atMost(
        u"key in 5 MB %1 while it is coloured, the slowest of %2"_s.arg(name).arg(times.size()),
        *std::max_element(times.begin(), times.end()), longest, u"ms"_s);
}

}

namespace Keystrokes {

void measure(Report &report)
{
    const QString page = QString::fromUtf8(Pages::generated(size));
    typeIn(report, u"of lines"_s, page);
    typeWhileColouring(report, u"of lines"_s, page);
    typeIn(report, u"in one line"_s, QString(page).replace(u'\n', u' '));
    typeWhileColouring(report, u"in one line"_s, QString(page).replace(u'\n', u' '));
    typeIn(report, u"in one word"_s, Pages::repeated(u"x"_s, size));
    typeIn(report, u"of line feeds"_s, Pages::repeated(u"\n"_s, size));
}

}

#include "Holds.h"

#include "AppFolder.h"
#include "Pages.h"
#include "Places.h"
#include "Report.h"
#include "RichTextBox.h"
#include "SourceEditor.h"
#include "SourceWindow.h"
#include "Taken.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTemporaryDir>
#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype megabyte = 1'000'000;
constexpr double longestHold = 100;

/// A source window, and the longest time between two turns of the event loop for each thing done.
class Window {
public:
    Window(Report &report, const QString &name)
        : m_report(report)
        , m_name(name)
        , m_window(new SourceWindow)
    {
        m_window->resize(900, 700);
        m_window->show();
        QCoreApplication::processEvents();
    }
    ~Window() { delete m_window; }
    Window(const Window &) = delete;
    Window &operator=(const Window &) = delete;

    SourceEditor &editor() { return m_window->editor(); }
    RichTextBox &box() { return editor().box(); }
    SourceWindow &window() { return *m_window; }

    void held(const QString &what, const std::function<void()> &work)
    {
        double worst = takenBy(work).processor;
        // Painting and what was put off follow in turns of their own.
        for (int quiet = 0; quiet < 5; quiet = isBusy() ? 0 : quiet + 1)
            worst = std::max(worst, takenBy([] { QCoreApplication::processEvents(); }).processor);
        m_report.atMost(u"held, %1, %2"_s.arg(m_name, what), worst, longestHold, u"ms"_s);
    }

    void key(int code, Qt::KeyboardModifiers modifiers, const QString &text)
    {
        QKeyEvent press(QEvent::KeyPress, code, modifiers, text);
        QCoreApplication::sendEvent(&box(), &press);
    }

    void trigger(const char *name)
    {
        m_window->findChild<QAction *>(QLatin1String(name))->trigger();
    }

private:
    bool isBusy() { return m_window && editor().isBusy(); }

    Report &m_report;
    QString m_name;
    QPointer<SourceWindow> m_window;
};

void measureText(Report &report, const QString &name, const QString &text)
{
    Window window(report, name);
    RichTextBox &box = window.box();
    window.held(u"opening"_s, [&] {
        window.editor().setText(text);
        window.editor().setSelStart(0);
    });
    const auto typing = [&] { window.key(Qt::Key_X, {}, u"x"_s); };
    const auto enter = [&] { window.key(Qt::Key_Return, {}, u"\r"_s); };
    for (const bool wrapped : {true, false}) {
        const QString how = wrapped ? u" wrapped"_s : u" unwrapped"_s;
        window.held(u"to the end"_s + how,
                    [&] { window.key(Qt::Key_End, Qt::ControlModifier, {}); });
        window.held(u"typing at the end"_s + how, typing);
        window.held(u"to the middle"_s + how,
                    [&] { window.editor().setSelStart(box.textLength() / 2); });
        window.held(u"typing in the middle"_s + how, typing);
        window.held(u"a line break"_s + how, enter);
        window.held(u"undoing"_s + how, [&] { box.undo(); });
        window.held(u"a page down"_s + how, [&] { window.key(Qt::Key_PageDown, {}, {}); });
        window.held(u"resizing"_s + how, [&] { window.window().resize(850, 700); });
        window.held(u"smaller letters"_s + how, [&] { box.zoom(-100); });
        window.held(u"larger letters"_s + how, [&] { box.zoom(8); });
        window.held(u"switching the wrapping"_s, [&] { window.trigger("cmdWrap"); });
    }
    window.held(u"finding"_s, [&] {
        window.trigger("cmdFind");
        window.window().findChild<QLineEdit *>(u"txtFind"_s)->setText(u"absent"_s);
    });
    window.held(u"selecting all"_s, [&] { window.editor().selectAll(); });
    window.held(u"cutting"_s, [&] { window.editor().cut(); });
    window.held(u"pasting"_s, [&] { window.editor().paste(); });
    window.held(u"undoing the paste"_s, [&] { box.undo(); });
    window.held(u"undoing the cut"_s, [&] { box.undo(); });
    const QTemporaryDir folder;
    window.held(u"saving"_s,
                [&] { window.editor().saveFile(folder.filePath(u"saved.html"_s)).leaveToLog(); });
    window.held(u"closing"_s, [&] { window.window().close(); });
}

}

namespace Holds {

void measure(Report &report)
{
    const QTemporaryDir folder;
    makeQuietFolder(folder.path());
    AppFolder::setPath(folder.path());
    AppFolder::setSettingsPath(AppFolder::appData(u"Settings.ini"_s));
    const QString page = QString::fromUtf8(Pages::generated(10 * megabyte));
    measureText(report, u"1 MB"_s, page.left(megabyte));
    measureText(report, u"10 MB"_s, page);
    QString line = page;
    line.replace(u'\n', u' ');
    measureText(report, u"1 MB in one line"_s, line.left(megabyte));
    measureText(report, u"10 MB in one line"_s, line);
    measureText(report, u"10 MB in one word"_s, Pages::repeated(u"x"_s, 10 * megabyte));
    measureText(report, u"10 MB of line feeds"_s, Pages::repeated(u"\n"_s, 10 * megabyte));
    measureText(report, u"10 MB of Arabic in one line"_s,
                Pages::repeated(u"<p>أخبار العالم</p>"_s, 10 * megabyte));
}

}

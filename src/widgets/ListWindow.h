#pragma once

#include "Forms.h"
#include "Frame.h"
#include "InnerWindow.h"

#include <QAction>

class QLayout;

/// An inner window with a list and what can be done with it, instead of a page: one is open at
/// most, with a tab like a page's, and goes when it is closed.
class ListWindow : public InnerWindow {
    Q_OBJECT

public:
    /// No page's.
    QString shownAddress() const override { return {}; }

protected:
    /// `name` is the form's, `icon` one of `themedIcon`.
    ListWindow(Frame &frame, const char *name, const QString &icon);
    ~ListWindow() override;

    void closeEvent(QCloseEvent *event) override;
    /// Of window and tab.
    void setCaption(const QString &caption);
    /// Buttons for these, as many in a row as there is room for.
    static QLayout *buttonsFor(const QList<QAction *> &actions);
    /// It has become the active one.
    virtual void onActivated() { }

    /// The one of that name that is open in `frame`, or what `make` makes, shown as new windows
    /// are.
    template <typename Window, typename Make>
    static Window *openOne(Frame &frame, const char *name, Make make)
    {
        if (auto *open = qobject_cast<Window *>(Forms::named(name).value(0)))
            return open;
        const WindowState state = beginOpening(frame);
        Window *window = make();
        endOpening(*window, state);
        return window;
    }

private:
    static WindowState beginOpening(Frame &frame);
    static void endOpening(ListWindow &window, WindowState state);
    void unload();

    bool m_unloaded = false;
};

#pragma once

#include <QObject>
#include <QString>

class Frame;
class ToolBar;

/// The two tool bars of commands, `tbFunctions` and `tbBrowser`: their buttons and what a click
/// does. Buttons are told apart by key. Most run the handler of the menu command that does the
/// same, so that menu and button behave alike.
class CommandBars : public QObject {
    Q_OBJECT

public:
    CommandBars(Frame &frame, ToolBar &functions, ToolBar &browser, QObject *parent);

    /// Tool tips in the current language, looked up by button key.
    void translate();

private:
    void followMarks();
    void clickFunction(const QString &key, int index);
    void clickBrowser(const QString &key);
    void dropDown(const QString &key, const QPoint &place);
    void popUp(const QString &menuName, const QPoint &place);
    /// The history behind the buttons Back and Forward.
    void showHistory(const QString &key, const QPoint &place);
    /// What a button does to the active window's page.
    void actOnPage(const QString &key);

    Frame &m_frame;
    ToolBar &m_functions;
    ToolBar &m_browser;
};

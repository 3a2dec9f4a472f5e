#pragma once

#include <QMdiSubWindow>

class Frame;

/// An inner window of the frame that has a tab: what all of them have in common, whatever they
/// show. Its maker hands it to `Frame::adopt` and shows it.
class InnerWindow : public QMdiSubWindow {
    Q_OBJECT

public:
    explicit InnerWindow(Frame &frame);

    /// A number of our own, unique for the life of the program.
    int hWnd() const { return m_hWnd; }
    /// The key of this window's tab.
    QString tabKey() const;
    /// What the address bar says while the window is the active one.
    virtual QString shownAddress() const = 0;
    /// Gives the keyboard to what the window shows.
    virtual void focusContents();
    /// Ends what the window shows uses of camera, microphone and screen.
    virtual void endUse() { }
    /// Mutes what the window shows, or lets it be heard again.
    virtual void turnSound() { }
    /// What it shows is private: its title bar is dark.
    virtual bool isPrivate() const { return false; }
    /// The language is another one now.
    virtual void translate() { }

    /// Shows it for the first time, behind the active window, which stays so.
    void showBehind();

    QSize sizeHint() const override;

signals:
    /// What it shows is to be seen: the window in front of the others, and its frame.
    void frontWanted();

protected:
    bool focusNextPrevChild(bool next) override;
    /// Presses the window's tab, if it has one and it is not pressed.
    void pressTab();

    Frame &m_frame;

private:
    int m_hWnd = 0;
};

/// The frame's active child; null when there is none or it has no tab.
InnerWindow *activeInner(const Frame &frame);

/// All of them that are loaded, in the order in which they were.
QList<InnerWindow *> innerForms();

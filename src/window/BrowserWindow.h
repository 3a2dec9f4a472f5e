#pragma once

#include "Frame.h"
#include "InnerWindow.h"
#include "WebBrowser.h"

#include <QList>
#include <memory>

class PageQuestions;
class PopupBudget;
class PopupEntrance;
class QWidget;
class StatusStrip;
class VisitRecorder;
class ScriptErrorsDialog;
struct ContextTarget;

/// When a window loads its starting address.
enum class Loading {
    /// As it loads itself.
    Now,
    /// When whoever opened it says so.
    Later,
    /// When it is gone to: it begins asleep.
    Asleep
};

/// How much of a window's page is in sight.
enum class Sight {
    None,
    /// Too little to be looked at.
    Some,
    /// A quarter of it, or more.
    Enough
};

/// When a window that is asleep wakes.
enum class Waking {
    WhenGoneTo,
    /// Or when enough of it is in sight, as at once if it is, in its turn.
    InSight
};

/// The inner window that shows one web page: engine control, status bar, and their reflection in
/// the window's tab and the shared address bar. The creator sets the public members, hands the
/// window to `Frame::adopt` and shows it; the first show loads it.
class BrowserWindow : public InnerWindow, private WebBrowserEvents {
    Q_OBJECT

public:
    explicit BrowserWindow(Frame &frame, Privacy privacy = Privacy::Ordinary);
    ~BrowserWindow() override;

    /// Opened when the window loads; empty: the window opens nothing itself.
    QString startingAddress;
    /// Later: the window comes up at the address without its page.
    Loading startingLoad = Loading::Now;
    /// What its page comes with, where that waits.
    PageState startingState;
    /// What stands for its title until then, if not its address.
    QString startingTitle;
    /// True from a page's request for this window until its first navigation.
    bool isPopup = false;

    /// A page opened it by itself, and its user has named no address in it.
    bool isUnasked() const { return m_openedUnasked; }

    /// Of a private window nothing is written anywhere, and the windows that it opens are private.
    Privacy privacy() const { return m_privacy; }
    bool isPrivate() const override { return m_privacy == Privacy::Private; }
    /// It is open, and what it shows may be written down.
    bool mayBeKept() const { return !m_unloaded && !isPrivate(); }
    WebBrowser *browser() const { return m_browser; }
    StatusStrip *statusBar() const { return m_status; }
    /// What its pages ask the user.
    PageQuestions *questions() const { return m_questions; }

    /// The address that stands for the window: its page's, and until there is one what it was
    /// opened on, or "about:blank" where another page may have put its own contents into it.
    QString shownAddress() const override;
    void focusContents() override;
    void endUse() override;
    void turnSound() override;
    /// Size of the client area, pixels.
    int innerWidth() const;
    int innerHeight() const;

    /// Closes the window without asking; safe inside an engine callback. Its tab is gone and no
    /// event reaches it when this returns; the object itself goes later.
    void unload();
    bool isUnloaded() const { return m_unloaded; }

    /// Gives the page up, to come back as it was; nothing where there is none, or its user is being
    /// asked something. Never inside an engine callback. `SleepRules` says when.
    void fallAsleep();
    /// Its page has been given up, and comes as soon as the window is gone to, or in its turn
    /// (`PageTurns`) as enough of it comes into sight.
    bool isAsleep() const { return m_isAsleep && m_browser->isWaiting(); }
    /// What stands for the page's title until that has come.
    void setTitle(const QString &title);
    /// The page of a sleeping window comes in its place. Never inside an engine callback.
    void wake();
    /// One that waits for its page sleeps from now on.
    void waitAsleep(Waking when);

    /// Whether any of the page is in sight.
    bool isSeen() const { return m_sight != Sight::None; }
    /// Whether enough of it is to be looked at.
    bool isInView() const { return m_sight == Sight::Enough; }
    void setSight(Sight sight);
    bool isActiveChild() const;

    void setVisible(bool visible) override;

signals:
    /// It was asleep, and its page is about to load.
    void waking();
    /// A page, or a frame of it, has finished loading.
    void documentCompleted(const QString &url);
    /// The user wants the menu of what is at that place of the page. Inside the engine.
    void menuWanted(const ContextTarget &target);
    /// What such a menu was opened on is there no longer.
    void menuOver();

public slots:
    /// Puts the engine control back in its place.
    void layOut();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void statusTextChange(const QString &text) override;
    void titleChange(const QString &text) override;
    void iconChange(const QIcon &icon) override;
    void beforeNavigate2(const QString &url, int &flags, bool &cancel) override;
    void newWindow2(WebBrowser *&target, bool &cancel) override;
    void openLinksInNewWindows(const QStringList &urls) override;
    void navigationGivenUp() override;
    void navigateComplete2(const QString &url) override;
    void nothingCame() override;
    void locationChange(const QString &url) override;
    void documentComplete(const QString &url) override;
    void windowClosing(bool isChildWindow, bool &cancel) override;
    void setSecureLockIcon(int secureLockIcon) override;
    void privacyImpactedStateChange(bool impacted) override;
    void zoomChange(int percent) override;
    void useChange(const QString &text) override;
    void soundChange(PageSound sound) override;
    void wanted() override;
    void sourceWanted() override;
    void wakeWanted() override { wake(); }
    void contextMenuWanted(const ContextTarget &target) override { emit menuWanted(target); }
    void contextMenuOver() override { emit menuOver(); }
    void gotFocus() override;
    void scriptFailed(const ScriptError &error) override;

    void load();
    void wakeIfActiveSoon();
    void wakeIfActive();
    void unloadWindow();
    bool keyDown(int keyCode, Qt::KeyboardModifiers shift);
    /// Puts the engine control over the client area, between a question's strip and the status
    /// bar.
    void placeControl();
    void makeRoom(const QSize &room);
    void fitToControl();
    void placeStatusBar();
    void showTitle();
    void nameIfNameless();
    BrowserWindow *makePopup(const WindowRequest &request);
    void firstNavigationIsLate();
    void openWaitingPopup(const QString &url);
    bool closedAsBlocked(const QString &url, bool &cancel);
    bool refusesEmptyWindow(const QString &url, bool &cancel);
    void renewBudget();
    void showAddress();

    const Privacy m_privacy;
    QWidget *m_client = nullptr;
    VisitRecorder *m_visits;
    WebBrowser *m_browser = nullptr;
    StatusStrip *m_status = nullptr;
    PageQuestions *m_questions = nullptr;
    /// Made with the first error; it goes with this window.
    ScriptErrorsDialog *m_scriptErrors = nullptr;
    /// Shared with the windows that pages of this one open by themselves.
    std::shared_ptr<PopupBudget> m_budget;
    /// What the window was opened on.
    QString m_opening;
    /// The site whose pages the budget is for.
    QString m_budgetHost;
    /// Only of a window that a page asked for.
    std::unique_ptr<PopupEntrance> m_entrance;
    bool m_openedUnasked = false;
    /// The caption is the page's, or stands for it where none came.
    bool m_named = false;
    bool m_loaded = false;
    bool m_unloaded = false;
    bool m_isAsleep = false;
    Sight m_sight = Sight::Enough;
};

/// The frame's active browser window; null when there is none.
BrowserWindow *activeBrowser(const Frame &frame);

/// A window on `url`, as private as the active one: what is searched from there, or dragged out of
/// its page, is not to be known elsewhere.
void openBesideActive(Frame &frame, const QString &url);

/// All browser windows, in the order in which they were loaded.
QList<BrowserWindow *> browserForms();

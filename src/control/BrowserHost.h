#pragma once

#include <QPointer>
#include <QWidget>

class CertificateNotice;
class CrashNotice;
class FullScreenNotice;
class PageFindBar;
class QWebEngineFullScreenRequest;
class SleepPicture;
class WebView;
struct CertificateFailure;

/// The widget that a browser window places: it holds the view of the page, from when there is one,
/// and takes it back after full screen.
class BrowserHost : public QWidget {
    Q_OBJECT

public:
    explicit BrowserHost(QWidget *parent);
    ~BrowserHost() override;

    void setView(WebView *view);
    /// The page asks to fill the screen, or to end that.
    void answerFullScreen(QWebEngineFullScreenRequest request);
    /// Ends full screen from this side.
    void endFullScreen();
    /// The view belongs to somebody else from now on.
    void giveUpView();
    /// Covers the page with a notice that it has ended, until `hideCrash`.
    void showCrash();
    void hideCrash();
    /// Has a notice stand where the page would: its server could not prove who it is.
    void showFailure(const CertificateFailure &failure);
    void hideFailure();
    /// The same while the page goes for good, and perhaps the window.
    void dropFailure();
    /// A notice of ours stands where the page would be.
    bool hidesPage() const;
    /// What the page looked like (`SleepPicture::packed`) is shown in its place from now on, until
    /// `dropPicture`; there is no page, or it is only just coming.
    void showPicture(const QByteArray &picture);
    void dropPicture();
    /// Opens the bar under the page that finds text in it; nothing without a page.
    void openFindBar();
    /// The next or previous hit; the same otherwise.
    void findAgain(bool backwards);

signals:
    void reloadRequested();
    /// What the user chose on the notice of a failure.
    void backRequested();
    void goOnRequested(const CertificateFailure &failure);
    /// The user turned to the picture that stands for the page.
    void wakeRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    PageFindBar *findBar();
    void enterFullScreen(const QUrl &origin);
    void leaveFullScreen();
    bool isFullScreen() const;
    void placeChildren();

    QPointer<WebView> m_view;
    QPointer<CrashNotice> m_crash;
    QPointer<CertificateNotice> m_failure;
    QPointer<SleepPicture> m_picture;
    QPointer<PageFindBar> m_findBar;
    QPointer<FullScreenNotice> m_notice;
};

#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QUrl>

class WebPage;

/// Forms of encrypted pages that would be sent over a connection that is not: held until the user
/// agrees. The engine's hooks hold them, whatever the page does; a script out of the page's reach
/// keeps what was entered, and sends it then.
class InsecureForms : public QObject {
    Q_OBJECT

public:
    explicit InsecureForms(WebPage &page);
    ~InsecureForms() override;

    /// The script has kept a form; `told`: its name for it, the site it goes to and the site of the
    /// document it lies in, with blanks between.
    void noteForm(const QString &told);
    /// Whether the page must not be loaded by a form at `url`; the user is asked later. Inside the
    /// engine's callback.
    bool holds(const QUrl &url);
    /// The same for what a window is opened with, which the engine may call a link though it is a
    /// form: only one that the script has kept is known for certain.
    bool holdsOpening(const QUrl &url);
    /// The page asks for another, by a form or otherwise. `isRepeat`: what was sent before is sent
    /// again.
    void noteNavigation(bool isRepeat) { m_isLetGo = isRepeat; }
    /// Whether a form that a document of `sender` sends to `url` must not leave; also where no
    /// hook was asked, as by a redirect.
    bool blocks(const QUrl &url, const QUrl &sender) const;
    /// Another page is there: what was kept has gone.
    void forget();

private:
    bool isFromEncryptedPage() const;
    bool takeGrant(const QUrl &url);
    bool holdsForm(const QUrl &url, bool alsoUnkept);
    void hold(const QUrl &url, InsecureForms *keeper);
    InsecureForms *keeperOf(const QUrl &url);
    bool keeps(const QUrl &url) const;
    void ask(const QUrl &url, const QString &id, const QUrl &sender);
    void send(const QUrl &url, const QString &id, const QUrl &sender);
    void tellAgain();

    WebPage &m_page;
    /// What the script keeps; it is of use to the very next navigation.
    QString m_id;
    QUrl m_target;
    QUrl m_sender;
    QDeadlineTimer m_isFresh;
    /// Where the user lets the next form go.
    QUrl m_granted;
    /// The navigation under way may send a form unencrypted.
    bool m_isLetGo = false;
};

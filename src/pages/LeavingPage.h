#pragma once

#include <QObject>
#include <QTimer>

class WebPage;

/// What becomes of a page that the user leaves, or stops, while a script of it waits for his
/// answer or would, if it were heard. Its further dialogs are answered at once, unseen, so that it
/// cannot keep him: until another page has come, or, where he only stopped it, until its script has
/// come to an end. One that does nothing but ask never gets as far, and another page of its process
/// cannot come either.
class LeavingPage : public QObject {
    Q_OBJECT

public:
    enum class Way { Elsewhere, Stop };

    /// Becomes the page's child.
    explicit LeavingPage(WebPage &page);

    void begin(Way way);
    bool isOn() const { return m_isOn; }
    /// A dialog was answered unseen.
    void noteDialog();

signals:
    /// The page does nothing but ask.
    void stuck();

private:
    void askForLife();
    void look();
    void end();

    WebPage &m_page;
    QTimer m_looks;
    Way m_way = Way::Elsewhere;
    /// The answer to an earlier question is not that to the last one.
    int m_question = 0;
    int m_dialogs = 0;
    bool m_isAlive = false;
    bool m_isOn = false;
};

#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class HitOverlay;
class QJsonObject;
class QWebEnginePage;

/// Finds whole words in a page, which the engine cannot: by a script out of the page's reach. What
/// is in frames and fields is not looked through.
class WordFinder : public QObject {
    Q_OBJECT

public:
    WordFinder(QWebEnginePage *page, QObject *parent);
    ~WordFinder() override;

    /// From the first hit in sight on.
    void findAnew(const QString &text, bool matchCase);
    /// The hit before or behind the current one.
    void step(bool backwards);
    /// Takes the marks away; the current hit stays selected.
    void end();

signals:
    /// The current hit of how many, from 1; `isMore`: they are not all.
    void found(int active, int hits, bool isMore);

private:
    void run(const QJsonObject &query, bool tells);
    void take(const QVariantMap &result, bool tells);
    void lookAgain();

    QPointer<QWebEnginePage> m_page;
    QPointer<HitOverlay> m_overlay;
    QTimer m_look;
    /// Answers to earlier searches come, too.
    int m_newest = 0;
    bool m_isOn = false;
};

#pragma once

#include <QObject>
#include <QPageLayout>
#include <QPageRanges>
#include <QQueue>
#include <functional>
#include <memory>

class PageHold;
class QPrinter;
class QWebEnginePage;

/// One page's print jobs. The engine can do one at a time, loses a second one without a word, and
/// ends the program when the page is deleted during one: so they wait for each other, and a page
/// whose window closes lives on until the last is done. It also ends the program when the page's
/// process dies before that has taken the job up: so a job starts when the process answers.
class PageJobs : public QObject {
    Q_OBJECT

public:
    /// `pdf` is null when the job failed.
    using PdfDone = std::function<void(const QByteArray &pdf)>;
    using PrintDone = std::function<void(bool printed)>;

    /// Makes the page's sheets as PDF. `done` is called later, once, and not at all when
    /// `receiver` goes away first.
    static void toPdf(QWebEnginePage *page, const QPageLayout &layout, const QPageRanges &ranges,
                      QObject *receiver, const PdfDone &done);
    /// Prints on a real printer.
    static void print(QWebEnginePage *page, const std::shared_ptr<QPrinter> &printer,
                      QObject *receiver, const PrintDone &done);

    /// The engine is at a job of the page's.
    static bool isPrinting(const QWebEnginePage *page);

private:
    struct Job {
        QPageLayout layout;
        QPageRanges ranges;
        std::shared_ptr<QPrinter> printer;
        std::function<void(const QByteArray &pdf, bool printed)> done;
    };

    explicit PageJobs(QWebEnginePage *page);
    ~PageJobs() override;
    static PageJobs *of(QWebEnginePage *page);
    void add(const Job &job);
    void startNext();
    void waitForProcess(int answers);
    void begin();
    void end(int number, const QByteArray &pdf, bool printed);
    void finish(const QByteArray &pdf, bool printed);
    void rendererGone();
    void rendererChanged();

    QWebEnginePage *m_page;
    /// While jobs run.
    std::unique_ptr<PageHold> m_hold;
    QQueue<Job> m_waiting;
    Job m_current;
    int m_number = 0;
    bool m_running = false;
    /// The engine has the current job; until then its page is waited for.
    bool m_begun = false;
    /// The engine holds a job that it will never answer, and takes no other.
    bool m_jammed = false;
};

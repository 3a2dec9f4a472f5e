#pragma once

#include "HtmlColouring.h"
#include "HtmlScanner.h"

#include <QByteArray>
#include <QDeadlineTimer>

/// The colours that source text has on screen once its document was loaded and both fix-ups were
/// made, worked out without the document and in slices of time, for texts of megabytes.
class HtmlColourer {
public:
    /// `text` with a line feed for each line break. `indexes` are what stands for each slot in
    /// the result.
    HtmlColourer(const QString &text, const std::array<char, HtmlColouring::slotCount> &indexes);

    /// Goes on until all is done (true) or `deadline` is over.
    bool run(QDeadlineTimer deadline);

    /// One index per character. What the scan has not reached yet is plain text.
    const QByteArray &colours() const { return m_colours; }
    /// How far the scan has come; the fix-ups follow.
    qsizetype scanned() const { return m_scanner.position(); }
    qsizetype size() const { return m_text.size(); }

private:
    enum class Phase { Scan, PlainText, Comments, Done };

    struct Sink {
        void text(qsizetype from, qsizetype to);
        void tagStart() { slot = HtmlColouring::Tag; }
        void tagEnd(bool) { slot = HtmlColouring::PlainText; }
        void nameStart() { slot = HtmlColouring::AttributeName; }
        void valueStart() { slot = HtmlColouring::AttributeValue; }
        void valueEnd() { slot = HtmlColouring::Tag; }

        char *colours;
        const std::array<char, HtmlColouring::slotCount> &indexes;
        HtmlColouring::Slot slot = HtmlColouring::PlainText;
    };

    void step();
    void fill(qsizetype from, qsizetype to, HtmlColouring::Slot slot);

    QString m_text;
    std::array<char, HtmlColouring::slotCount> m_indexes;
    QByteArray m_colours;
    Sink m_sink;
    HtmlScanner<Sink> m_scanner;
    Phase m_phase = Phase::Scan;
    qsizetype m_fixed = 0;
};

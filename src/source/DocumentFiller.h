#pragma once

#include <QString>
#include <QTextCursor>

/// Brings a long text into a document slice by slice. The document keeps no undo steps meanwhile.
class DocumentFiller {
public:
    DocumentFiller(QTextDocument *document, const QString &text);
    /// Allows undoing again.
    ~DocumentFiller();
    DocumentFiller(const DocumentFiller &) = delete;
    DocumentFiller &operator=(const DocumentFiller &) = delete;

    /// Appends the next `length` characters, and what is left of the line; true once all are in.
    bool append(qsizetype length);
    qsizetype done() const { return m_done; }
    qsizetype size() const { return m_text.size(); }

private:
    QTextDocument *m_document;
    QString m_text;
    QTextCursor m_end;
    qsizetype m_done = 0;
};

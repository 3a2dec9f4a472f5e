#include "DocumentFiller.h"

#include "RawDocument.h"

#include <QTextDocument>

DocumentFiller::DocumentFiller(QTextDocument *document, const QString &text)
    : m_document(document)
    , m_text(text)
    , m_end(document)
{
    document->setUndoRedoEnabled(false);
    m_end.select(QTextCursor::Document);
    m_end.removeSelectedText();
}

DocumentFiller::~DocumentFiller()
{
    m_document->setUndoRedoEnabled(true);
    m_document->setModified(false);
}

bool DocumentFiller::append(qsizetype length)
{
    // A line in pieces would be laid out anew with each of them.
    const qsizetype lineEnd = m_text.indexOf(u'\n', m_done + length);
    const QStringView piece =
        QStringView(m_text).mid(m_done, lineEnd < 0 ? -1 : lineEnd + 1 - m_done);
    m_end.movePosition(QTextCursor::End);
    RawDocument::insert(m_end, piece);
    m_done += piece.size();
    return m_done == m_text.size();
}

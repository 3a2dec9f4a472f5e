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
    const QStringView piece = QStringView(m_text).mid(m_done, length);
    m_end.movePosition(QTextCursor::End);
    RawDocument::insert(m_end, piece);
    m_done += piece.size();
    return m_done == m_text.size();
}

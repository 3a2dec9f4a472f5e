#include "LineEnds.h"
#include "Log.h"
#include "RichTextBox.h"
#include "txtHTML.h"

#include <QFile>
#include <QSaveFile>

using namespace Qt::StringLiterals;

bool txtHTML::OpenFile(const QString &FileName)
{
    QFile file(FileName);
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcFiles) << "cannot read" << FileName << file.errorString();
        return false;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        qCWarning(lcFiles) << "cannot read" << FileName << file.errorString();
        return false;
    }
    const QString text = TextEncoding::decode(bytes);
    m_encoding = TextEncoding::detect(bytes);
    const qsizetype pairs = text.count("\r\n"_L1);
    const qsizetype feeds = text.count(u'\n') - pairs;
    const qsizetype returns = text.count(u'\r') - pairs;
    m_lineEnd = feeds > pairs && feeds >= returns ? LineEnd::Lf
        : returns > pairs                         ? LineEnd::Cr
                                                  : LineEnd::CrLf;
    m_loaded = bytes;
    setText(text);
    return true;
}

QByteArray txtHTML::fileBytes() const
{
    const QString &text = m_rtf1->buffer().text();
    if (!m_loaded.isNull() && LineEnds::toLf(TextEncoding::decode(m_loaded)) == text)
        return m_loaded;
    if (m_lineEnd == LineEnd::Lf)
        return TextEncoding::encode(text, m_encoding);
    const QLatin1String end = m_lineEnd == LineEnd::CrLf ? "\r\n"_L1 : "\r"_L1;
    return TextEncoding::encode(LineEnds::fromLf(text, end), m_encoding);
}

bool txtHTML::SaveFile(const QString &FileName)
{
    const QByteArray bytes = fileBytes();
    QSaveFile file(FileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        qCWarning(lcFiles) << "cannot write" << FileName << file.errorString();
        return false;
    }
    return true;
}

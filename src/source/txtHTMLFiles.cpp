#include "Log.h"
#include "RichTextBox.h"
#include "txtHTML.h"

#include <QFile>
#include <QSaveFile>

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
    m_file = SourceFile::fromBytes(bytes);
    const QString text = m_file.text();
    m_file.setText({});
    setText(text);
    return true;
}

SourceFile txtHTML::sourceFile() const
{
    SourceFile file = m_file;
    file.setText(m_rtf1->buffer().text());
    return file;
}

bool txtHTML::SaveFile(const QString &FileName)
{
    QSaveFile file(FileName);
    if (!file.open(QIODevice::WriteOnly) || !sourceFile().write(file) || !file.commit()) {
        qCWarning(lcFiles) << "cannot write" << FileName << file.errorString();
        return false;
    }
    return true;
}

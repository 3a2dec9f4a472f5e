#include "FileWriter.h"
#include "Log.h"
#include "RichTextBox.h"
#include "SourceEditor.h"

#include <QFile>

bool SourceEditor::openFile(const QString &FileName)
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

SourceFile SourceEditor::sourceFile() const
{
    SourceFile file = m_file;
    file.setText(m_box->buffer().text());
    return file;
}

WriteResult SourceEditor::saveFile(const QString &FileName)
{
    const SourceFile source = sourceFile();
    return FileWriter::write(FileName, [&source](QFileDevice &file) { return source.write(file); });
}

#include "Peer.h"

#include <QProcess>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

Taken runProgram(const QString &program, const QStringList &arguments, QByteArray *output)
{
    QProcess process;
    const Taken taken = takenByPrograms([&] {
        process.start(program, arguments);
        process.waitForFinished(-1);
    });
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        qFatal("%s failed", qPrintable(program));
    if (output)
        *output = process.readAllStandardOutput();
    return taken;
}

Peer::Peer()
    : m_program(QStandardPaths::findExecutable(u"highlight"_s))
{
}

Taken Peer::document(const QString &file, const QString &output) const
{
    return runProgram(m_program,
                      {u"-O"_s, u"rtf"_s, u"-S"_s, u"html"_s, u"-i"_s, file, u"-o"_s, output});
}

Taken Peer::documents(const QStringList &files, const QString &folder) const
{
    return runProgram(
        m_program,
        QStringList{u"-q"_s, u"-O"_s, u"rtf"_s, u"-S"_s, u"html"_s, u"--outdir="_s + folder}
            + files);
}

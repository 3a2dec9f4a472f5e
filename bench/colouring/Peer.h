#pragma once

#include "Taken.h"

#include <QByteArray>
#include <QStringList>

/// Runs a program to its end; what it wrote goes to `output`. Failing ends the measurement.
Taken runProgram(const QString &program, const QStringList &arguments,
                 QByteArray *output = nullptr);

/// The program "highlight", writing rich text documents of the same files.
class Peer {
public:
    Peer();
    bool isThere() const { return !m_program.isEmpty(); }
    Taken document(const QString &file, const QString &output) const;
    /// Of many files at once, into a folder.
    Taken documents(const QStringList &files, const QString &folder) const;

private:
    QString m_program;
};

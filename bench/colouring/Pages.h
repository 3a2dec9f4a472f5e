#pragma once

#include <QByteArray>
#include <QStringList>

/// The pages that are measured.
namespace Pages {
/// The contents of real pages that this machine's documentation holds, small ones and large ones
/// up to 1 MB from all over it; up to `most`.
QList<QByteArray> real(int most);
/// Real pages of a megabyte and more, up to `most`.
QStringList large(int most);
/// The real page whose size is nearest; empty when there is none of half that size or more.
QString nearest(qsizetype size);
QByteArray generated(qsizetype size);
/// `piece` again and again.
QString repeated(const QString &piece, qsizetype size);

QByteArray read(const QString &name);
/// Failing ends the measurement.
void write(const QString &name, const QByteArray &bytes);
}

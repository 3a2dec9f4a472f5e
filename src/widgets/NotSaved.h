#pragma once

#include <QString>

class QWidget;
class WriteResult;

/// For whoever pressed Save, Apply or OK and has nothing kept.
namespace NotSaved {
/// Why `result`, one that failed, did: a sentence in the user's language; empty when there is
/// nothing to be said.
QString reason(const WriteResult &result);
/// A message that names the file and says why; `result` is one that failed.
void tell(QWidget *owner, const QString &path, const WriteResult &result);
}

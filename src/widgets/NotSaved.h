#pragma once

class QString;
class QWidget;
class WriteResult;

/// For whoever pressed Save, Apply or OK and has nothing kept.
namespace NotSaved {
/// A message that names the file and says why; `result` is one that failed.
void tell(QWidget *owner, const QString &path, const WriteResult &result);
}

#pragma once

#include <QString>

/// Rich text that shows `plain` as it stands, wrapped to a readable width; cut when it is longer
/// than a person reads in a tool tip. Text of pages never gets to be markup.
QString wrappedToolTip(const QString &plain);

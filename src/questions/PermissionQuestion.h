#pragma once

#include "PageQuestion.h"
#include "Permission.h"

/// What the user is asked when somebody in a page wants those permissions: the words and buttons.
/// Who asks is the caller's to add.
PageQuestion permissionQuestion(const QList<Permission> &permissions);

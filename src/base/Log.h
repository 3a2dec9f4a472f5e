#pragma once

#include <QLoggingCategory>

/// Failures the user is not told of are logged here, never dropped.
Q_DECLARE_LOGGING_CATEGORY(lcFiles)
Q_DECLARE_LOGGING_CATEGORY(lcStart)
Q_DECLARE_LOGGING_CATEGORY(lcFrame)
Q_DECLARE_LOGGING_CATEGORY(lcEngine)

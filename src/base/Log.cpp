#include "Log.h"

// Quiet unless something went wrong; QT_LOGGING_RULES="orvane.*=true" tells more.
Q_LOGGING_CATEGORY(lcFiles, "orvane.files", QtWarningMsg)
Q_LOGGING_CATEGORY(lcStart, "orvane.start", QtWarningMsg)
Q_LOGGING_CATEGORY(lcFrame, "orvane.frame", QtWarningMsg)
Q_LOGGING_CATEGORY(lcEngine, "orvane.engine", QtWarningMsg)

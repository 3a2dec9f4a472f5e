#include "Log.h"

Q_LOGGING_CATEGORY(lcFiles, "orvane.files")
Q_LOGGING_CATEGORY(lcStart, "orvane.start")
Q_LOGGING_CATEGORY(lcFrame, "orvane.frame")
Q_LOGGING_CATEGORY(lcEngine, "orvane.engine")

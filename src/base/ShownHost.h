#pragma once

#include <QString>

/// The name of a server for the eye: labels in letters of their own script where nobody can take
/// them for others, else as the ASCII form ("xn--...") that the network uses. That form stands for
/// labels of mixed scripts, those that look like ASCII letters, those with characters that are
/// invisible, unusual or directed from right to left, whose order on the screen is not theirs.
/// `host` may be in either form; one that is no name comes back with its characters escaped.
QString shownHost(const QString &host);

#pragma once

#include <QString>
#include <QStringList>
#include <optional>

/// The system's own number and text of an error.
struct SystemError {
    int number;
    QString text;
};

/// Starts a program as a process of its own and does not wait for it; the error when it cannot be
/// started.
std::optional<SystemError> startProgram(const QString &file, const QStringList &arguments = {});

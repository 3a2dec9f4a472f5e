#pragma once

#include <QLoggingCategory>

/// Keeps what is logged about files quiet while it lives: for tests in which hundreds of them fail
/// and the user is told.
class Unlogged {
public:
    Unlogged() { QLoggingCategory::setFilterRules(QStringLiteral("orvane.files=false")); }
    ~Unlogged() { QLoggingCategory::setFilterRules({}); }
    Unlogged(const Unlogged &) = delete;
    Unlogged &operator=(const Unlogged &) = delete;
};

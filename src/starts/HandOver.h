#pragma once

#include "StartPlace.h"

#include <memory>

struct StartRequest;

/// How a start of the program goes on.
struct HandOver {
    /// Another program has taken the request: this one has nothing left to do.
    bool isDone = false;
    /// The place of those who hear of later starts. Null: another program has it and did not
    /// answer, or there is none.
    std::unique_ptr<StartPlace> place;

    /// Has the program that runs on the application folder do what the start is for. Where one runs
    /// and says nothing, it waits for a second at most, a program that ends included. Needs no
    /// display, but an application object.
    static HandOver attempt(const StartRequest &request);
};

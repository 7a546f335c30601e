// SPDX-License-Identifier: MIT
// How a command ends when it can't do what was asked: thrown inside camhost,
// turned into messages, JSON and the exit code in one place (application.cpp).
#pragma once

#include <string>

namespace camhost {

enum class ExitCode : int {
    Done = 0,
    Refused = 1,
    Usage = 2,
    NotFound = 3,
    NoFrame = 4,
    DeviceLost = 5,
    Partial = 6,
    Interrupted = 130
};

// Written with the names of its fields; what is left out is empty.
struct Failure {
    ExitCode exit = ExitCode::Refused;
    std::string code{};            // stable word for programs, never for our own decisions
    std::string message{};         // for people
    std::string adapterMessage{};  // the adapter's own words, if it had any
    std::string hint{};            // what to do, mostly a command line
};

}  // namespace camhost

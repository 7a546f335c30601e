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

struct Failure {
    ExitCode exit = ExitCode::Refused;
    std::string code;     // stable word for programs
    std::string message;  // for people
    std::string adapterMessage;
    std::string hint;
};

}  // namespace camhost

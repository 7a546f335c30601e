// SPDX-License-Identifier: MIT
// Everything that camhost says: results on one stream, messages and progress on
// another, or one JSON object instead of the results. Nothing that leaves through it can
// drive a terminal, whatever foreign text it holds. Portable.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "camhost/base/failure.h"
#include "camhost/base/json.h"

namespace camhost {

// Code and message, and where there are any the adapter's words and a hint.
CJson failureJson(const Failure& failure);

class CReport {
public:
    CReport(std::ostream& results, std::ostream& messages) : m_out(results), m_err(messages) {}

    void setJson(bool on) { m_json = on; }
    bool json() const { return m_json; }
    // -1 quiet, 0 normal, 1 and more for details.
    void setVerbosity(int level) { m_verbosity = level; }
    int verbosity() const { return m_verbosity; }
    void setTerminal(bool on) { m_terminal = on; }
    bool terminal() const { return m_terminal; }

    // The results' stream is for bytes that are no text: from now on lines go among the
    // messages.
    std::ostream& giveOutput();

    void line(std::string_view text);     // a result; not with JSON
    void event(const CJson& object);      // a line of its own before the document; JSON alone
    void flush() { m_out.flush(); }       // what was told so far, before what may end the program
    void deliver();                       // the same; throws a Failure when it does not arrive
    void message(std::string_view text);  // not when quiet
    void detail(std::string_view text);   // only when verbose
    void warning(std::string_view text);  // always, and in the JSON
    void failure(const Failure& failure);
    // Redrawn in place on a terminal, else a line of its own.
    void progress(std::string_view text);

    void setCommand(std::string_view name) { m_command = name; }
    void setCamera(CJson camera) { m_camera = std::move(camera); }
    void setResult(CJson result) { m_result = std::move(result); }
    // A member of its own, behind the others.
    void setExtra(std::string key, CJson value) {
        m_extra.emplace_back(std::move(key), std::move(value));
    }

    // Writes the JSON object, if that is wanted, and empties the buffers. Returns the exit
    // code, which is not Done when the results did not arrive.
    ExitCode finish(ExitCode exit);

private:
    void endProgress();
    CJson document(ExitCode exit) const;

    std::ostream& m_out;
    std::ostream& m_err;
    bool m_json = false;
    bool m_terminal = false;
    bool m_outputIsGiven = false;
    int m_verbosity = 0;
    std::size_t m_progressWidth = 0;
    std::string m_command;
    std::optional<CJson> m_camera;
    std::optional<CJson> m_result;
    std::optional<CJson> m_error;
    std::vector<std::string> m_warnings;
    std::vector<CJson::Member> m_extra;
};

}  // namespace camhost

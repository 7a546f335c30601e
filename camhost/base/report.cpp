// SPDX-License-Identifier: MIT
#include "camhost/base/report.h"

#include "camhost/base/texts.h"

namespace camhost {

CJson failureJson(const Failure& failure) {
    CJson json = CJson::object({{"code", failure.code}, {"message", failure.message}});
    if (!failure.adapterMessage.empty()) {
        json.set("adapter_message", failure.adapterMessage);
    }
    if (!failure.hint.empty()) {
        json.set("hint", failure.hint);
    }
    return json;
}

void CReport::line(std::string_view text) {
    if (!m_json) {
        endProgress();
        (m_outputIsGiven ? m_err : m_out) << forTerminal(text) << '\n';
    }
}

void CReport::event(const CJson& object) {
    if (m_json) {
        m_out << object.toText() << '\n';
    }
}

std::ostream& CReport::giveOutput() {
    m_outputIsGiven = true;
    return m_out;
}

void CReport::deliver() {
    flush();
    if (!m_out) {
        throw Failure{.code = "file", .message = "can not write to the output"};
    }
}

void CReport::message(std::string_view text) {
    if (m_verbosity >= 0) {
        endProgress();
        m_err << forTerminal(text) << '\n';
    }
}

void CReport::detail(std::string_view text) {
    if (m_verbosity > 0) {
        message(text);
    }
}

void CReport::warning(std::string_view text) {
    endProgress();
    m_err << "warning: " << forTerminal(text) << '\n';
    m_warnings.emplace_back(text);
}

void CReport::failure(const Failure& failure) {
    endProgress();
    m_err << "error: " << forTerminal(failure.message) << '\n';
    if (!failure.adapterMessage.empty() &&
        failure.message.find(failure.adapterMessage) == std::string::npos) {
        m_err << "       the adapter says: " << printable(failure.adapterMessage) << '\n';
    }
    if (!failure.hint.empty()) {
        m_err << "hint:  " << forTerminal(failure.hint) << '\n';
    }
    if (m_error) {
        return;
    }
    m_error = failureJson(failure);
}

void CReport::progress(std::string_view text) {
    if (m_verbosity < 0) {
        return;
    }
    if (!m_terminal) {
        m_err << forTerminal(text) << '\n';
        return;
    }
    m_err << '\r' << forTerminal(text);
    if (text.size() < m_progressWidth) {
        m_err << std::string(m_progressWidth - text.size(), ' ');
    }
    m_err.flush();
    m_progressWidth = text.size();
}

void CReport::endProgress() {
    if (m_progressWidth > 0) {
        m_err << '\n';
        m_progressWidth = 0;
    }
}

CJson CReport::document(ExitCode exit) const {
    CJson document = CJson::object({{"schema", "camhost/1"}, {"command", m_command}});
    const auto add = [&](const char* key, const std::optional<CJson>& part) {
        if (part) {
            document.set(key, *part);
        }
    };
    add("camera", m_camera);
    add("result", m_result);
    add("error", m_error);
    if (!m_warnings.empty()) {
        document.set("warnings", m_warnings);
    }
    for (const auto& [key, value] : m_extra) {
        document.set(key, value);
    }
    document.set("exit", static_cast<int>(exit));
    return document;
}

ExitCode CReport::finish(ExitCode exit) {
    endProgress();
    if (m_json) {
        m_out << document(exit).toText() << '\n';
    }
    m_out.flush();
    if (!m_out) {
        m_err << "error: the results could not be written\n";
        exit = exit == ExitCode::Done ? ExitCode::Refused : exit;
    }
    m_err.flush();
    return exit;
}

}  // namespace camhost

// SPDX-License-Identifier: MIT
#include "host/report.h"

#include "host/json_text.h"
#include "host/text_tools.h"

namespace camhost {

void CReport::line(std::string_view text) {
    if (!m_json) {
        m_out << text << '\n';
    }
}

void CReport::message(std::string_view text) {
    if (m_verbosity >= 0) {
        endProgress();
        m_err << text << '\n';
    }
}

void CReport::detail(std::string_view text) {
    if (m_verbosity > 0) {
        message(text);
    }
}

void CReport::warning(std::string_view text) {
    endProgress();
    m_err << "warning: " << text << '\n';
    m_warnings.add(std::string(text));
}

void CReport::failure(const Failure& failure) {
    endProgress();
    m_err << "error: " << failure.message << '\n';
    if (!failure.adapterMessage.empty() &&
        failure.message.find(failure.adapterMessage) == std::string::npos) {
        m_err << "       the adapter says: " << printable(failure.adapterMessage) << '\n';
    }
    if (!failure.hint.empty()) {
        m_err << "hint:  " << failure.hint << '\n';
    }
    CData error;
    error.set("code", failure.code);
    error.set("message", failure.message);
    if (!failure.adapterMessage.empty()) {
        error.set("adapter_message", failure.adapterMessage);
    }
    if (!failure.hint.empty()) {
        error.set("hint", failure.hint);
    }
    if (!m_error) {
        m_error = std::move(error);
    }
}

void CReport::progress(std::string_view text) {
    if (m_verbosity < 0) {
        return;
    }
    if (!m_terminal) {
        m_err << text << '\n';
        return;
    }
    m_err << '\r' << text;
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

CData CReport::document(ExitCode exit) const {
    CData document;
    document.set("schema", "camhost/1");
    document.set("command", m_command);
    if (m_camera) {
        document.set("camera", *m_camera);
    }
    if (m_result) {
        document.set("result", *m_result);
    }
    if (m_error) {
        document.set("error", *m_error);
    }
    if (!std::get<CData::Array>(m_warnings.variant()).empty()) {
        document.set("warnings", m_warnings);
    }
    for (const auto& [key, value] : std::get<CData::Object>(m_extra.variant())) {
        document.set(key, value);
    }
    document.set("exit", static_cast<int>(exit));
    return document;
}

void CReport::finish(ExitCode exit) {
    endProgress();
    if (m_json) {
        m_out << toJsonText(document(exit)) << '\n';
    }
    m_out.flush();
    m_err.flush();
}

}  // namespace camhost

// SPDX-License-Identifier: MIT
#include "tests/camhost/program.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace camhost::test {

namespace {

constexpr DWORD deadlineMilliseconds = 30000;

std::wstring wide(const std::string& text) {
    const std::u8string bytes(text.begin(), text.end());
    return std::filesystem::path(bytes).wstring();
}

// So that the program's reading of the command line gives the argument back.
std::wstring quoted(const std::string& argument) {
    std::wstring result = L"\"";
    std::size_t slashes = 0;
    for (const wchar_t c : wide(argument)) {
        if (c == L'\\') {
            ++slashes;
        } else {
            result.append(c == L'"' ? slashes * 2 + 1 : slashes, L'\\');
            result += c;
            slashes = 0;
        }
    }
    result.append(slashes * 2, L'\\');
    return result + L"\"";
}

class CPipe {
public:
    CPipe() {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        CreatePipe(&m_read, &m_write, &inherited, 0);
        SetHandleInformation(m_read, HANDLE_FLAG_INHERIT, 0);
    }
    CPipe(const CPipe&) = delete;
    CPipe& operator=(const CPipe&) = delete;
    ~CPipe() {
        CloseHandle(m_read);
        closeWriting();
    }
    HANDLE writing() const { return m_write; }
    void closeWriting() {
        if (m_write != nullptr) {
            CloseHandle(m_write);
            m_write = nullptr;
        }
    }
    // Until the other side has closed.
    std::string readAll(const std::function<void(const std::string&)>& onText) const {
        std::string text;
        char buffer[4096];
        DWORD got = 0;
        while (ReadFile(m_read, buffer, sizeof buffer, &got, nullptr) != FALSE && got > 0) {
            text.append(buffer, got);
            onText(text);
        }
        return text;
    }

private:
    HANDLE m_read = nullptr;
    HANDLE m_write = nullptr;
};

// Ctrl-C goes to all programs of one console: one for the test and what it runs,
// of which the test takes no notice itself.
class CConsole {
public:
    CConsole() {
        FreeConsole();
        AllocConsole();
        SetConsoleCtrlHandler(ignore, TRUE);
    }
    CConsole(const CConsole&) = delete;
    CConsole& operator=(const CConsole&) = delete;
    ~CConsole() {
        SetConsoleCtrlHandler(ignore, FALSE);
        FreeConsole();
    }

private:
    static BOOL WINAPI ignore(DWORD) { return TRUE; }
};

PROCESS_INFORMATION start(const std::vector<std::string>& arguments, const CPipe& out,
                          const CPipe& err) {
    std::wstring line = L"\"" + (programFolder() / "camhost.exe").wstring() + L"\"";
    for (const std::string& argument : arguments) {
        line += L" " + quoted(argument);
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = out.writing();
    startup.hStdError = err.writing();
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       testFolder().c_str(), &startup, &process) == FALSE) {
        throw std::runtime_error("camhost.exe does not start");
    }
    return process;
}

using OnText = std::function<void(const std::string&)>;

Outcome runWith(
    const std::vector<std::string>& arguments, const OnText& onMessages,
    const OnText& onResults = [](const std::string&) {}) {
    CPipe out;
    CPipe err;
    const PROCESS_INFORMATION process = start(arguments, out, err);
    out.closeWriting();
    err.closeWriting();
    Outcome outcome;
    std::thread messages([&] { outcome.err = err.readAll(onMessages); });
    std::thread results([&] { outcome.out = out.readAll(onResults); });
    if (WaitForSingleObject(process.hProcess, deadlineMilliseconds) != WAIT_OBJECT_0) {
        TerminateProcess(process.hProcess, 99);
        ADD_FAILURE() << "camhost did not end";
    }
    messages.join();
    results.join();
    DWORD exit = 0;
    GetExitCodeProcess(process.hProcess, &exit);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    outcome.exit = static_cast<int>(exit);
    return outcome;
}

}  // namespace

std::filesystem::path programFolder() {
    wchar_t file[1024] = L"";
    GetModuleFileNameW(nullptr, file, 1024);
    return std::filesystem::path(file).parent_path();
}

Outcome runCamhost(const std::vector<std::string>& arguments) {
    return runWith(arguments, [](const std::string&) {});
}

Outcome interruptCamhost(const std::vector<std::string>& arguments, const std::string& sign) {
    const CConsole console;
    bool sent = false;
    return runWith(arguments, [&](const std::string& text) {
        if (!sent && text.find(sign) != text.npos) {
            sent = true;
            GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
        }
    });
}

Outcome visitCamhost(const std::vector<std::string>& arguments, const std::string& sign,
                     const std::function<void(const std::string& out)>& visit) {
    std::thread visitor;
    const Outcome outcome = runWith(
        arguments, [](const std::string&) {},
        [&](const std::string& text) {
            if (!visitor.joinable() && text.find(sign) != text.npos) {
                visitor = std::thread([&visit, text] { visit(text); });
            }
        });
    if (visitor.joinable()) {
        visitor.join();
    }
    return outcome;
}

std::filesystem::path testFolder() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::filesystem::path folder =
        programFolder() / "camhost_tests" /
        (std::string(test->test_suite_name()) + "." + test->name());
    std::filesystem::create_directories(folder);
    return folder;
}

std::string readFile(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

void writeFile(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

std::string utf8(const std::filesystem::path& file) {
    const std::u8string text = file.u8string();
    return {text.begin(), text.end()};
}

}  // namespace camhost::test

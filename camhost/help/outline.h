// SPDX-License-Identifier: MIT
// The whole command line as data: what the man page and the completion scripts are made
// of. Filled by the same calls as the help. Portable.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "camhost/base/option_list.h"

namespace camhost {

struct OptionOutline {
    std::vector<std::string> names{};  // "-n", "--frames"; none for a word by its place
    std::string value{};               // what stands for it: "N", "png|raw"; empty for a flag
    std::string what{};
    bool required = false;  // of words by their place
    bool repeated = false;
};

struct CommandOutline {
    std::string name{};
    std::string what{};
    std::string examples{};  // lines
    std::vector<OptionOutline> options{};
};

struct ProgramOutline {
    std::string name{};
    std::string version{};
    std::string what{};
    std::string examples{};
    std::vector<OptionOutline> options{};  // of every command
    std::vector<CommandOutline> commands{};
    std::vector<std::pair<int, std::string>> exitCodes{};
};

// Takes down what it is told; the variables are left alone.
class COutlineList : public COptionList {
public:
    explicit COutlineList(std::vector<OptionOutline>& options) : m_options(options) {}

    void word(const char* name, std::string& value, const char* what, Need need) override;
    void words(const char* name, std::vector<std::string>& values, const char* what) override;
    void flag(const char* names, bool& on, const char* what) override;
    void countedFlag(const char* names, int& times, const char* what) override;
    void text(const char* names, std::string& value, const char* placeholder,
              const char* what) override;
    void choice(const char* names, std::string& value, const std::vector<std::string>& choices,
                const char* what) override;
    void wordOf(const char* name, std::string& value, const std::vector<std::string>& choices,
                const char* what) override;
    void texts(const char* names, std::vector<std::string>& values, const char* placeholder,
               const char* what) override;
    void count(const char* names, std::uint64_t& value, const char* placeholder,
               const char* what) override;
    void countAboveZero(const char* names, std::uint64_t& value, const char* placeholder,
                        const char* what) override;
    void secondsAboveZero(const char* names, double& value, const char* placeholder,
                          const char* what) override;

private:
    std::vector<OptionOutline>& m_options;
};

// What can be completed in the place of a value: words of it, or "@" and the kind of thing
// that it names ("@file", "@camera", "@setting", "@assignment", "@action"), or "@none".
std::string completedBy(const std::string& value);

}  // namespace camhost

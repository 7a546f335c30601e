// SPDX-License-Identifier: MIT
// What a command takes on its line: each call names one thing and the variable that
// holds it after the line was read. Commands fill it in help order. Portable.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace camhost {

// Names are as typed ("-n,--frames"); "what" is the line of the help.
class COptionList {
public:
    enum class Need { Required, Optional };

    COptionList() = default;
    COptionList(const COptionList&) = delete;
    COptionList& operator=(const COptionList&) = delete;
    virtual ~COptionList() = default;

    // By their place on the line.
    virtual void word(const char* name, std::string& value, const char* what, Need need) = 0;
    virtual void words(const char* name, std::vector<std::string>& values, const char* what) = 0;

    // One of these words, by its place.
    virtual void wordOf(const char* name, std::string& value,
                        const std::vector<std::string>& choices, const char* what) = 0;

    virtual void flag(const char* names, bool& on, const char* what) = 0;
    // Counts how often it is given.
    virtual void countedFlag(const char* names, int& times, const char* what) = 0;
    virtual void text(const char* names, std::string& value, const char* placeholder,
                      const char* what) = 0;
    // One of these words.
    virtual void choice(const char* names, std::string& value,
                        const std::vector<std::string>& choices, const char* what) = 0;
    // May be given again and again.
    virtual void texts(const char* names, std::vector<std::string>& values, const char* placeholder,
                       const char* what) = 0;
    virtual void count(const char* names, std::uint64_t& value, const char* placeholder,
                       const char* what) = 0;
    virtual void countAboveZero(const char* names, std::uint64_t& value, const char* placeholder,
                                const char* what) = 0;
    virtual void secondsAboveZero(const char* names, double& value, const char* placeholder,
                                  const char* what) = 0;
};

}  // namespace camhost

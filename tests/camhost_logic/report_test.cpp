// SPDX-License-Identifier: MIT
#include "camhost/base/report.h"

#include <gtest/gtest.h>

#include <sstream>

namespace camhost {
namespace {

// Clears the screen in three ways: ASCII's escape, U+009B, and the lone byte of it.
constexpr const char* hostile =
    "a\x1B[2Jb\xC2\x9B"
    "2Jc\x9B"
    "2Jd\x7F";
constexpr const char* harmless =
    "a [2Jb 2Jc\xEF\xBF\xBD"
    "2Jd ";

class Report : public testing::Test {
protected:
    std::ostringstream m_out;
    std::ostringstream m_err;
    CReport m_report{m_out, m_err};
};

TEST_F(Report, NoForeignTextDrivesTheTerminal) {
    m_report.line(hostile);
    EXPECT_EQ(m_out.str(), std::string(harmless) + "\n");
    m_report.message(hostile);
    m_report.warning(hostile);
    m_report.failure({.code = "x", .message = hostile, .adapterMessage = hostile, .hint = hostile});
    m_report.progress(hostile);
    const std::string text = harmless;
    EXPECT_EQ(m_err.str(), text + "\nwarning: " + text + "\nerror: " + text + "\nhint:  " + text +
                               "\n" + text + "\n");
}

TEST_F(Report, NoForeignTextInTheJsonDrivesTheTerminal) {
    m_report.setJson(true);
    m_report.setResult(CJson(hostile));
    m_report.finish(ExitCode::Done);
    EXPECT_EQ(m_out.str(),
              "{\"schema\":\"camhost/1\",\"command\":\"\",\"result\":"
              "\"a\\u001b[2Jb\\u009b2Jc\xEF\xBF\xBD"
              "2Jd\\u007f\",\"exit\":0}\n");
}

TEST_F(Report, AResultEndsTheProgressOnATerminal) {
    m_report.setTerminal(true);
    m_report.progress("60/60");
    m_report.line("done");
    EXPECT_EQ(m_err.str(), "\r60/60\n");
}

TEST_F(Report, ResultsThatDoNotArriveAreAFailure) {
    m_out.setstate(std::ios::badbit);
    m_report.line("done");
    EXPECT_EQ(m_report.finish(ExitCode::Done), ExitCode::Refused);
    EXPECT_EQ(m_err.str(), "error: the results could not be written\n");
    EXPECT_EQ(m_report.finish(ExitCode::Partial), ExitCode::Partial);
}

TEST_F(Report, LineBreaksAndOtherScriptsStay) {
    m_report.line("K\xC3\xA4mera\n\xE2\x82\xAC \xF0\x9F\x93\xB7");
    EXPECT_EQ(m_out.str(), "K\xC3\xA4mera\n\xE2\x82\xAC \xF0\x9F\x93\xB7\n");
}

}  // namespace
}  // namespace camhost

// SPDX-License-Identifier: MIT
// The main function of test programs whose tests want a process each: the adapter starts up
// once per process. With --process-per-test the program forks for every test, which with a
// sanitizer is far quicker than starting the program again; else it is as GoogleTest's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::vector<std::string> namesOfTests() {
    std::vector<std::string> names;
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *all.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            names.push_back(std::string(suite.name()) + "." + suite.GetTestInfo(j)->name());
        }
    }
    return names;
}

constexpr unsigned longestTestSeconds = 300;

bool passes(const std::string& name) {
    GTEST_FLAG_SET(filter, name);
    return RUN_ALL_TESTS() == 0 && testing::UnitTest::GetInstance()->test_to_run_count() == 1;
}

bool passesInAProcessOfItsOwn(const std::string& name) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(longestTestSeconds);
        // Ends as a program does, so that a sanitizer looks for leaks.
        std::exit(passes(name) ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (argc < 2 || std::string_view(argv[1]) != "--process-per-test") {
        return RUN_ALL_TESTS();
    }
    GTEST_FLAG_SET(brief, true);
    std::vector<std::string> failed;
    const std::vector<std::string> names = namesOfTests();
    for (const std::string& name : names) {
        if (!passesInAProcessOfItsOwn(name)) {
            failed.push_back(name);
            std::printf("[  FAILED  ] %s\n", name.c_str());
        }
    }
    std::printf("%zu tests in processes of their own, %zu failed\n", names.size(), failed.size());
    for (const std::string& name : failed) {
        std::printf("[  FAILED  ] %s\n", name.c_str());
    }
    return names.empty() || !failed.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}

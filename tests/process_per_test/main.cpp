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
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

// As the exit status of a test's process. Skipped is as CTest and others know it.
enum Outcome : int { passed = 0, failed = 1, skipped = 77 };

// Without those that are off by their name.
std::vector<std::string> namesOfTests() {
    constexpr std::string_view off = "DISABLED_";
    std::vector<std::string> names;
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *all.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            const std::string_view test = suite.GetTestInfo(j)->name();
            if (!test.starts_with(off) && !std::string_view(suite.name()).starts_with(off)) {
                names.push_back(std::string(suite.name()) + "." + std::string(test));
            }
        }
    }
    return names;
}

constexpr unsigned longestTestSeconds = 300;

Outcome run(const std::string& name) {
    GTEST_FLAG_SET(filter, name);
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    if (RUN_ALL_TESTS() != 0 || all.test_to_run_count() != 1) {
        return failed;
    }
    return all.skipped_test_count() == 1 ? skipped : passed;
}

Outcome runInAProcessOfItsOwn(const std::string& name) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(longestTestSeconds);
        // Ends as a program does, so that a sanitizer looks for leaks.
        std::exit(run(name));
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return failed;
    }
    const int outcome = WEXITSTATUS(status);
    return outcome == passed || outcome == skipped ? Outcome{outcome} : failed;
}

void print(const char* verdict, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        std::printf("%s %s\n", verdict, name.c_str());
    }
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (argc < 2 || std::string_view(argv[1]) != "--process-per-test") {
        return RUN_ALL_TESTS();
    }
    GTEST_FLAG_SET(brief, true);
    std::map<Outcome, std::vector<std::string>> ended;
    const std::vector<std::string> names = namesOfTests();
    for (const std::string& name : names) {
        const Outcome outcome = runInAProcessOfItsOwn(name);
        ended[outcome].push_back(name);
        if (outcome == failed) {
            print("[  FAILED  ]", {name});
        }
    }
    std::printf("%zu tests in processes of their own, %zu skipped, %zu failed\n", names.size(),
                ended[skipped].size(), ended[failed].size());
    print("[  SKIPPED ]", ended[skipped]);
    print("[  FAILED  ]", ended[failed]);
    return ended[passed].empty() || !ended[failed].empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}

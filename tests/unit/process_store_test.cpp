// SPDX-License-Identifier: MIT
// Objects that live to the end of the process.
#include "properties/process_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace {

struct Named {
    Named(std::string text, std::unique_ptr<int> owned)
        : name(std::move(text)), number(std::move(owned)) {}
    std::string name;
    std::unique_ptr<int> number;
};

TEST(ProcessStore, ObjectIsMadeFromTheArgumentsAndKept) {
    const std::size_t before = processStore().size();
    const Named* object = makeForProcess<Named>("gain value range", std::make_unique<int>(7));
    EXPECT_EQ("gain value range", object->name);
    EXPECT_EQ(7, *object->number);
    ASSERT_EQ(before + 1, processStore().size());
    EXPECT_EQ(object, processStore().back());
}

TEST(ProcessStore, ObjectsKeepTheirPlaceWhileTheStoreGrows) {
    const Named* first = makeForProcess<Named>("first", nullptr);
    const std::size_t place = processStore().size() - 1;
    for (int i = 0; i < 500; ++i) {
        makeForProcess<Named>("another", nullptr);
    }
    EXPECT_EQ(first, processStore()[place]);
    EXPECT_EQ("first", first->name);
}

// Throws where there is a reason: behind what never returns, a compiler may find the rest
// of its caller unreachable.
struct Refused {
    explicit Refused(const std::string& reason) {
        if (!reason.empty()) {
            throw std::runtime_error(reason);
        }
    }
};

std::ptrdiff_t storedObjects() {
    const auto& store = processStore();
    return std::count_if(store.begin(), store.end(),
                         [](const void* object) { return object != nullptr; });
}

TEST(ProcessStore, ObjectThatIsNotMadeIsNotStored) {
    const std::ptrdiff_t before = storedObjects();
    EXPECT_THROW(makeForProcess<Refused>("refused"), std::runtime_error);
    EXPECT_EQ(before, storedObjects());
    const Named* next = makeForProcess<Named>("next", nullptr);
    EXPECT_EQ(before + 1, storedObjects());
    EXPECT_EQ(next, processStore().back());
}

#if GTEST_HAS_DEATH_TEST
struct EndsTheProcess {
    ~EndsTheProcess() { std::_Exit(3); }
};

TEST(ProcessStoreDeathTest, NothingIsDestroyedWhenTheProcessEnds) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            makeForProcess<EndsTheProcess>();
            std::exit(5);
        },
        testing::ExitedWithCode(5), "");
}
#endif

}  // namespace

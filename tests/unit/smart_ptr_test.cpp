// SPDX-License-Identifier: MIT
// Shared ownership of the capture library's objects, judged by objects that count.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "capture/library/handles.h"

namespace {

using DShowLib::smart_ptr;

class Counted {
public:
    explicit Counted(std::atomic<int>& alive) : m_alive(alive) { ++m_alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() { --m_alive; }

private:
    std::atomic<int>& m_alive;
};

TEST(SmartPtr, StartsEmpty) {
    const smart_ptr<Counted> handle;
    EXPECT_FALSE(handle);
    EXPECT_EQ(nullptr, handle.get());
}

TEST(SmartPtr, OfANullObjectIsEmpty) {
    const smart_ptr<Counted> handle(nullptr);
    const smart_ptr<Counted> copy(handle);
    EXPECT_FALSE(handle);
    EXPECT_FALSE(copy);
}

TEST(SmartPtr, DeletesItsObjectWithTheLastHandle) {
    std::atomic<int> alive{0};
    {
        smart_ptr<Counted> first(new Counted(alive));
        {
            const smart_ptr<Counted> second(first);
            EXPECT_EQ(first.get(), second.get());
            first = smart_ptr<Counted>();
            EXPECT_EQ(1, alive);
        }
        EXPECT_EQ(0, alive);
    }
    EXPECT_EQ(0, alive);
}

TEST(SmartPtr, ReachesItsObject) {
    const smart_ptr<std::vector<int>> handle(new std::vector<int>{1, 2, 3});
    EXPECT_TRUE(handle);
    EXPECT_EQ(3U, handle->size());
    EXPECT_EQ(2, (*handle)[1]);
    EXPECT_EQ(handle.get(), &*handle);
}

TEST(SmartPtr, AssignmentReleasesWhatItHeld) {
    std::atomic<int> alive{0};
    smart_ptr<Counted> handle(new Counted(alive));
    handle = smart_ptr<Counted>(new Counted(alive));
    EXPECT_EQ(1, alive);
    const smart_ptr<Counted> other(new Counted(alive));
    handle = other;
    EXPECT_EQ(1, alive);
    EXPECT_EQ(other.get(), handle.get());
}

TEST(SmartPtr, AssignmentToItselfKeepsTheObject) {
    std::atomic<int> alive{0};
    smart_ptr<Counted> handle(new Counted(alive));
    const smart_ptr<Counted>& same = handle;
    handle = same;
    EXPECT_EQ(1, alive);
    EXPECT_TRUE(handle);
    smart_ptr<Counted>& moved = handle;
    handle = std::move(moved);
    EXPECT_EQ(1, alive);
    EXPECT_TRUE(handle);
}

TEST(SmartPtr, MoveLeavesItsSourceEmptyAndTheObjectAlone) {
    std::atomic<int> alive{0};
    smart_ptr<Counted> source(new Counted(alive));
    Counted* object = source.get();
    smart_ptr<Counted> target(std::move(source));
    EXPECT_FALSE(source);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(object, target.get());
    smart_ptr<Counted> held(new Counted(alive));
    held = std::move(target);
    EXPECT_EQ(1, alive);
    EXPECT_EQ(object, held.get());
    EXPECT_FALSE(target);  // NOLINT(bugprone-use-after-move)
}

// Looks at the handle from which it is being released.
struct Witness {
    Witness(smart_ptr<Witness>& handle, std::vector<const Witness*>& seenAtEnd)
        : watched(handle), seen(seenAtEnd) {}
    ~Witness() { seen.push_back(watched.get()); }
    smart_ptr<Witness>& watched;
    std::vector<const Witness*>& seen;
};

TEST(SmartPtr, NewObjectIsStoredBeforeTheOldOneIsReleased) {
    std::vector<const Witness*> seen;
    std::vector<const Witness*> seenBySecond;
    smart_ptr<Witness> handle;
    handle = smart_ptr<Witness>(new Witness(handle, seen));
    auto* second = new Witness(handle, seenBySecond);
    handle = smart_ptr<Witness>(second);
    EXPECT_EQ((std::vector<const Witness*>{second}), seen);
    handle = smart_ptr<Witness>();
    EXPECT_EQ((std::vector<const Witness*>{nullptr}), seenBySecond);
}

// As with the library's sinks: the base can't be deleted through.
class Base {
public:
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;
    int number = 7;

protected:
    Base() = default;
    ~Base() = default;
};
class Other {
public:
    int unused = 0;
};
class Derived : public Other, public Base {
public:
    explicit Derived(std::atomic<int>& alive) : counted(alive) {}
    Counted counted;
};

TEST(SmartPtr, HandleToTheBaseKeepsTheDerivedObjectAlive) {
    std::atomic<int> alive{0};
    smart_ptr<Derived> derived(new Derived(alive));
    smart_ptr<Base> base(derived);
    // The base lies behind another one: the pointer is converted, not copied.
    EXPECT_EQ(static_cast<Base*>(derived.get()), base.get());
    EXPECT_EQ(7, base->number);
    derived = smart_ptr<Derived>();
    EXPECT_EQ(1, alive);
    base = smart_ptr<Base>();
    EXPECT_EQ(0, alive);
}

TEST(SmartPtr, EmptyHandleConvertsToAnEmptyBase) {
    const smart_ptr<Derived> derived;
    const smart_ptr<Base> base(derived);
    EXPECT_FALSE(base);
}

TEST(SmartPtr, ConvertsToABaseOnly) {
    static_assert(!std::is_convertible_v<smart_ptr<Derived>, bool>);
    static_assert(!std::is_convertible_v<Derived*, smart_ptr<Derived>>);
    static_assert(!std::is_convertible_v<smart_ptr<Derived>, Derived*>);
}

// Memory goes back through the code of whoever made it.
TEST(SmartPtr, ObjectIsDestroyedByTheFunctionOfItsBlock) {
    EXPECT_EQ(2 * sizeof(void*), sizeof(smart_ptr<Counted>));
    EXPECT_EQ(0U, offsetof(DShowLib::smart_ptr_block, references));
    EXPECT_EQ(8U, offsetof(DShowLib::smart_ptr_block, destroy));
    EXPECT_EQ(16U, sizeof(DShowLib::smart_ptr_block));
}

TEST(SmartPtr, HandlesAreCopiedAndDroppedOnSeveralThreads) {
    std::atomic<int> alive{0};
    {
        const smart_ptr<Counted> shared(new Counted(alive));
        const auto copyAndDrop = [shared] {
            for (int i = 0; i < 5000; ++i) {
                smart_ptr<Counted> copy(shared);
                const smart_ptr<Counted> second(std::move(copy));
            }
        };
        std::thread first(copyAndDrop);
        std::thread second(copyAndDrop);
        copyAndDrop();
        first.join();
        second.join();
        EXPECT_EQ(1, alive);
    }
    EXPECT_EQ(0, alive);
}

TEST(SmartPtr, WhatAThreadWroteIsSeenByTheOneThatDeletes) {
    struct Written {
        explicit Written(std::atomic<int>& sum) : total(sum) {}
        ~Written() { total += parts[0] + parts[1]; }
        std::atomic<int>& total;
        std::array<int, 2> parts{};
    };
    std::atomic<int> total{0};
    for (int i = 0; i < 200; ++i) {
        smart_ptr<Written> first(new Written(total));
        std::thread other([second = first]() mutable {
            second->parts[1] = 2;
            second = smart_ptr<Written>();
        });
        first->parts[0] = 1;
        first = smart_ptr<Written>();
        other.join();
    }
    EXPECT_EQ(600, total);
}

}  // namespace

// SPDX-License-Identifier: MIT
// The capture library's list.
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include "capture/conversions.h"
#include "capture/library/handles.h"

namespace {

using DShowLib::dvector;
using DShowLib::smart_ptr;

// An item as the library's are: it can be copied, and that is all.
class Item {
public:
    explicit Item(int number) : m_number(number) { ++alive; }
    Item(const Item& other) : m_number(other.m_number) { ++alive; }
    Item& operator=(const Item&) = delete;
    ~Item() { --alive; }

    int number() const { return m_number; }

    static inline int alive = 0;

private:
    int m_number;
};

dvector<Item> numbered(int count) {
    dvector<Item> list;
    for (int i = 0; i < count; ++i) {
        list.push_back(Item(i));
    }
    return list;
}

std::vector<int> numbersOf(const dvector<Item>& list) {
    std::vector<int> numbers;
    for (const Item& item : list) {
        numbers.push_back(item.number());
    }
    return numbers;
}

TEST(Dvector, StartsEmpty) {
    const dvector<Item> list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(0U, list.size());
    EXPECT_EQ(list.begin(), list.end());
}

TEST(Dvector, KeepsItemsInOrderWhileItGrows) {
    std::vector<int> expected;
    dvector<Item> list;
    for (int i = 0; i < 100; ++i) {
        list.push_back(Item(i));
        expected.push_back(i);
        ASSERT_EQ(expected, numbersOf(list));
    }
    EXPECT_FALSE(list.empty());
    EXPECT_EQ(100U, list.size());
    EXPECT_EQ(0, list[0].number());
    EXPECT_EQ(99, list[99].number());
}

TEST(Dvector, DestroysEveryItemOnce) {
    for (const int count : {0, 1, 4, 5, 8, 9, 100}) {
        {
            const dvector<Item> list = numbered(count);
            ASSERT_EQ(count, Item::alive);
        }
        ASSERT_EQ(0, Item::alive);
    }
}

TEST(Dvector, CopyIsIndependent) {
    dvector<Item> list = numbered(5);
    const dvector<Item> copy(list);
    list.push_back(Item(5));
    EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4}), numbersOf(copy));
    EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4, 5}), numbersOf(list));
    EXPECT_NE(list.begin(), copy.begin());
}

TEST(Dvector, MoveTakesTheItemsAlong) {
    dvector<Item> list = numbered(5);
    const auto items = list.begin();
    dvector<Item> target(std::move(list));
    EXPECT_EQ(items, target.begin());
    EXPECT_EQ(5U, target.size());
    EXPECT_TRUE(list.empty());  // NOLINT(bugprone-use-after-move)
    list.push_back(Item(9));
    EXPECT_EQ((std::vector<int>{9}), numbersOf(list));
}

TEST(Dvector, AssignmentReleasesWhatItHeld) {
    {
        dvector<Item> list = numbered(7);
        const dvector<Item> other = numbered(3);
        list = other;
        EXPECT_EQ(6, Item::alive);
        EXPECT_EQ((std::vector<int>{0, 1, 2}), numbersOf(list));
        list = numbered(2);
        EXPECT_EQ((std::vector<int>{0, 1}), numbersOf(list));
    }
    EXPECT_EQ(0, Item::alive);
}

TEST(Dvector, AssignmentToItselfKeepsTheItems) {
    dvector<Item> list = numbered(3);
    const dvector<Item>& same = list;
    list = same;
    EXPECT_EQ((std::vector<int>{0, 1, 2}), numbersOf(list));
}

// An item whose copies fail from some number of them on.
struct Fragile {
    Fragile() { ++alive; }
    Fragile(const Fragile& /*other*/) {
        if (copiesLeft == 0) {
            throw std::runtime_error("no more copies");
        }
        --copiesLeft;
        ++alive;
    }
    Fragile& operator=(const Fragile&) = delete;
    ~Fragile() { --alive; }

    static inline int copiesLeft = 0;
    static inline int alive = 0;
};

TEST(Dvector, FailingCopyOfAnItemLeavesNothingBehind) {
    // Four items fill the list; the fifth moves them to a larger place.
    for (int copies = 0; copies < 9; ++copies) {
        {
            const Fragile item;
            dvector<Fragile> list;
            Fragile::copiesLeft = copies;
            std::uint32_t stored = 0;
            EXPECT_THROW(
                for (;;) {
                    list.push_back(item);
                    ++stored;
                },
                std::runtime_error);
            EXPECT_EQ(stored, list.size());
            EXPECT_EQ(static_cast<int>(stored) + 1, Fragile::alive);
        }
        EXPECT_EQ(0, Fragile::alive) << copies;
    }
}

TEST(Dvector, FailingCopyOfAListLeavesNothingBehind) {
    {
        const Fragile item;
        dvector<Fragile> list;
        Fragile::copiesLeft = 3;
        for (int i = 0; i < 3; ++i) {
            list.push_back(item);
        }
        Fragile::copiesLeft = 2;
        EXPECT_THROW(dvector<Fragile>{list}, std::runtime_error);
        EXPECT_EQ(4, Fragile::alive);
        EXPECT_EQ(3U, list.size());
    }
    EXPECT_EQ(0, Fragile::alive);
}

TEST(Dvector, LayoutIsAPointerAndTwoCounts) {
    EXPECT_EQ(16U, sizeof(dvector<double>));
}

TEST(ListConversion, StandardListHasTheSameItems) {
    auto* list = new dvector<double>;
    list->push_back(3.75);
    list->push_back(60.0);
    EXPECT_EQ((std::vector<double>{3.75, 60.0}), toStandard(smart_ptr<dvector<double>>(list)));
}

TEST(ListConversion, MissingAndEmptyListsAreBothEmpty) {
    EXPECT_TRUE(toStandard(smart_ptr<dvector<double>>()).empty());
    EXPECT_TRUE(toStandard(smart_ptr<dvector<double>>(new dvector<double>)).empty());
}

}  // namespace

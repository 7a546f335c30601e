// SPDX-License-Identifier: MIT
// One counted COM reference, judged by an object that counts.
#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "capture/library/handles.h"

namespace {

using DShowLib::smart_com;

// Lives on the stack; its count begins with the test's own reference.
class Fake final : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*identifier*/, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        seenAtRelease = watched != nullptr ? watched->get() : this;
        return --references;
    }

    ULONG references = 1;
    const smart_com<Fake>* watched = nullptr;
    const Fake* seenAtRelease = this;
};

TEST(SmartCom, StartsEmpty) {
    const smart_com<Fake> holder;
    EXPECT_FALSE(holder);
    EXPECT_EQ(nullptr, holder.get());
    const smart_com<Fake> copy(holder);
    EXPECT_FALSE(copy);
}

TEST(SmartCom, TakesOverTheCallersReference) {
    Fake fake;
    {
        const smart_com<Fake> holder(&fake);
        EXPECT_EQ(1U, fake.references);
        EXPECT_EQ(&fake, holder.get());
        EXPECT_EQ(1U, holder->references);
    }
    EXPECT_EQ(0U, fake.references);
}

TEST(SmartCom, CopyHoldsAReferenceOfItsOwn) {
    Fake fake;
    {
        const smart_com<Fake> holder(&fake);
        {
            const smart_com<Fake> copy(holder);
            EXPECT_EQ(2U, fake.references);
            EXPECT_EQ(&fake, copy.get());
        }
        EXPECT_EQ(1U, fake.references);
    }
    EXPECT_EQ(0U, fake.references);
}

TEST(SmartCom, MoveCountsNothingAndLeavesItsSourceEmpty) {
    Fake fake;
    {
        smart_com<Fake> source(&fake);
        const smart_com<Fake> target(std::move(source));
        EXPECT_EQ(1U, fake.references);
        EXPECT_FALSE(source);  // NOLINT(bugprone-use-after-move)
        EXPECT_EQ(&fake, target.get());
    }
    EXPECT_EQ(0U, fake.references);
}

TEST(SmartCom, AssignmentReleasesWhatItHeld) {
    Fake old;
    Fake fresh;
    smart_com<Fake> holder(&old);
    const smart_com<Fake> other(&fresh);
    holder = other;
    EXPECT_EQ(0U, old.references);
    EXPECT_EQ(2U, fresh.references);
}

TEST(SmartCom, MoveAssignmentReleasesWhatItHeld) {
    Fake old;
    Fake fresh;
    smart_com<Fake> holder(&old);
    smart_com<Fake> source(&fresh);
    holder = std::move(source);
    EXPECT_EQ(0U, old.references);
    EXPECT_EQ(1U, fresh.references);
    EXPECT_FALSE(source);  // NOLINT(bugprone-use-after-move)
}

TEST(SmartCom, AssignmentToItselfKeepsTheReference) {
    Fake fake;
    smart_com<Fake> holder(&fake);
    const smart_com<Fake>& same = holder;
    holder = same;
    EXPECT_EQ(1U, fake.references);
    EXPECT_EQ(&fake, holder.get());
}

TEST(SmartCom, NewReferenceIsStoredBeforeTheOldOneIsReleased) {
    Fake old;
    Fake fresh;
    smart_com<Fake> holder(&old);
    old.watched = &holder;
    holder = smart_com<Fake>(&fresh);
    EXPECT_EQ(&fresh, old.seenAtRelease);
    EXPECT_EQ(0U, old.references);
}

TEST(SmartCom, PutEmptiesTheHolderBeforeItReleases) {
    Fake old;
    smart_com<Fake> holder(&old);
    old.watched = &holder;
    Fake** place = holder.put();
    EXPECT_EQ(nullptr, old.seenAtRelease);
    EXPECT_EQ(0U, old.references);
    EXPECT_EQ(nullptr, *place);
    EXPECT_FALSE(holder);
}

TEST(SmartCom, PutHandsOutThePlaceToFill) {
    Fake fake;
    {
        smart_com<Fake> holder;
        *holder.put() = &fake;
        EXPECT_EQ(&fake, holder.get());
        EXPECT_EQ(1U, fake.references);
    }
    EXPECT_EQ(0U, fake.references);
}

TEST(SmartCom, NothingConvertsByItself) {
    static_assert(!std::is_convertible_v<Fake*, smart_com<Fake>>);
    static_assert(!std::is_convertible_v<smart_com<Fake>, Fake*>);
    static_assert(!std::is_convertible_v<smart_com<Fake>, bool>);
    static_assert(sizeof(smart_com<Fake>) == sizeof(void*));
}

}  // namespace

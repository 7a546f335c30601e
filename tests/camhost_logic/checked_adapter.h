// SPDX-License-Identifier: MIT
// An adapter that keeps the contract of its record, but for one thing that it is told to do
// wrong, with two cameras; and the machine that it runs on.
#pragma once

#include <string>

#include "tests/camhost_logic/made_up_adapter.h"

namespace camhost::test {

enum class Wrong {
    Nothing,
    RecordSize,
    GapWritten,
    WrittenBehindTheRecord,
    MissingEntry,
    LongName,
    SmallSerial,
    FractionAboveOne,
    OtherContextWhenAskedAgain,
    RecordWrittenBehindTheLast,
    LineWidthInBytes,
    NegativeWidth,
    HostsOwnWritten,
    StopBeforeTheStartRefused,
    WaitBeforeTheStartIsLoss,
    WaitReturnsAtOnce,
    SecondStartSaysWhy,
    PixelFormatTakenWhileLive,
    NullContextWritten,
    NoBufferIsAFailure,
    NamesWithoutEnd,
    NamesOutOfOrder,
    HiddenNameListed,
    FeaturesWithoutEnd,
    UnknownKeyRead,
    UnknownKeySet,
    LettersCount,
    BlanksCount,
    TypeOfThree,
    ChoicesWithoutEnd,
    OtherAttributeWritten,
    MinimumRefused,
    MaximumReadsLess,
    BelowTaken,
    AboveTaken,
    RefusalSets,
    AutomaticIgnored,
    AnyTextIsOn,
    ListCanBeSet,
    FrameNotUsedUp,
    FrameTooLong,
    FrameTooShort,
    PixelCode,
    HandleLeft,
    ThreadLeft,
    StopStopsAll,
    SettingsShared,
    SameSerial,
    ClosedContextAnswers,
    CloseTwiceRefused,
    IndicesStay,
    CamerasComeBack,
    LongValue,
    MessageWithoutEnd,
    BytesThatAreNoText,
    StrangeResult,
    NeedlessMessage,
    ThrowsOnAttribute,
};

class CCheckedSystem : public CMadeUpSystem {
public:
    explicit CCheckedSystem(Wrong wrong = Wrong::Nothing, std::size_t count = 2);
    ~CCheckedSystem() override;

    GetVideoChannelEntry loadAdapter(const std::string& file) override;

    // What camera 0 has as its settings.
    std::map<std::string, std::string> settings() const;
};

}  // namespace camhost::test

// SPDX-License-Identifier: MIT
// The insides of the value types. Each item has texts of its own, so that one which is
// read after its item has gone is noticed.
#pragma once

#include <cstdint>
#include <memory>

#include "capture/library/items.h"
#include "fuzz/any_library/world.h"

namespace any_library {

struct ItemInside {
    explicit ItemInside(std::uint8_t which);
    ItemInside(const ItemInside& other) : ItemInside(other.text) {}
    ItemInside& operator=(const ItemInside&) = delete;
    ~ItemInside() { --world().alive.items; }

    const char* narrow() const;
    DShowLib::dstringw wide() const;

    std::uint8_t text;  // which
    std::unique_ptr<char[]> own;
};

// A list in the manner of the call; the ordinary one holds `texts`.
template <class Item>
DShowLib::smart_ptr<DShowLib::dvector<Item>> listOf(Manner manner,
                                                    std::initializer_list<std::uint8_t> texts) {
    using List = DShowLib::dvector<Item>;
    if (manner == Manner::null || manner == Manner::refused) {
        return {};
    }
    DShowLib::smart_ptr<List> list(new List);
    const auto add = [&list](std::uint8_t text) {
        list->push_back(Item(new typename Item::Implementation(text)));
    };
    if (manner == Manner::strange) {
        // An item that the library has nothing to say about.
        list->push_back(Item(nullptr));
    }
    if (manner != Manner::empty) {
        for (const std::uint8_t text : texts) {
            add(text);
        }
    }
    for (std::uint8_t i = 0; manner == Manner::longer && i < 40; ++i) {
        add(i);
    }
    return list;
}

}  // namespace any_library

namespace DShowLib {

struct VideoCaptureDeviceItem::Implementation : any_library::ItemInside {
    using ItemInside::ItemInside;
};
struct VideoFormatItem::Implementation : any_library::ItemInside {
    using ItemInside::ItemInside;
};
struct VideoNormItem::Implementation : any_library::ItemInside {
    using ItemInside::ItemInside;
};
struct AnalogChannelItem::Implementation : any_library::ItemInside {
    using ItemInside::ItemInside;
};
struct Error::Implementation : any_library::ItemInside {
    using ItemInside::ItemInside;
};

}  // namespace DShowLib

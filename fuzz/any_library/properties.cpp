// SPDX-License-Identifier: MIT
#include "fuzz/any_library/properties.h"

#include <array>
#include <string>

#include "capture/library/property_ids.h"
#include "fuzz/any_library/counted.h"
#include "fuzz/any_library/texts.h"

namespace any_library {

namespace {

using namespace DShowLib;

struct Name {
    GUID id;
    std::wstring_view name;
};

// Items that the adapter knows by identifier or by name, and items like no other.
const Name& itemName(std::uint8_t choice) {
    static const std::array<Name, 10> names = {{{VCDID_Brightness, L"Brightness"},
                                                {VCDID_Contrast, L"Contrast"},
                                                {otherId(0), L"Exposure"},
                                                {otherId(1), L"Trigger"},
                                                {otherId(2), L"Gain"},
                                                {otherId(3), L""},
                                                {otherId(4), wideText(longText)},
                                                {otherId(5), wideText(9)},
                                                {otherId(6), wideText(10)},
                                                {otherId(7), L"feature_1"}}};
    return names[choice % names.size()];
}

const Name& elementName(std::uint8_t choice) {
    static const std::array<Name, 7> names = {{{VCDElement_Value, L"Value"},
                                               {VCDElement_Auto, L"Auto"},
                                               {VCDElement_OnePush, L"One Push"},
                                               {otherId(8), L"Enable"},
                                               {otherId(9), L"Polarity"},
                                               {otherId(10), L""},
                                               {otherId(11), wideText(6)}}};
    return names[choice % names.size()];
}

std::wstring registryText(const GUID& id) {
    LPOLESTR text = nullptr;
    if (::StringFromCLSID(id, &text) < 0) {
        return {};
    }
    const std::unique_ptr<wchar_t, decltype(&::CoTaskMemFree)> owned(text, &::CoTaskMemFree);
    return text;
}

// The texts of the identifiers, made once.
const std::wstring& textOf(const GUID& id) {
    static std::vector<std::pair<GUID, std::wstring>>& texts =
        *new std::vector<std::pair<GUID, std::wstring>>;
    for (const auto& [known, text] : texts) {
        if (known == id) {
            return text;
        }
    }
    texts.reserve(32);
    return texts.emplace_back(id, registryText(id)).second;
}

// The member at a 1-based index.
template <class Member>
Member* memberAt(const std::vector<Member*>& members, LONG index) {
    const bool isThere = index >= 1 && static_cast<std::size_t>(index) <= members.size();
    return isThere ? members[static_cast<std::size_t>(index) - 1] : nullptr;
}

class CElement final : public CObject<IVCDPropertyElement> {
public:
    explicit CElement(const Name& name) : m_name(name) {}

    void add(const OfferedInterface& entry) { m_interfaces.push_back(entry); }
    const GUID& id() const { return m_name.id; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID identifier, void** object) override {
        *object = nullptr;
        const Manner manner = begin();
        for (const OfferedInterface& entry : m_interfaces) {
            if (entry.id == identifier && entry.asked != nullptr && manner == Manner::ordinary) {
                entry.object->AddRef();
                *object = entry.asked;
                return S_OK;
            }
        }
        return manner == Manner::null ? S_OK : E_NOINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE getName(BSTR* name) override {
        return write(begin(), m_name.name, name);
    }
    HRESULT STDMETHODCALLTYPE getElementID(GUID* identifier) override {
        const Manner manner = begin();
        if (manner == Manner::ordinary) {
            *identifier = m_name.id;
        }
        return resultOf(manner);
    }
    HRESULT STDMETHODCALLTYPE getCount(LONG* place) override {
        return count(begin(), m_interfaces.size(), place);
    }
    HRESULT STDMETHODCALLTYPE getItem(LONG index, IVCDPropertyInterface** item) override {
        const Manner manner = begin();
        const bool isThere = index >= 1 && static_cast<std::size_t>(index) <= m_interfaces.size();
        return handOut(manner,
                       isThere ? m_interfaces[static_cast<std::size_t>(index) - 1].object : nullptr,
                       item);
    }

private:
    Name m_name;
    std::vector<OfferedInterface> m_interfaces;
};

class CItem final : public CObject<IVCDPropertyItem> {
public:
    explicit CItem(const Name& name) : m_name(name) {}

    void add(CElement* element) { m_elements.push_back(element); }
    const GUID& id() const { return m_name.id; }

    HRESULT STDMETHODCALLTYPE getName(BSTR* name) override {
        return write(begin(), m_name.name, name);
    }
    HRESULT STDMETHODCALLTYPE getItemID(GUID* identifier) override {
        const Manner manner = begin();
        if (manner == Manner::ordinary) {
            *identifier = m_name.id;
        }
        return resultOf(manner);
    }
    HRESULT STDMETHODCALLTYPE getCount(LONG* place) override {
        return count(begin(), m_elements.size(), place);
    }
    HRESULT STDMETHODCALLTYPE getItem(LONG index, IVCDPropertyElement** element) override {
        return handOut(begin(), memberAt(m_elements, index), element);
    }
    HRESULT STDMETHODCALLTYPE findElement(BSTR identifier, IVCDPropertyElement** element) override {
        const Manner manner = begin();
        return handOut(manner, named(m_elements, identifier), element);
    }

    // The first with that identifier.
    template <class Member>
    static Member* named(const std::vector<Member*>& members, BSTR identifier) {
        const std::wstring_view wanted =
            identifier != nullptr ? std::wstring_view(identifier) : std::wstring_view();
        for (Member* member : members) {
            if (textOf(member->id()) == wanted) {
                return member;
            }
        }
        return nullptr;
    }

private:
    Name m_name;
    std::vector<CElement*> m_elements;
};

class CItems final : public CObject<IVCDPropertyItems> {
public:
    void add(CItem* item) { m_items.push_back(item); }

    HRESULT STDMETHODCALLTYPE getCount(LONG* place) override {
        return count(begin(), m_items.size(), place);
    }
    HRESULT STDMETHODCALLTYPE getItem(LONG index, IVCDPropertyItem** item) override {
        return handOut(begin(), memberAt(m_items, index), item);
    }
    HRESULT STDMETHODCALLTYPE findItem(BSTR identifier, IVCDPropertyItem** item) override {
        const Manner manner = begin();
        return handOut(manner, CItem::named(m_items, identifier), item);
    }

private:
    std::vector<CItem*> m_items;
};

// One interface of a tree: which item, element and kind. Neighbours with one item, or
// one element, share it.
struct Leaf {
    std::uint8_t item;
    std::uint8_t element;
    std::uint8_t kind;
};

constexpr Leaf brightness = {0, 0, 0};
constexpr Leaf contrast = {1, 0, 0};
constexpr Leaf exposure = {2, 0, 1};
constexpr Leaf exposureSwitch = {2, 0, 2};
constexpr Leaf exposureAuto = {2, 1, 2};
constexpr Leaf triggerEnable = {3, 3, 2};
constexpr Leaf triggerPolarity = {3, 4, 2};

std::vector<Leaf> knownLeaves(std::uint8_t choice) {
    switch (choice) {
        case 0:
            return {brightness};
        case 1:
            return {brightness,   contrast,      exposure,       exposureSwitch,
                    exposureAuto, triggerEnable, triggerPolarity};
        case 2:
            return {{4, 0, 4}, {4, 2, 3}, {4, 1, 2}};
        case 3:
            return {brightness, brightness, contrast, brightness};
        case 4:
            return {{6, 0, 0}, {6, 0, 4}, {7, 6, 2}, {8, 5, 3}};
        case 5:
            return {exposure, exposureAuto, triggerEnable};
        default:
            return {};
    }
}

constexpr std::uint8_t noTree = 7;
constexpr std::uint8_t describedTree = 8;

std::vector<Leaf> takeLeaves() {
    std::vector<Leaf> leaves(answers().take() % 6);
    for (Leaf& leaf : leaves) {
        const std::uint8_t first = answers().take();
        leaf = {static_cast<std::uint8_t>(first % 16), static_cast<std::uint8_t>(first / 16),
                answers().take()};
    }
    return leaves;
}

}  // namespace

smart_com<IVCDPropertyItems> makeTree(std::uint8_t choice) {
    choice %= 16;
    if (choice == noTree) {
        return {};
    }
    auto* items = make<CItems>();
    CItem* item = nullptr;
    CElement* element = nullptr;
    const std::vector<Leaf> leaves = choice >= describedTree ? takeLeaves() : knownLeaves(choice);
    for (const Leaf& leaf : leaves) {
        const Name& ofItem = itemName(leaf.item);
        const Name& ofElement = elementName(leaf.element);
        if (item == nullptr || !(item->id() == ofItem.id)) {
            item = make<CItem>(ofItem);
            items->add(item);
            element = nullptr;
        }
        if (element == nullptr || !(element->id() == ofElement.id)) {
            element = make<CElement>(ofElement);
            item->add(element);
        }
        element->add(makeInterface(leaf.kind));
    }
    items->AddRef();
    return smart_com<IVCDPropertyItems>(items);
}

}  // namespace any_library

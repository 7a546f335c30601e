// SPDX-License-Identifier: MIT
// The interfaces of an element: numbers, switches, buttons and lists of texts.
#include <array>
#include <limits>
#include <type_traits>

#include "capture/library/property_ids.h"
#include "fuzz/any_library/counted.h"
#include "fuzz/any_library/texts.h"

namespace any_library {

HRESULT write(Manner manner, std::wstring_view text, BSTR* place) {
    if (manner == Manner::longer) {
        text = wideText(longText);
    } else if (manner == Manner::strange) {
        text = wideText(strangeText(answers().detail()));
    }
    if (manner != Manner::null && manner != Manner::refused) {
        const std::size_t size = manner == Manner::empty ? 0 : text.size();
        *place = ::SysAllocStringLen(text.data(), static_cast<UINT>(size));
    }
    return resultOf(manner);
}

HRESULT count(Manner manner, std::size_t size, LONG* place) {
    switch (manner) {
        case Manner::refused:
        case Manner::null:
            break;
        case Manner::empty:
            *place = answers().detail() % 2 == 0 ? 0 : -1;
            break;
        case Manner::longer:
            *place = std::numeric_limits<LONG>::max();
            break;
        case Manner::strange:
            *place = static_cast<LONG>(size) + 1;
            break;
        default:
            *place = static_cast<LONG>(size);
            break;
    }
    return resultOf(manner);
}

namespace {

using namespace DShowLib;

constexpr std::array<LONG, 8> wholeNumbers = {
    0, 100, 50, -5, std::numeric_limits<LONG>::max(), std::numeric_limits<LONG>::min(), 1, -1};
constexpr std::array<double, 8> realNumbers = {0.0001,
                                               30.0,
                                               0.04,
                                               std::numeric_limits<double>::quiet_NaN(),
                                               std::numeric_limits<double>::infinity(),
                                               -1e308,
                                               5e-324,
                                               -0.0};

template <class Interface>
constexpr const GUID& interfaceIdOf() noexcept {
    if constexpr (std::is_same_v<Interface, IVCDRangeProperty>) {
        return IID_IVCDRangeProperty;
    } else if constexpr (std::is_same_v<Interface, IVCDAbsoluteValueProperty>) {
        return IID_IVCDAbsoluteValueProperty;
    } else if constexpr (std::is_same_v<Interface, IVCDSwitchProperty>) {
        return IID_IVCDSwitchProperty;
    } else if constexpr (std::is_same_v<Interface, IVCDButtonProperty>) {
        return IID_IVCDButtonProperty;
    } else {
        return IID_IVCDMapStringsProperty;
    }
}

template <class Interface>
class CInterface : public CObject<Interface> {
public:
    HRESULT STDMETHODCALLTYPE getInterfaceID(GUID* identifier) override {
        const Manner manner = this->begin();
        if (manner != Manner::refused && manner != Manner::null) {
            *identifier = manner == Manner::ordinary ? interfaceIdOf<Interface>() : otherId(12);
        }
        return resultOf(manner);
    }
};

// Minimum, value and maximum start at a place of the table that the world chooses.
template <class Interface, class Number>
class CNumber final : public CInterface<Interface> {
public:
    explicit CNumber(const std::array<Number, 8>& numbers) : m_numbers(numbers) {}

    HRESULT STDMETHODCALLTYPE getValue(Number* value) override {
        return tellAs(m_isSet ? m_value : at(2), value);
    }
    HRESULT STDMETHODCALLTYPE setValue(Number value) override {
        const Manner manner = this->begin();
        if (manner == Manner::ordinary) {
            m_value = value;
            m_isSet = true;
        }
        return resultOf(manner);
    }
    HRESULT STDMETHODCALLTYPE getRangeMin(Number* minimum) override {
        return tellAs(at(0), minimum);
    }
    HRESULT STDMETHODCALLTYPE getRangeMax(Number* maximum) override {
        return tellAs(at(1), maximum);
    }

private:
    Number at(std::size_t place) const {
        return m_numbers[(world().numbers + place) % m_numbers.size()];
    }
    HRESULT tellAs(Number number, Number* place) {
        const Manner manner = this->begin();
        if (manner == Manner::ordinary) {
            *place = number;
        } else if (manner == Manner::strange || manner == Manner::longer) {
            *place = m_numbers[answers().detail() % m_numbers.size()];
        }
        return resultOf(manner);
    }

    const std::array<Number, 8>& m_numbers;
    Number m_value{};
    bool m_isSet = false;
};

class CSwitch final : public CInterface<IVCDSwitchProperty> {
public:
    HRESULT STDMETHODCALLTYPE getSwitch(VARIANT_BOOL* state) override {
        const Manner manner = begin();
        if (manner == Manner::ordinary) {
            *state = m_state;
        } else if (manner == Manner::strange) {
            *state = 1;
        } else if (manner == Manner::longer) {
            *state = VARIANT_TRUE;
        }
        return resultOf(manner);
    }
    HRESULT STDMETHODCALLTYPE setSwitch(VARIANT_BOOL state) override {
        const Manner manner = begin();
        if (manner == Manner::ordinary) {
            m_state = state;
        }
        return resultOf(manner);
    }

private:
    VARIANT_BOOL m_state = (world().numbers & 0x80U) != 0 ? VARIANT_TRUE : VARIANT_FALSE;
};

class CButton final : public CInterface<IVCDButtonProperty> {
public:
    HRESULT STDMETHODCALLTYPE push() override { return resultOf(begin()); }
};

class CTexts final : public CObject<IVCDTexts> {
public:
    HRESULT STDMETHODCALLTYPE getCount(LONG* place) override { return count(begin(), 4, place); }
    HRESULT STDMETHODCALLTYPE getItem(LONG index, BSTR* text) override {
        const auto choice = static_cast<std::uint8_t>(world().numbers + index);
        return write(begin(), wideText(choice), text);
    }
};

class CMapStrings final : public CInterface<IVCDMapStringsProperty> {
public:
    HRESULT STDMETHODCALLTYPE getStrings(IVCDTexts** texts) override {
        return handOut(begin(), make<CTexts>(), texts);
    }
    HRESULT STDMETHODCALLTYPE getString(BSTR* text) override {
        return write(begin(), wideText(3), text);
    }
    HRESULT STDMETHODCALLTYPE setString(BSTR text) override {
        require(text != nullptr, "a chosen text is a text");
        return resultOf(begin());
    }
};

// A kind of interface that nobody knows.
struct IUnheardOf : public IVCDPropertyInterface {};
class CUnheardOf final : public CInterface<IUnheardOf> {
public:
    HRESULT STDMETHODCALLTYPE getInterfaceID(GUID* identifier) override {
        *identifier = otherId(13);
        return resultOf(begin());
    }
};

template <class Kind, class Object>
OfferedInterface entryOf(Object* object) {
    return {object, interfaceIdOf<Kind>(), static_cast<Kind*>(object)};
}

}  // namespace

OfferedInterface makeInterface(std::uint8_t kind) {
    switch (kind % 6) {
        case 0:
            return entryOf<IVCDRangeProperty>(make<CNumber<IVCDRangeProperty, LONG>>(wholeNumbers));
        case 1:
            return entryOf<IVCDAbsoluteValueProperty>(
                make<CNumber<IVCDAbsoluteValueProperty, double>>(realNumbers));
        case 2:
            return entryOf<IVCDSwitchProperty>(make<CSwitch>());
        case 3:
            return entryOf<IVCDButtonProperty>(make<CButton>());
        case 4:
            return entryOf<IVCDMapStringsProperty>(make<CMapStrings>());
        default:
            return {make<CUnheardOf>(), otherId(13), nullptr};
    }
}

}  // namespace any_library

// SPDX-License-Identifier: MIT
#include "virtual_cameras/properties/texts_object.h"

#include <utility>

#include "virtual_cameras/properties/com_object.h"
#include "virtual_cameras/properties/property_call.h"

namespace virtual_cameras {

namespace {

// Unlike the objects that a tree owns, this one deletes itself.
class CTextsObject final : public CComObject<DShowLib::IVCDTexts> {
public:
    CTextsObject(CPropertyTree& tree, std::vector<std::string> texts)
        : CComObject(tree), m_texts(std::move(texts)) {}

    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = CComObject::Release();
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE getCount(LONG* count) override {
        CPropertyCall call("IVCDTexts::getCount", *this);
        return call.read(tree(), count,
                         [&](CWorldLock&) { return static_cast<LONG>(m_texts.size()); });
    }
    HRESULT STDMETHODCALLTYPE getItem(LONG index, BSTR* text) override {
        CPropertyCall call("IVCDTexts::getItem", *this, static_cast<std::int32_t>(index));
        if (index < 1 || static_cast<std::size_t>(index) > m_texts.size()) {
            countMisuse("IVCDTexts::getItem with an index that is not there");
            return call.returnsCode(E_INVALIDARG);
        }
        return call.readText(tree(), text, [&](CWorldLock&) {
            return m_texts[static_cast<std::size_t>(index) - 1];
        });
    }

private:
    const std::vector<std::string> m_texts;
};

}  // namespace

DShowLib::IVCDTexts* makeTexts(CPropertyTree& tree, std::vector<std::string> texts) {
    return new CTextsObject(tree, std::move(texts));
}

}  // namespace virtual_cameras

// SPDX-License-Identifier: MIT
// The host's block of camera parameters, and the readings that a device starts with.
#pragma once

#include <cstdint>
#include <string_view>

#include "capture/capture_library.h"
#include "properties/property_tables.h"
#include "velmora/host_blocks.h"

// Works through well-known keys of the tables: what the device does not offer is
// skipped. Host thread. A failing result code of a setting is thrown as a 32-bit integer.
class CCameraParameters {
public:
    // Neither is owned.
    CCameraParameters(DShowLib::Grabber& grabber, const CPropertyTables& tables) noexcept
        : m_grabber(grabber), m_tables(tables) {}
    CCameraParameters(const CCameraParameters&) = delete;
    CCameraParameters& operator=(const CCameraParameters&) = delete;

    // Takes the first readings, once the tables are built. Switches the automatic
    // exposure off where the exposure's value has a switch.
    void readFirst();
    // As they were then: the exposure in the camera's own unit, the others as a fraction
    // of their range; -1.0 where the device has none.
    double exposure() const noexcept { return m_exposure; }
    double contrast() const noexcept { return m_contrast; }
    double brightness() const noexcept { return m_brightness; }

    // Applies the block in its fixed order. Refused values are dropped. The region is
    // kept within width x height pixels, and applied to nothing.
    void apply(const CameraParameterBlock& parameters, std::int32_t width, std::int32_t height);

    // Switches the trigger on again where the last block asked for it: a device that
    // comes back has forgotten it. A refusal is dropped.
    void restoreTrigger() const;

private:
    double readFraction(const DShowLib::smart_com<DShowLib::IVCDPropertyItems>& items,
                        std::string_view key, const GUID& itemId) const;
    double readExposure() const;
    void setRangeFraction(std::string_view key, double fraction) const;
    void setExposure(double exposure) const;
    void setTrigger(std::int32_t enable, std::int32_t polarity) const;
    void storeRegion(const CameraParameterBlock& parameters, std::int32_t width,
                     std::int32_t height) noexcept;

    DShowLib::Grabber& m_grabber;
    const CPropertyTables& m_tables;

    // Written by readFirst alone.
    double m_contrast = -1.0;
    double m_brightness = -1.0;
    double m_exposure = -1.0;

    // Written by apply alone.
    bool m_triggerEnabled = false;
    // Kept for the host; nothing applies it.
    std::int32_t m_roiLeft = 0;
    std::int32_t m_roiTop = 0;
    std::int32_t m_roiWidth = 0;
    std::int32_t m_roiHeight = 0;
};

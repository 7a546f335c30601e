// SPDX-License-Identifier: MIT
// All that the capture library promises the adapter: the operations that it may call.
#pragma once

#include <set>
#include <string>

#include "tests/support/library_log.h"

inline const std::set<std::string>& promisedCalls() {
    static const std::set<std::string> operations = {
        "InitLibrary", "ExitLibrary", "Grabber::Grabber", "Grabber::~Grabber",
        "Grabber::getAvailableVideoCaptureDevices_", "Grabber::openDev", "Grabber::closeDev",
        "Grabber::isDevValid", "Grabber::getDev", "Grabber::addListener",
        "Grabber::setOverlayBitmapPathPosition", "Grabber::getAcqSizeMaxX",
        "Grabber::getAcqSizeMaxY", "Grabber::startLive", "Grabber::stopLive", "Grabber::isLive",
        "Grabber::getLastError", "Grabber::setSinkType", "Grabber::getVideoFormat",
        "Grabber::setVideoFormat", "Grabber::getAvailableVideoFormats_", "Grabber::getVideoNorm",
        "Grabber::setVideoNorm", "Grabber::getAvailableVideoNorms_", "Grabber::getInputChannel",
        "Grabber::setInputChannel", "Grabber::getAvailableInputChannels_",
        "Grabber::isInputChannelAvailableWithCurDev", "Grabber::getFPS", "Grabber::setFPS",
        "Grabber::getAvailableFPS_", "Grabber::isFrameRateListAvailable",
        "Grabber::getAvailableVCDProperties", "Grabber::showVCDPropertyPage",
        "VideoCaptureDeviceItem::c_str", "VideoCaptureDeviceItem::getFriendlyName_",
        "VideoCaptureDeviceItem::getSerialNumber", "VideoFormatItem::c_str",
        "VideoFormatItem::toString_", "VideoNormItem::c_str", "AnalogChannelItem::c_str",
        "AnalogChannelItem::toString_", "Error::c_str", "FrameHandlerSink::create",
        "FrameHandlerSink::~FrameHandlerSink", "FrameHandlerSink::setSnapMode",
        "FrameHandlerSink::getOutputFrameType", "FrameHandlerSink::getMemBufferCollection",
        "MemBufferCollection::getBufferCount", "MemBufferCollection::operator[]", "MemBuffer::lock",
        "MemBuffer::unlock", "MemBuffer::getData", "MemBuffer::getSize",
        // The properties of a device.
        "IVCDPropertyItems::getCount", "IVCDPropertyItems::getItem", "IVCDPropertyItems::findItem",
        "IVCDPropertyItem::getName", "IVCDPropertyItem::getItemID", "IVCDPropertyItem::getCount",
        "IVCDPropertyItem::getItem", "IVCDPropertyItem::findElement",
        "IVCDPropertyElement::getName", "IVCDPropertyElement::getElementID",
        "IVCDPropertyElement::getCount", "IVCDPropertyElement::getItem",
        "IVCDPropertyElement::QueryInterface", "IVCDPropertyInterface::getInterfaceID",
        "IVCDRangeProperty::getInterfaceID", "IVCDRangeProperty::getValue",
        "IVCDRangeProperty::setValue", "IVCDRangeProperty::getRangeMin",
        "IVCDRangeProperty::getRangeMax", "IVCDAbsoluteValueProperty::getInterfaceID",
        "IVCDAbsoluteValueProperty::getValue", "IVCDAbsoluteValueProperty::setValue",
        "IVCDAbsoluteValueProperty::getRangeMin", "IVCDAbsoluteValueProperty::getRangeMax",
        "IVCDSwitchProperty::getInterfaceID", "IVCDSwitchProperty::getSwitch",
        "IVCDSwitchProperty::setSwitch", "IVCDButtonProperty::getInterfaceID",
        "IVCDButtonProperty::push", "IVCDMapStringsProperty::getInterfaceID",
        "IVCDMapStringsProperty::getStrings", "IVCDMapStringsProperty::getString",
        "IVCDMapStringsProperty::setString", "IVCDTexts::getCount", "IVCDTexts::getItem"};
    return operations;
}

// Calls in the log that are not among them. Notifications come from the library itself.
inline std::set<std::string> callsBeyondThosePromised() {
    std::set<std::string> others;
    for (const std::string& operation : library_log::operations()) {
        if (!promisedCalls().contains(operation) && !operation.starts_with("GrabberListener::")) {
            others.insert(operation);
        }
    }
    return others;
}

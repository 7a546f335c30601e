// SPDX-License-Identifier: MIT
#include "capture/library/library.h"

#include "virtual_cameras/calls/call.h"
#include "virtual_cameras/calls/world.h"
#include "virtual_cameras/rig/rigs.h"

namespace DShowLib {

using virtual_cameras::CCall;
using virtual_cameras::countMisuse;
using virtual_cameras::CWorldLock;
using virtual_cameras::NoCamera;

bool InitLibrary() {
    CCall call("InitLibrary", NoCamera());
    if (call.fails()) {
        return call.returns(false);
    }
    if (virtual_cameras::libraryIsReady()) {
        countMisuse("InitLibrary: the library is initialised already.");
        return call.returns(false);
    }
    {
        CWorldLock world;
        virtual_cameras::applyEnvironment(world);
    }
    virtual_cameras::setLibraryReady(true);
    return call.returns(true);
}

// More often than needed does no harm.
void ExitLibrary() {
    CCall call("ExitLibrary", NoCamera());
    if (!call.fails()) {
        if (virtual_cameras::libraryIsReady() && virtual_cameras::alive().grabbers.load() != 0) {
            countMisuse("ExitLibrary: there are grabbers still.");
        }
        virtual_cameras::setLibraryReady(false);
    }
    call.returns();
}

}  // namespace DShowLib

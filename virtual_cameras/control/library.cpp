// SPDX-License-Identifier: MIT
#include "capture/library/library.h"

#include "virtual_cameras/calls/library_call.h"
#include "virtual_cameras/calls/library_state.h"
#include "virtual_cameras/calls/misuses.h"
#include "virtual_cameras/control/choices.h"

namespace DShowLib {

using virtual_cameras::CLibraryCall;
using virtual_cameras::countMisuse;
using virtual_cameras::CWorldLock;
using virtual_cameras::NoCamera;

bool InitLibrary() {
    CLibraryCall call("InitLibrary", NoCamera());
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
    CLibraryCall call("ExitLibrary", NoCamera());
    if (!call.fails()) {
        if (virtual_cameras::libraryIsReady() && virtual_cameras::alive().grabbers.load() != 0) {
            countMisuse("ExitLibrary: there are grabbers still.");
        }
        virtual_cameras::setLibraryReady(false);
    }
    call.returns();
}

}  // namespace DShowLib

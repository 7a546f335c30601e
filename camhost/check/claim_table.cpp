// SPDX-License-Identifier: MIT
#include "camhost/check/claim_groups.h"

namespace camhost {

std::vector<ClaimGroup> allClaims() {
    return {
        recordClaims(),    imageClaims(),         beforeStartClaims(), liveClaims(),
        afterStopClaims(), noContextClaims(),     noMessageClaims(),   settingClaims(),
        choiceClaims(),    limitClaims(),         switchClaims(),      frameClaims(),
        pixelTypeClaims(), cycleClaims(),         cameraClaims(),      restoreClaims(),
        closingClaims(),   closedContextClaims(), endClaims(),         textClaims(),
    };
}

}  // namespace camhost

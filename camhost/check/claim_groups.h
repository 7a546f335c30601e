// SPDX-License-Identifier: MIT
// All claims about an adapter, by group; the order of the table is that of the check, since
// a channel that is closed does not come back. Portable.
#pragma once

#include <vector>

#include "camhost/check/claim.h"

namespace camhost {

ClaimGroup recordClaims();
ClaimGroup imageClaims();
ClaimGroup beforeStartClaims();
ClaimGroup liveClaims();
ClaimGroup afterStopClaims();
ClaimGroup noContextClaims();
ClaimGroup noMessageClaims();
ClaimGroup frameClaims();
ClaimGroup pixelTypeClaims();
ClaimGroup settingClaims();
ClaimGroup choiceClaims();
ClaimGroup limitClaims();
ClaimGroup switchClaims();
ClaimGroup cycleClaims();
ClaimGroup cameraClaims();
ClaimGroup restoreClaims();
ClaimGroup closingClaims();
ClaimGroup closedContextClaims();
ClaimGroup endClaims();
ClaimGroup textClaims();

std::vector<ClaimGroup> allClaims();

}  // namespace camhost

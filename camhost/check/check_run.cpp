// SPDX-License-Identifier: MIT
#include "camhost/check/check_run.h"

#include <algorithm>
#include <exception>

#include "camhost/base/failure.h"
#include "camhost/base/name_search.h"
#include "camhost/check/claim_groups.h"

namespace camhost {

namespace {

std::vector<Claim> wantedClaims(const ClaimGroup& group, const std::string& pattern) {
    std::vector<Claim> wanted;
    for (const Claim& claim : group.claims) {
        const std::string name = std::string(group.name) + ": " + claim.name;
        if (pattern.empty() || matchesPattern(name, pattern)) {
            wanted.push_back(claim);
        }
    }
    return wanted;
}

Finding tryClaim(CCheck& check, const ClaimGroup& group, const Claim& claim) {
    Finding finding{.group = group.name, .name = claim.name};
    const double begin = check.system().seconds();
    try {
        claim.test(check);
        finding.reasons = check.takeReasons();
    } catch (const NotSupported& missing) {
        finding.reasons = check.takeReasons();
        if (finding.reasons.empty()) {
            finding.outcome = Outcome::NotSupported;
            finding.reasons.push_back(missing.reason);
        }
    } catch (const Failure& failure) {
        finding.reasons = check.takeReasons();
        finding.reasons.push_back(failure.message);
    } catch (const std::exception& error) {
        finding.reasons = check.takeReasons();
        finding.reasons.emplace_back(error.what());
    }
    if (finding.outcome == Outcome::Holds && !finding.reasons.empty()) {
        finding.outcome = Outcome::Fails;
    }
    finding.seconds = check.system().seconds() - begin;
    return finding;
}

// What a group does around its claims is judged by those.
void tryStep(CCheck& check, void (*step)(CCheck&)) {
    try {
        step(check);
    } catch (const NotSupported&) {
    } catch (const Failure&) {
    } catch (const std::exception&) {
    }
    check.takeReasons();
}

}  // namespace

Counts countsOf(const std::vector<Finding>& findings) {
    const auto count = [&](Outcome outcome) {
        return static_cast<std::uint32_t>(
            std::count_if(findings.begin(), findings.end(),
                          [&](const Finding& each) { return each.outcome == outcome; }));
    };
    return {static_cast<std::uint32_t>(findings.size()), count(Outcome::Holds),
            count(Outcome::NotSupported), count(Outcome::Fails)};
}

std::vector<Finding> runClaims(CCheck& check, const std::string& pattern,
                               const RunWatchers& watchers) {
    std::vector<Finding> findings;
    for (const ClaimGroup& group : allClaims()) {
        const std::vector<Claim> claims = wantedClaims(group, pattern);
        if (claims.empty() || check.system().interrupted()) {
            continue;
        }
        watchers.group(group);
        tryStep(check, group.enter);
        for (const Claim& claim : claims) {
            if (check.system().interrupted()) {
                break;
            }
            watchers.claim(group, claim);
            findings.push_back(tryClaim(check, group, claim));
            watchers.finding(findings.back());
        }
        tryStep(check, group.leave);
    }
    return findings;
}

}  // namespace camhost

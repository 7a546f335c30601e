// SPDX-License-Identifier: MIT
// camhost check: whether an adapter keeps the contract of its record.
#include "camhost/base/files.h"
#include "camhost/base/texts.h"
#include "camhost/check/check_forms.h"
#include "camhost/check/check_run.h"
#include "camhost/commands/define_command.h"

namespace camhost {

namespace {

// Told while it runs, since an adapter may be wrong in a way that ends the program.
RunWatchers watchersFor(CReport& report) {
    return {[&report](const ClaimGroup& group) { report.line(std::string(group.name) + ":"); },
            [&report](const ClaimGroup& group, const Claim& claim) {
                report.flush();
                report.detail(std::string("trying ") + group.name + ": " + claim.name);
            },
            [&report](const Finding& finding) {
                for (const std::string& line : findingLines(finding)) {
                    report.line(line);
                }
            }};
}

}  // namespace

class CCheckCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"check", "whether the adapter keeps the contract of its record",
                "  camhost --adapter other.dll -c 1A2B check --junit check.xml\n"
                "  camhost check --only limits"};
    }

    bool needsCamera() const override { return false; }

    void takeOptions(COptionList& list) override {
        list.text("--only", m_only, "PATTERN", "a part of \"GROUP: TEST\", or all of it with * ?");
        list.text("--junit", m_junit, "FILE", "the results as a JUnit file, too");
    }

    ExitCode run(CommandContext& context) override {
        const CRecordChannel& camera = chooseCamera(context);
        context.report.setCamera(identityJson(camera));
        context.report.line("camhost check of " + context.system.adapterFile() + ", camera " +
                            camera.selector() + " \"" + printable(camera.name()) + "\"");
        CCheck check(context.system, context.cameras, camera);
        const auto findings = runClaims(check, m_only, watchersFor(context.report));
        if (findings.empty() && !context.system.interrupted()) {
            throw Failure{.exit = ExitCode::Usage,
                          .code = "usage",
                          .message = "no test matches \"" + m_only + "\""};
        }
        const Counts counts = countsOf(findings);
        context.report.line(totalLine(counts));
        context.report.setResult(findingsJson(findings));
        if (!m_junit.empty()) {
            writeTextFile(m_junit, junitText(context.system.adapterFile(), findings));
        }
        return judged(context, counts);
    }

private:
    // Not by the commands' common way, which calls an adapter that is yet to be checked.
    static const CRecordChannel& chooseCamera(const CommandContext& context) {
        const auto& all = context.cameras.all();
        return context.wantedCamera.empty() && !all.empty()
                   ? *all.front()
                   : context.cameras.select(context.wantedCamera);
    }

    static ExitCode judged(CommandContext& context, const Counts& counts) {
        if (context.system.interrupted()) {
            context.report.failure(
                {.exit = ExitCode::Interrupted,
                 .code = "interrupted",
                 .message = "interrupted after " + std::to_string(counts.total) + " tests"});
            return ExitCode::Interrupted;
        }
        if (counts.failing > 0) {
            context.report.failure({.code = "check",
                                    .message = std::to_string(counts.failing) + " of " +
                                               std::to_string(counts.total) + " tests failed"});
            return ExitCode::Refused;
        }
        return ExitCode::Done;
    }

    std::string m_only;
    std::string m_junit;
};

template std::unique_ptr<CCommand> makeCommand<CCheckCommand>();

}  // namespace camhost

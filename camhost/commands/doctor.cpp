// SPDX-License-Identifier: MIT
// camhost doctor: whether adapter, capture library and cameras are there and fit.
#include "camhost/doctor/doctor.h"
#include "camhost/commands/define_command.h"

namespace camhost {

class CDoctorCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"doctor", "whether the installation is right, and what mends it",
                "  camhost doctor\n"
                "  camhost --adapter other.dll doctor --json"};
    }

    bool needsAdapter() const override { return false; }

    ExitCode run(CommandContext& context) override {
        CReport& report = context.report;
        CDoctor doctor(context.system, context.wantedAdapter, context.dialogs,
                       [&report](const Diagnosis& diagnosis) {
                           for (const std::string& line : diagnosisLines(diagnosis)) {
                               report.line(line);
                           }
                           // What comes next may end the program.
                           report.flush();
                       });
        doctor.run();
        const auto& found = doctor.diagnoses();
        report.setResult(diagnosesJson(found.all()));
        const std::string count = std::to_string(found.all().size());
        if (found.countWrong() == 0) {
            report.line("all " + count + " checks are right");
            return ExitCode::Done;
        }
        report.failure(
            {.exit = ExitCode::NotFound,
             .code = "doctor",
             .message = std::to_string(found.countWrong()) + " of " + count + " checks failed"});
        return ExitCode::NotFound;
    }
};

template std::unique_ptr<CCommand> makeCommand<CDoctorCommand>();

}  // namespace camhost

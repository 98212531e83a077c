// Reports of a project, without windows.
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/choices.h"
#include "apps/cli/commands.h"
#include "reports/CRecExport.h"
#include "reports/collectreport.h"
#include "reports/word/generator.h"
#include "reports/word/wordreport.h"
#include "shell/language.h"

namespace {

struct ReportJob {
    std::string Target;  // path text
    CRecExport Project;
    std::optional<AssessmentChoice> Choice;  // nothing with its message shown
};

void Begin(const CommandContext& context, ReportJob& job) {
    const CArguments arguments(context.Words, {"--k", "--t", "--sections", "-o"}, {});
    arguments.ExpectPlaces(1, 1);
    const std::string& project = arguments.Places().front();
    job.Target = TargetArgument(context, arguments.Require("-o"), {project});
    OpenProject(job.Project, context, project);
    job.Choice = ChooseAssessment(context, arguments, job.Project, 2158);
}

}  // namespace

int RunDataset(const CommandContext& context) {
    ReportJob job;
    Begin(context, job);
    ReportLists lists;
    if (!job.Choice ||
        !CollectReport(job.Project, job.Choice->Project.CriterionName, SectionIds(job.Choice->Sections),
                       job.Choice->K, job.Choice->T, lists)) {
        return 1;
    }
    if (!job.Project.SaveReport(job.Target)) {
        throw std::runtime_error(ShownPath(job.Target) + " can't be written");
    }
    return 0;
}

int RunExportWord(const CommandContext& context) {
    ReportJob job;
    Begin(context, job);
    CReportRun run;
    if (!job.Choice) {
        return 1;
    }
    const std::string& criterionName = job.Choice->Project.CriterionName;
    const ReportOrder order{std::move(job.Choice->Sections), job.Choice->K, job.Choice->T, {}};
    if (!CollectWordReport(job.Project, criterionName, order, run)) {
        return 1;
    }
    if (run.PlanMissing) {
        context.Err << LoadMessage(MessageNoPlan) << '\n';
    }
    if (UsesGenerator(criterionName)) {
        return RunGenerator(job.Project, run, job.Target);
    }
    return WriteWordReportTo(job.Target, run, criterionName, {}).Complete ? 0 : 1;
}

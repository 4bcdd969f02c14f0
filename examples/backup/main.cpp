// backup: chosen files copied into a folder of today. A small program written on
// orvix.hpp; read selection.cpp and copying.cpp for how the classes are used.
#include <cstdio>
#include <filesystem>
#include <string>

#include "../shared/names.h"
#include "../shared/program.h"
#include "copying.h"
#include "options.h"
#include "selection.h"
#include "watching.h"

namespace {

using examples::Count;

void Warn(const std::string& text) { std::fprintf(stderr, "backup: %s\n", text.c_str()); }

std::string Files(std::size_t count) { return Count(count, "file", "files"); }

void ReportSelection(const backup::Selection& selection) {
  for (const std::string& name : selection.not_followed) Warn("not followed, a link to a directory: " + name);
  for (const std::string& reason : selection.left_out) Warn("left out: " + reason);
}

// The exit status when the result was printed with `printed`.
int StatusOf(int printed, std::size_t missing) { return missing > 0 ? examples::kFailed : printed; }

int ReportOutcome(const backup::Outcome& outcome, std::size_t chosen, std::size_t left_out, const std::string& folder) {
  // A folder without anything in it says nothing and takes a name.
  if (outcome.copied == 0) {
    std::error_code ignored;
    std::filesystem::remove(folder, ignored);
  }
  for (const std::string& name : outcome.failed) Warn("could not copy " + name);
  const std::string where = outcome.copied == 0 ? std::string() : " to " + folder;
  const int printed = examples::Print("backup", Files(outcome.copied) + " copied" + where + "\n");
  if (outcome.cancelled) {
    Warn("cancelled: " + Count(chosen - outcome.copied, "file was", "files were") + " not copied");
  }
  return StatusOf(printed, chosen - outcome.copied + left_out);
}

int Run(const backup::Options& options) {
  backup::CatchInterrupts();
  CoInitialize(nullptr);
  examples::Stages stages;
  const examples::Progress progress = [&](const std::string& stage) {
    if (backup::Interrupted()) throw backup::Cancelled();
    stages.Show(stage);
  };
  const backup::Selection selection = backup::Select(options, progress);
  stages.Clear();
  ReportSelection(selection);
  const std::size_t chosen = selection.files.size();
  const std::size_t left_out = selection.left_out.size();
  const std::string day = backup::Today();
  if (chosen == 0) return StatusOf(examples::Print("backup", "0 files chosen: nothing to copy\n"), left_out);
  if (options.dry_run) {
    const std::string folder = examples::NativeName(backup::FreeFolder(options.destination, day));
    const std::string summary = Files(chosen) + " would be copied to " + folder + "\n";
    return StatusOf(examples::Print("backup", backup::TableOf(selection) + summary), left_out);
  }
  progress("copying " + Files(chosen));
  const Orvix::Text folder = backup::MakeFolder(options.destination, day);
  const backup::Outcome outcome = backup::Copy(selection.files, folder, stages);
  stages.Clear();
  return ReportOutcome(outcome, chosen, left_out, examples::NativeName(folder));
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Copies the files of a directory into a folder named after today's date.", "backup");
  backup::Options options;
  backup::AddOptions(app, options);
  return examples::RunMain(app, argc, argv, [&] { return Run(options); });
}

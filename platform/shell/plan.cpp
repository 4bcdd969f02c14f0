// How sources and targets are paired. A target is either the new name of one
// item or a directory that takes items in under their own names.
#include "platform/shell/plan.h"

#include <sys/stat.h>

#include "platform/shell/results.h"
#include "platform/shell/sources.h"

namespace Orvix::Shell {

namespace {

std::string DirectoryPath(const Place& place) {
  if (place.name != ".") return place.Path();
  return place.directory;
}

void PutInto(const Source& source, const Target& target, Plan& plan) {
  // Something else is in the place of the directory.
  if (target.is_other) throw ShellError{kInvalidNames};
  for (const Place& match : source.matches) {
    plan.items.push_back({match, source.qualified, {DirectoryPath(target.place), match.name}, {}});
  }
}

void PutUnderName(const Source& source, const Target& target, Plan& plan) {
  plan.items.push_back({source.matches.front(), source.qualified, target.place, target.spelling});
}

bool IsDirectory(const Place& place) {
  struct stat facts;
  return lstat(place.Path().c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

void PairWithOneTarget(const std::vector<Source>& sources, const Target& target, Plan& plan) {
  const bool one = sources.size() == 1 && !sources.front().pattern;
  // "new\" takes a file in; for a directory it is the new name all the same.
  const bool into =
      target.is_directory || (target.says_directory && one && !IsDirectory(sources.front().matches.front()));
  for (const Source& source : sources) {
    if (one && !into) {
      PutUnderName(source, target, plan);
    } else {
      PutInto(source, target, plan);
    }
  }
}

void PairWithTargetList(const std::vector<Source>& sources, const std::vector<Text>& names, Plan& plan) {
  const bool each_its_own = sources.size() == 1 || sources.size() == names.size();
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const Source& source = sources[i];
    // A source beyond the list goes to the current directory.
    const Target target = i < names.size() ? FindTarget(names[i]) : CurrentDirectory();
    // A single one goes into a directory that is there; one of several joins it.
    const bool into = source.pattern || !each_its_own || (sources.size() == 1 && target.is_directory);
    if (!into) {
      PutUnderName(source, target, plan);
    } else {
      PutInto(source, target, plan);
    }
  }
}

Plan PlanRenaming(const Request& request) {
  if (request.sources.size() != 1 || request.targets.size() > 1) throw ShellError{kManyToOne};
  const Source source = FindSource(request.sources.front(), /*files_only=*/false);
  if (source.pattern) throw ShellError{kManyToOne};
  if (request.targets.empty()) throw ShellError{kOtherDirectory};
  const Target target = FindTarget(request.targets.front());
  Plan plan;
  PutUnderName(source, target, plan);
  return plan;
}

}  // namespace

Plan MakePlan(const Request& request) {
  if (request.operation == kRename) return PlanRenaming(request);
  std::vector<Source> sources;
  sources.reserve(request.sources.size());
  for (const Text& name : request.sources) sources.push_back(FindSource(name, request.Has(kFilesOnly)));
  Plan plan;
  if (sources.empty()) return plan;
  if (request.operation == kDelete) {
    for (const Source& source : sources) {
      for (const Place& match : source.matches) plan.items.push_back({match, source.qualified, {}, {}});
    }
  } else if (request.targets.empty()) {
    const Target here = CurrentDirectory();
    for (const Source& source : sources) PutInto(source, here, plan);
  } else if (request.Has(kManyTargets)) {
    PairWithTargetList(sources, request.targets, plan);
  } else {
    PairWithOneTarget(sources, FindTarget(request.targets.front()), plan);
  }
  return plan;
}

}  // namespace Orvix::Shell

// One item after the other; the first failure ends the operation.
#include "platform/shell/deletion.h"

#include "platform/shell/copy_tree.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/remove_tree.h"
#include "platform/shell/trash.h"

namespace Orvix::Shell {

void Delete(Operation& operation, const Plan& plan) {
  Progress& progress = operation.progress;
  const auto is_undoable = [&](const Item& item) { return operation.request.Has(kAllowUndo) && item.qualified; };
  std::string reached;
  Descriptor directory;
  const auto reach = [&](const Item& item) {
    if (directory.ok() && reached == item.source.directory) return;
    // The directory may have been in the list itself.
    directory = ReachDirectory(item.source.directory, Side::kSource);
    reached = item.source.directory;
  };
  if (progress.IsWatched()) {
    for (const Item& item : plan.items) {
      reach(item);
      if (is_undoable(item)) {
        progress.Expect(1, 0);
      } else {
        ExpectTree(progress, directory.get(), item.source.name.c_str(), /*with_bytes=*/false);
      }
    }
  }
  if (!plan.items.empty()) progress.Start(plan.items.front().source.Path());
  Trash trash(operation);
  for (const Item& item : plan.items) {
    std::string path = item.source.Path();
    if (!progress.Allows(kOxAskDelete, path, is_undoable(item))) continue;
    reach(item);
    if (is_undoable(item)) {
      trash.Put(directory.get(), item.source.directory, item.source.name);
    } else {
      RemoveTree(operation, directory.get(), item.source.name.c_str(), path);
    }
  }
}

}  // namespace Orvix::Shell

#include "options.h"

#include "../shared/command_line.h"

namespace backup {

void AddOptions(CLI::App& app, Options& options) {
  app.add_option("SOURCE", options.source)->required()->check(examples::Named("the source"));
  app.add_option("DESTINATION", options.destination)->required()->check(examples::Named("the destination"));
  app.add_option("--mask", options.mask, "only names that match, such as *.txt; any case")->check(examples::Mask());
  app.add_option("--from", options.from, "changed at or after it, such as 2002-11-01 or \"2002-11-01 10:00\"")
      ->type_name("DATE");
  app.add_option("--to", options.to, "changed at or before it; a date alone means its midnight")->type_name("DATE");
  app.add_flag("--subdirectories", options.subdirectories,
               "the files below SOURCE too; links to directories are not followed");
  app.add_flag("--hidden", options.hidden, "hidden files too (names that start with a point)");
  app.add_flag("--dry-run", options.dry_run, "only show what would be copied");
  app.footer(R"help(The copies go to DESTINATION/YYYY-MM-DD. When that is there already, a second run
makes "YYYY-MM-DD (2)" and so on: nothing is ever overwritten. A file whose name
differs only in case from one that is there may get a number. Ctrl-C stops between
files or within one; what is copied by then is whole.

Exit status: 0 done, 1 something was not copied, 2 wrong command line.)help");
}

}  // namespace backup

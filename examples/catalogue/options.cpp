#include "options.h"

#include "../shared/command_line.h"

namespace catalogue {

namespace {

std::string WrongOutput(const std::string& file) {
  return file.empty() || file.ends_with('/') ? "takes the name of a file, not \"" + file + "\"" : std::string();
}

}  // namespace

void AddOptions(CLI::App& app, Options& options) {
  app.add_option("DIRECTORY", options.directory)->required()->check(examples::Named("the directory"));
  CLI::Option* const mask = app.add_option("--mask", options.mask, "only names that match, such as *.txt; any case");
  mask->check(examples::Mask());
  app.add_option("--from", options.from, "changed at or after it, such as 2002-11-01 or \"2002-11-01 10:00\"")
      ->type_name("DATE");
  app.add_option("--to", options.to, "changed at or before it; a date alone means its midnight")->type_name("DATE");
  app.add_option_function<std::string>(
         "--sort",
         [&options](const std::string& word) { options.order = word == "date" ? Order::kDate : Order::kName; },
         "by name, capitals before small letters, or by date")
      ->check(CLI::IsMember({"name", "date"}));
  app.add_flag("--descending", options.descending, "the other way round; by name unless --sort says otherwise");
  app.add_flag("--directories", options.directories, "the subdirectories in place of the files")->excludes(mask);
  app.add_flag("--hidden", options.hidden, "hidden entries too (names that start with a point)");
  app.add_option("--output", options.output,
                 "the table to a file in UTF-8, which it replaces; missing directories are made")
      ->type_name("FILE")
      ->check(WrongOutput);
  app.footer("Exit status: 0 done, 1 the directory cannot be listed or the table not written,\n2 wrong command line.");
  app.final_callback([&options] {
    if (options.descending && options.order == Order::kAsListed) options.order = Order::kName;
  });
}

}  // namespace catalogue

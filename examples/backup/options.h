// What the backup is asked for.
#ifndef ORVIX_EXAMPLES_BACKUP_OPTIONS_H
#define ORVIX_EXAMPLES_BACKUP_OPTIONS_H

#include <CLI/CLI.hpp>
#include <string>

namespace backup {

struct Options {
  std::string source;       // native name, UTF-8
  std::string destination;  // the same
  std::string mask = "*";
  std::string from;  // a date; empty: no bound
  std::string to;
  bool subdirectories = false;
  bool hidden = false;
  bool dry_run = false;
};

void AddOptions(CLI::App& app, Options& options);

}  // namespace backup

#endif

// What the catalogue is asked for.
#ifndef ORVIX_EXAMPLES_CATALOGUE_OPTIONS_H
#define ORVIX_EXAMPLES_CATALOGUE_OPTIONS_H

#include <CLI/CLI.hpp>
#include <string>

namespace catalogue {

enum class Order { kAsListed, kName, kDate };

struct Options {
  std::string directory;  // native name, UTF-8
  std::string mask = "*";
  std::string from;  // a date; empty: no bound
  std::string to;
  std::string output;  // a file for the table, native; empty: standard output
  Order order = Order::kAsListed;
  bool descending = false;
  bool directories = false;
  bool hidden = false;
};

void AddOptions(CLI::App& app, Options& options);

}  // namespace catalogue

#endif

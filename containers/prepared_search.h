// What Find keeps between calls: the text that was searched for, its bytes and
// the pattern made of them. Changes to the content never touch it.
#ifndef ORVIX_CONTAINERS_PREPARED_SEARCH_H
#define ORVIX_CONTAINERS_PREPARED_SEARCH_H

#include "containers/class_string.h"
#include "frame/ansi_text.h"

namespace Orvix::component {

struct classString::PreparedSearch {
  explicit PreparedSearch(TextView search) : text(search), bytes(Narrowed(search)), pattern(bytes) {}
  PreparedSearch(PreparedSearch&&) = delete;

  Text text;
  std::string bytes;
  BytePattern pattern;  // borrows `bytes`
};

}  // namespace Orvix::component

#endif

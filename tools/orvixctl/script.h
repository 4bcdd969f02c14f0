// A script: one step a line, with named objects and results.
#ifndef ORVIX_TOOLS_ORVIXCTL_SCRIPT_H
#define ORVIX_TOOLS_ORVIXCTL_SCRIPT_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "caller.h"

namespace Orvix::ctl {

// The words of a line, split at blanks. '...' keeps everything between as it is,
// "..." takes JSON's escapes; what stands in either is literal. UsageError for one
// without an end.
[[nodiscard]] std::vector<Word> SplitLine(std::string_view line);

class Script {
 public:
  explicit Script(const Session& session) : session_(session) {}

  // Carries one line out and shows what it gave:
  //   # ...                         nothing
  //   NAME = new CLASS              an object
  //   NAME = [NAME.]MEMBER WORD...  a result that is kept instead of shown
  //   NAME = $NAME                  the same value under another name
  //   [NAME.]MEMBER[=WORD] WORD...  a call; without a name one of the global object
  //   print WORD...                 texts and $NAMEs with blanks between
  //   ! STEP                        a call that must fail; its error is shown
  // UsageError for a line that cannot be read, Error for a call that failed,
  // CommandError for a "!" that did not fail. `number` is shown in JSON.
  void Do(std::string_view line, int number);

  // A step that carried out nothing of what it was told has been seen.
  [[nodiscard]] bool AnyOperationFailed() const { return operation_failed_; }
  // Objects and values, for completion.
  [[nodiscard]] const std::map<std::string, Value>& variables() const { return variables_; }
  // The class of an object, null for anything else.
  [[nodiscard]] const Class* ClassOf(const std::string& name) const;

 private:
  const Value& Find(const std::string& name) const;
  void Resolve(Word* word) const;
  Outcome Carry(std::vector<Word> words);
  void Print(const std::vector<Word>& words, Json* json) const;

  const Session& session_;
  std::map<std::string, Value> variables_;
  Pointer<IDispatch> global_;
  bool operation_failed_ = false;
};

}  // namespace Orvix::ctl

#endif

// One call through IDispatch: a step with its words as values, and what came back.
#ifndef ORVIX_TOOLS_ORVIXCTL_CALLER_H
#define ORVIX_TOOLS_ORVIXCTL_CALLER_H

#include <string>
#include <vector>

#include "argument.h"
#include "call_words.h"
#include "commands.h"
#include "show.h"

namespace Orvix::ctl {

struct Output {
  std::string name;
  std::string variable;  // the script's, empty for none
  Value value;
};
struct Outcome {
  Value result;
  bool has_result = false;
  std::vector<Output> outputs;    // by-reference arguments that were written or asked for
  bool operation_failed = false;  // a file operation inside failed, and was told
};

struct Slot;

class Caller {
 public:
  Caller(const Session& session, const Class& its, Pointer<IDispatch> object)
      : reader_(session.library, session.component), its_(its), object_(std::move(object)) {}

  // UsageError for a step that the class does not carry; Error for the call's own
  // failure.
  [[nodiscard]] Outcome Do(const Step& step) const;

 private:
  Member Choose(const Step& step) const;
  std::vector<Slot> Place(const Step& step, const Member& member, std::size_t count) const;
  Value PutValue(const Step& step, Member& member, WORD& flags) const;
  Outcome Invoke(const Member& member, std::vector<Slot>& slots, Value* put_value, WORD flags) const;

  ArgumentReader reader_;
  const Class& its_;
  Pointer<IDispatch> object_;
};

// The result and the outputs, a line each.
void Show(const Session& session, const Outcome& outcome);
// The same as fields of `*step`.
void AddOutcome(const Outcome& outcome, const Library& library, Json* step);
[[nodiscard]] Json JsonOfError(const Error& error);
// "error 5 from classString: Invalid length"
[[nodiscard]] std::string Told(const Error& error);

}  // namespace Orvix::ctl

#endif

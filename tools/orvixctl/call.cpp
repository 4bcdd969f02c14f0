// call: one object, one step after the other.
#include <utility>

#include "call_words.h"
#include "caller.h"
#include "commands.h"
#include "show.h"

namespace Orvix::ctl {

int Call(const Session& session, const std::vector<std::string>& words) {
  const CallLine line = ParseCallLine(words);
  const Class* its = &RequireClass(session.library, line.class_name);
  Pointer<IDispatch> object = session.component.Create<IDispatch>(its->clsid);
  Pointer<IDispatch> last;
  Json calls = Json::array();
  int status = kExitDone;
  for (const Step& step : line.steps) {
    if (step.on_result) {
      const Class* next = last ? ClassOfObject(last, session.library) : nullptr;
      if (next == nullptr) {
        throw UsageError("\".." + step.member + "\" needs an object from the step before it, which gave none.");
      }
      its = next;
      object = std::exchange(last, nullptr);
    }
    try {
      const Outcome outcome = Caller(session, *its, object).Do(step);
      if (outcome.operation_failed) status = kExitFailed;
      last = outcome.has_result && outcome.result.Type() == VT_DISPATCH
                 ? Pointer<IDispatch>::Share(outcome.result.get().pdispVal)
                 : nullptr;
      if (session.json) {
        AddOutcome(outcome, session.library, &calls.emplace_back(Json{{"member", step.member}}));
      } else {
        Show(session, outcome);
      }
    } catch (const Error& error) {
      status = kExitFailed;
      calls.push_back({{"member", step.member}, {"error", JsonOfError(error)}});
      session.console.Flush();
      Console::Complain(its->name + "." + step.member + " failed: " + Told(error));
      break;
    }
  }
  if (session.json) {
    const Json document{{"class", RequireClass(session.library, line.class_name).name}, {"calls", calls}};
    session.console << Print(document) << "\n";
  }
  return status;
}

}  // namespace Orvix::ctl

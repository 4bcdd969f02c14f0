// Several threads at once, each with objects of its own: results and errors stay
// those of the thread.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 200;

// Members of every class, by slot and by name, and errors in between.
int FailuresOfOneThread(int number) {
  int failures = 0;
  const auto check = [&](bool right) { failures += right ? 0 : 1; };
  const Text own = FromUtf8("thread " + std::to_string(number));
  const BstrHandle name(u"C:\\data\\" + own + u".txt");
  const BstrHandle list(u"a," + own + u",c");
  const BstrHandle comma(u",");
  for (int round = 0; round < kRounds; ++round) {
    const auto orvix = MakeOrvix();
    const auto filename = MakeFilename();
    const auto buffer = Make<_classString>(CLSID_classString, IID__classString);
    const auto stack = Make<_classStack>(CLSID_classStack, IID__classStack);

    BstrHandle element;
    check(orvix->GetElement(list.get(), 2, comma.get(), element.Receive()) == S_OK && element.View() == own);
    BSTR text = BstrHandle(name.View()).Detach();
    check(filename->put_CompleteFilename(&text) == S_OK);
    SysFreeString(text);
    Variant extension;
    check(InvokeNamed(filename.get(), u"Extension", DISPATCH_PROPERTYGET, {}, extension.Receive()) == S_OK &&
          ViewOf(extension.get().bstrVal) == u"txt");

    Variant popped;
    check(stack->Pop(popped.Receive()) == MakeResult(0x800B01D0));
    check(TakeFailure() == Failure{u"classStack.Pop", u"Stack is empty"});
    BstrHandle missing;
    check(filename->GetFile(missing.Receive()) != S_OK);
    check(TakeFailure().source == u"classFile.GetFile");

    Variant value(TextView{own});
    check(InvokeNamed(buffer.get(), u"Append", DISPATCH_METHOD, {value.get()}) == S_OK);
    LONG random = -1;
    LONG upper = 9;
    LONG lower = 5;
    check(orvix->GetRandom(&upper, &lower, &random) == S_OK && random >= 5 && random <= 9);
  }
  return failures;
}

TEST(ThreadsTest, EachThreadHasItsOwnObjectsAndErrors) {
  std::vector<int> failures(kThreads, -1);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&failures, i] { failures[static_cast<std::size_t>(i)] = FailuresOfOneThread(i); });
    }
  }
  EXPECT_EQ(failures, std::vector<int>(kThreads, 0));
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

}  // namespace
}  // namespace Orvix::testing

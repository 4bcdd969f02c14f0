// Memory that is exhausted is error 7, in every error style. The allocation
// operators of this program are its own, so that a test can make them fail.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <limits>
#include <new>
#include <utility>

#include "frame/classes.h"
#include "tests/support/component.h"
#include "tests/support/recording_host.h"

namespace {

// So many allocations of this many bytes or more fail on this thread.
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
thread_local std::size_t failing_from = kNone;
thread_local int failures_left = 0;
thread_local int failed = 0;

void* Allocate(std::size_t bytes) noexcept {
  if (bytes >= failing_from && failures_left > 0) {
    --failures_left;
    ++failed;
    return nullptr;
  }
  return std::malloc(bytes == 0 ? 1 : bytes);
}

}  // namespace

void* operator new(std::size_t bytes) {
  if (void* const block = Allocate(bytes)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t bytes) { return operator new(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { return Allocate(bytes); }
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept { return Allocate(bytes); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

// The component's texts; the bytes count as those of any allocation.
BSTR SysAllocStringLen(const OLECHAR* text, UINT units) {
  const std::size_t bytes = std::size_t{units} * sizeof(OLECHAR);
  if (bytes >= failing_from && failures_left > 0) {
    --failures_left;
    ++failed;
    return nullptr;
  }
  return SysAllocStringByteLen(reinterpret_cast<const char*>(text), static_cast<UINT>(bytes));
}

namespace Orvix::testing {
namespace {

// The texts of these tests have 2000 units and more; those of an error are short.
class LongTextsFail {
 public:
  explicit LongTextsFail(int times = std::numeric_limits<int>::max(), std::size_t bytes = 2000) {
    failed = 0;
    failures_left = times;
    failing_from = bytes;
  }
  ~LongTextsFail() { failing_from = kNone; }
  LongTextsFail(LongTextsFail&&) = delete;
};

constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x800A0007);

class OutOfMemoryTest : public ::testing::Test {
 protected:
  HRESULT Assign(TextView name) {
    BSTR text = NewBstr(name);
    const HRESULT result = filename_->put_CompleteFilename(&text);
    SysFreeString(text);
    return result;
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
  ComPtr<_classFilename> filename_ = MakeFilename();
  const Text long_ = Text(2000, u'x');
};

TEST_F(OutOfMemoryTest, PassesThroughAsError7) {
  ASSERT_EQ(Assign(u"C:\\d\\" + long_ + u".txt"), S_OK);
  BSTR text = nullptr;
  EXCEPINFO exception{};
  HRESULT by_vtable = S_OK;
  HRESULT by_name = S_OK;
  {
    const LongTextsFail fail;
    by_vtable = filename_->get_ExtensionlessWithPath(&text);
    EXPECT_GT(failed, 0);
  }
  EXPECT_EQ(by_vtable, kOutOfMemory);
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(TakeFailure(), (Failure{u"Orvix.classFilename", u"Out of memory"}));
  InvokeNamed(filename_.get(), u"Exists", DISPATCH_METHOD, {});  // the first call by name makes the table of names
  {
    const LongTextsFail fail;
    by_name = InvokeNamed(filename_.get(), u"ExtensionlessWithPath", DISPATCH_PROPERTYGET, {}, nullptr, &exception);
  }
  EXPECT_EQ(by_name, DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, kOutOfMemory);
  EXPECT_EQ(ViewOf(exception.bstrDescription), u"Out of memory");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  EXPECT_EQ(OxErrorNumber(kOutOfMemory), 7);
  EXPECT_EQ(Returned([&](BSTR* result) { return filename_->get_Path(result); }), u"C:\\d\\");
}

// A count is written with its result or not at all.
TEST_F(OutOfMemoryTest, IsReportedAndFallsBack) {
  BSTR list = NewBstr(long_ + u" ");
  BSTR wanted = NewBstr(u"x");
  const BstrHandle comma(u",");
  const BstrHandle space(u" ");
  const ComPtr<_classString> buffer = component::NewObject<_classString>();
  ASSERT_EQ(buffer->put_Value(&list), S_OK);
  LONG count = 99;
  VARIANT_BOOL no = VARIANT_FALSE;
  const struct {
    TextView report;
    std::function<HRESULT(BSTR*)> call;
    TextView fallback;
    LONG count;  // 99: not written
  } members[] = {
      {u"AddItemToList", [&](BSTR* r) { return orvix_->AddElement(list, wanted, comma.get(), r); }, ViewOf(list), 99},
      {u"GetElement", [&](BSTR* r) { return orvix_->GetElement(list, 1, comma.get(), r); }, u"", 99},
      {u"DeleteElement", [&](BSTR* r) { return orvix_->DeleteElement(list, 2, space.get(), r); }, ViewOf(list), 99},
      {u"SuperRTrim", [&](BSTR* r) { return orvix_->SuperRTrim(list, &count, r); }, ViewOf(list), 0},
      {u"SuperLTrim", [&](BSTR* r) { return orvix_->SuperLTrim(list, &count, &no, r); }, ViewOf(list), 0},
      {u"replacing", [&](BSTR* r) { return orvix_->MyReplace(list, wanted, wanted, &no, &count, r); }, ViewOf(list),
       99},
      {u"GetElement", [&](BSTR* r) { return buffer->GetElement(1, comma.get(), r); }, u"", 99},
      {u"SuperLTrim2", [&](BSTR* r) { return orvix_->SuperLTrim2(list, r); }, ViewOf(list), 99},
  };
  for (const auto& member : members) {
    const auto call = [&](LongTextsFail&&) {
      BstrHandle result;
      count = 99;
      host_.boxes.clear();
      const HRESULT done = member.call(result.Receive());
      EXPECT_GT(failed, 0);
      return std::pair(done, Text(result.View()));
    };
    const auto name = ToUtf8(member.report);
    EXPECT_EQ(call(LongTextsFail(1)), std::pair(S_OK, Text(member.fallback))) << name;
    EXPECT_EQ(count, member.count) << name;
    ASSERT_EQ(host_.boxes.size(), 1u) << name;
    EXPECT_EQ(host_.boxes[0].text, Text(u"Error ").append(member.report).append(u".\r\nOut of memory"));
    // No room for the report's own text either: its fixed part is shown.
    EXPECT_EQ(call(LongTextsFail(2, 60)), std::pair(S_OK, Text(member.fallback))) << name;
    ASSERT_EQ(host_.boxes.size(), 1u) << name;
    EXPECT_EQ(host_.boxes[0].text, Text(u"Error ").append(member.report).append(u"."));
    if (member.fallback.empty()) continue;
    EXPECT_EQ(call(LongTextsFail()), std::pair(kOutOfMemory, Text())) << name;
    EXPECT_EQ(count, 99) << name;
    TakeFailure();
  }
  SysFreeString(list);
  SysFreeString(wanted);
}

TEST_F(OutOfMemoryTest, IsTranslatedWithItsDescription) {
  ASSERT_EQ(Assign(u"C:\\a\\b.c"), S_OK);
  BSTR name = NewBstr(u"C:\\" + long_);
  HRESULT result = S_OK;
  {
    const LongTextsFail fail;
    result = filename_->put_CompleteFilename(&name);
    EXPECT_GT(failed, 0);
  }
  SysFreeString(name);
  EXPECT_EQ(result, static_cast<HRESULT>(0x800AEA60));
  EXPECT_EQ(TakeFailure(), (Failure{u"classFilename.CompleteFilename", u"Out of memory"}));
  EXPECT_EQ(Returned([&](BSTR* text) { return filename_->get_CompleteFilename(text); }), u"C:\\a\\b.c");
}

TEST_F(OutOfMemoryTest, FallsBackSilently) {
  const BstrHandle name(u"C:\\" + long_);
  VARIANT_BOOL exists = VARIANT_TRUE;
  HRESULT result = E_FAIL;
  {
    const LongTextsFail fail;
    result = orvix_->FileExists(name.get(), &exists);
    EXPECT_GT(failed, 0);
  }
  EXPECT_EQ(result, S_OK);
  EXPECT_EQ(exists, VARIANT_FALSE);
  EXPECT_TRUE(host_.boxes.empty());
  EXPECT_EQ(TakeFailure(), (Failure{u"(none)", u"(none)"}));
}

}  // namespace
}  // namespace Orvix::testing

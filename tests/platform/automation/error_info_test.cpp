// Error info: what the object keeps, and the slot of each thread.
#include <gtest/gtest.h>

#include <thread>

#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

IErrorInfo* NewInfo(const OLECHAR* description) {
  ICreateErrorInfo* create = nullptr;
  EXPECT_EQ(CreateErrorInfo(&create), S_OK);
  EXPECT_EQ(create->SetDescription(const_cast<OLECHAR*>(description)), S_OK);
  void* info = nullptr;
  EXPECT_EQ(create->QueryInterface(IID_IErrorInfo, &info), S_OK);
  create->Release();
  return static_cast<IErrorInfo*>(info);
}

TEST(ErrorInfo, ObjectKeepsWhatWasSet) {
  ICreateErrorInfo* create = nullptr;
  ASSERT_EQ(CreateErrorInfo(&create), S_OK);
  EXPECT_EQ(create->SetGUID(IID_IDispatch), S_OK);
  EXPECT_EQ(create->SetSource(const_cast<OLECHAR*>(u"old")), S_OK);
  EXPECT_EQ(create->SetSource(const_cast<OLECHAR*>(u"source")), S_OK);
  EXPECT_EQ(create->SetHelpFile(const_cast<OLECHAR*>(u"help")), S_OK);
  EXPECT_EQ(create->SetHelpContext(77), S_OK);
  EXPECT_EQ(create->SetDescription(const_cast<OLECHAR*>(u"gone")), S_OK);
  EXPECT_EQ(create->SetDescription(nullptr), S_OK);
  void* found = nullptr;
  ASSERT_EQ(create->QueryInterface(IID_IErrorInfo, &found), S_OK);
  auto* info = static_cast<IErrorInfo*>(found);
  GUID guid{};
  BSTR source = nullptr;
  BSTR description = nullptr;
  BSTR help = nullptr;
  DWORD context = 0;
  EXPECT_EQ(info->GetGUID(&guid), S_OK);
  EXPECT_EQ(info->GetSource(&source), S_OK);
  EXPECT_EQ(info->GetDescription(&description), S_OK);
  EXPECT_EQ(info->GetHelpFile(&help), S_OK);
  EXPECT_EQ(info->GetHelpContext(&context), S_OK);
  EXPECT_EQ(guid, IID_IDispatch);
  EXPECT_EQ(ViewOf(source), u"source");
  EXPECT_EQ(description, nullptr);
  EXPECT_EQ(ViewOf(help), u"help");
  EXPECT_EQ(context, 77u);
  EXPECT_EQ(info->GetSource(nullptr), E_INVALIDARG);
  SysFreeString(source);
  SysFreeString(help);
  info->Release();
  EXPECT_EQ(create->Release(), 0u);
}

TEST(ErrorInfo, ObjectAnswersItsInterfacesAsOneObject) {
  IErrorInfo* info = NewInfo(u"x");
  for (const IID& iid : {IID_ICreateErrorInfo, IID_ISupportErrorInfo, IID_IErrorInfo}) {
    void* found = nullptr;
    ASSERT_EQ(info->QueryInterface(iid, &found), S_OK);
    void* unknown = nullptr;
    void* first_unknown = nullptr;
    static_cast<IUnknown*>(found)->QueryInterface(IID_IUnknown, &unknown);
    info->QueryInterface(IID_IUnknown, &first_unknown);
    EXPECT_EQ(unknown, first_unknown);
    for (int i = 0; i < 3; ++i) info->Release();
  }
  void* other = info;
  EXPECT_EQ(info->QueryInterface(IID_IDispatch, &other), E_NOINTERFACE);
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(info->Release(), 0u);
}

TEST(ErrorInfo, GettingEmptiesTheSlot) {
  IErrorInfo* info = NewInfo(u"x");
  EXPECT_EQ(SetErrorInfo(0, info), S_OK);
  EXPECT_EQ(SetErrorInfo(1, nullptr), E_INVALIDARG);
  IErrorInfo* found = nullptr;
  EXPECT_EQ(GetErrorInfo(1, &found), E_INVALIDARG);
  EXPECT_EQ(GetErrorInfo(0, nullptr), E_INVALIDARG);
  EXPECT_EQ(GetErrorInfo(0, &found), S_OK);
  EXPECT_EQ(found, info);
  EXPECT_EQ(found->Release(), 1u);
  found = info;
  EXPECT_EQ(GetErrorInfo(0, &found), S_FALSE);
  EXPECT_EQ(found, nullptr);
  info->Release();
}

TEST(ErrorInfo, ReplacingAndClearingReleaseTheOldOne) {
  IErrorInfo* first = NewInfo(u"first");
  IErrorInfo* second = NewInfo(u"second");
  SetErrorInfo(0, first);
  SetErrorInfo(0, first);
  SetErrorInfo(0, second);
  EXPECT_EQ(first->Release(), 0u);
  SetErrorInfo(0, nullptr);
  EXPECT_EQ(second->Release(), 0u);
}

TEST(ErrorInfo, EachThreadHasItsSlotAndReleasesItAtItsEnd) {
  IErrorInfo* info = NewInfo(u"x");
  std::thread([info] {
    SetErrorInfo(0, info);
    EXPECT_EQ(info->AddRef(), 3u);
    info->Release();
  }).join();
  IErrorInfo* found = nullptr;
  EXPECT_EQ(GetErrorInfo(0, &found), S_FALSE);
  EXPECT_EQ(info->Release(), 0u);
}

}  // namespace
}  // namespace Orvix::testing

// The filename object: every part of any name.
#include <iterator>

#include "attack/fuzz/fuzz.h"
#include "orvix/orvix.h"

using namespace Orvix;  // NOLINT(google-build-using-namespace)

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static _classFilename* const filename = [] {
    IClassFactory* factory = nullptr;
    void* made = nullptr;
    DllGetClassObject(CLSID_classFilename, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->CreateInstance(nullptr, IID__classFilename, &made);
    factory->Release();
    return static_cast<_classFilename*>(made);
  }();
  fuzz::Input input(data, size);
  VARIANT_BOOL wild = input.Byte() % 2 == 0 ? VARIANT_FALSE : VARIANT_TRUE;
  LONG most = input.Number<LONG>();
  BSTR name = NewBstr(input.Words());
  filename->put_AllowWildCards(&wild);
  const bool taken = filename->put_CompleteFilename(&name) == S_OK;
  SysFreeString(name);
  if (!taken) return 0;
  BSTR path = nullptr;
  BSTR whole = nullptr;
  filename->get_Path(&path);
  filename->get_CompleteFilename(&whole);
  if (ViewOf(path).size() > ViewOf(whole).size()) __builtin_trap();
  SysFreeString(path);
  SysFreeString(whole);
  for (auto part :
       {&_classFilename::get_Filename, &_classFilename::get_Extension, &_classFilename::get_ExtensionlessFilename,
        &_classFilename::get_ExtensionlessWithPath, &_classFilename::Drive, &_classFilename::GetDrivelessPath}) {
    BSTR text = nullptr;
    (filename->*part)(&text);
    SysFreeString(text);
  }
  BSTR shortened = nullptr;
  filename->ShortenedFilename(&most, &shortened);
  SysFreeString(shortened);
  return 0;
}

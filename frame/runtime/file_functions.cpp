// Facts about files, making directories, deleting files.
#include "frame/runtime/file_service.h"
#include "frame/runtime/runtime_error.h"

using namespace Orvix;

HRESULT ORVIX_CALL OxGetFileFacts(BSTR name, OxFileFacts* facts) {
  if (facts == nullptr) return E_POINTER;
  *facts = {};
  return AtRuntimeEdge([&] { *facts = NativeFiles().Facts(ViewOf(name)); });
}

HRESULT ORVIX_CALL OxMakeDirectory(BSTR name) {
  return AtRuntimeEdge([&] { NativeFiles().MakeDirectory(ViewOf(name)); });
}

HRESULT ORVIX_CALL OxDeleteFile(BSTR name) {
  return AtRuntimeEdge([&] { NativeFiles().DeleteFile(ViewOf(name)); });
}

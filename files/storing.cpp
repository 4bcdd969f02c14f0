// Storing a text or bytes in the file that a classFilename names, its directory
// made first.
#include "files/file_numbers.h"
#include "frame/class_orvix.h"
#include "frame/object_call.h"

namespace Orvix::component {

namespace {

template <class Member>
Text TextFrom(_classFilename* filename, Member member) {
  BstrHandle text;
  CallObject(filename, member, text.Receive());
  return Text(text.View());
}

// The bytes of an array, in index order; none while it is unallocated.
struct Bytes {
  const void* data = nullptr;
  LONG count = 0;
};
Bytes BytesOf(SAFEARRAY* array) {
  if (array == nullptr || array->cDims == 0) return {};
  if (array->cDims != 1) RaiseRuntimeError(kSubscriptOutOfRange);
  VARTYPE type = VT_EMPTY;
  CheckRuntime(SafeArrayGetVartype(array, &type));
  if (type != VT_UI1) RaiseRuntimeError(kTypeMismatch);
  if (array->rgsabound[0].cElements > 0x7FFFFFFF) RaiseRuntimeError(kOutOfMemory);
  return {array->pvData, static_cast<LONG>(array->rgsabound[0].cElements)};
}

}  // namespace

void classOrvix::StoreData(_classFilename* filename, TextVariable data) {
  CheckFreeFileNumber();
  MakeDir(TextFrom(filename, &_classFilename::get_Path));
  const SHORT number = OpenFree(TextFrom(filename, &_classFilename::get_CompleteFilename), kStore);
  CheckRuntime(OxPrintFile(number, data.get()));
  CheckRuntime(OxCloseFile(number));
}

void classOrvix::StoreBinaryData(_classFilename* filename, ArrayVariable<BYTE> data) {
  BytesOf(data.get());  // an array that cannot be stored must not empty the file
  CheckFreeFileNumber();
  MakeDir(TextFrom(filename, &_classFilename::get_Path));
  const SHORT number = OpenFree(TextFrom(filename, &_classFilename::get_CompleteFilename), kStore);
  CheckRuntime(OxPrintFile(number, nullptr));
  const Bytes bytes = BytesOf(data.get());
  if (bytes.count > 0) CheckRuntime(OxPutFile(number, bytes.data, bytes.count));
  CheckRuntime(OxCloseFile(number));
}

}  // namespace Orvix::component

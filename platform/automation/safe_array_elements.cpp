// Elements of arrays: reading and writing one, and ending, copying and
// re-dimensioning many. What fails midway releases what it had made.
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

namespace Orvix {
namespace {

char* AddressOf(const SAFEARRAY& array, std::size_t cell) {
  return static_cast<char*>(array.pvData) + cell * array.cbElements;
}

HRESULT CopyText(BSTR from, BSTR* to) {
  *to = nullptr;
  if (from == nullptr) return S_OK;
  *to = SysAllocStringByteLen(reinterpret_cast<const char*>(from), SysStringByteLen(from));
  return *to == nullptr ? E_OUTOFMEMORY : S_OK;
}

// Everything but the vector mark and what only describes lent memory.
constexpr USHORT kCopiedFeatures = static_cast<USHORT>(~(FADF_CREATEVECTOR | kLentMemory | FADF_FIXEDSIZE));

SAFEARRAY* CopyDescriptor(const SAFEARRAY& array) {
  SAFEARRAY* copy = NewDescriptor(array.cDims);
  if (copy == nullptr) return nullptr;
  copy->fFeatures = array.fFeatures & kCopiedFeatures;
  copy->cbElements = array.cbElements;
  std::memcpy(copy->rgsabound, array.rgsabound, array.cDims * sizeof(SAFEARRAYBOUND));
  if ((array.fFeatures & (FADF_RECORD | FADF_HAVEIID | FADF_HAVEVARTYPE)) != 0) {
    std::memcpy(reinterpret_cast<char*>(copy) - kHiddenBytes, reinterpret_cast<const char*>(&array) - kHiddenBytes,
                kHiddenBytes);
  }
  if (IRecordInfo* info = RecordInfoOf(*copy)) info->AddRef();
  return copy;
}

}  // namespace

void ReleaseElements(SAFEARRAY& array, std::size_t first, std::size_t count) noexcept {
  IRecordInfo* info = RecordInfoOf(array);
  for (std::size_t cell = first; cell < first + count; ++cell) {
    char* element = AddressOf(array, cell);
    if ((array.fFeatures & FADF_BSTR) != 0) {
      SysFreeString(*reinterpret_cast<BSTR*>(element));
    } else if ((array.fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) != 0) {
      // Away before it ends: its end may read this element.
      if (IUnknown* object = std::exchange(*reinterpret_cast<IUnknown**>(element), nullptr)) object->Release();
    } else if ((array.fFeatures & FADF_VARIANT) != 0) {
      VariantClear(reinterpret_cast<VARIANT*>(element));
    } else if (info != nullptr) {
      info->RecordClear(element);
    } else {
      break;
    }
  }
  if (count != 0) std::memset(AddressOf(array, first), 0, count * array.cbElements);
}

HRESULT InitElements(const SAFEARRAY& array, void* data, std::size_t first, std::size_t count) noexcept {
  IRecordInfo* info = RecordInfoOf(array);
  if (info == nullptr) return S_OK;
  for (std::size_t cell = first; cell < first + count; ++cell) {
    const HRESULT result = info->RecordInit(static_cast<char*>(data) + cell * array.cbElements);
    if (FAILED(result)) return result;
  }
  return S_OK;
}

HRESULT CopyElement(const SAFEARRAY& array, const void* from, void* to) noexcept {
  if ((array.fFeatures & FADF_BSTR) != 0) return CopyText(*static_cast<const BSTR*>(from), static_cast<BSTR*>(to));
  if ((array.fFeatures & FADF_VARIANT) != 0) {
    return Duplicate(*static_cast<const VARIANT*>(from), static_cast<VARIANT*>(to));
  }
  if (IRecordInfo* info = RecordInfoOf(array)) return info->RecordCopy(const_cast<void*>(from), to);
  std::memcpy(to, from, array.cbElements);
  if ((array.fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) != 0) {
    if (IUnknown* object = *static_cast<IUnknown**>(to)) object->AddRef();
  }
  return S_OK;
}

}  // namespace Orvix

using namespace Orvix;

// A deep copy, unlocked, owned by the caller; null for null. On failure null,
// and nothing of a half-made copy is left.
HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy) {
  if (copy == nullptr) return E_INVALIDARG;
  *copy = nullptr;
  if (array == nullptr) return S_OK;
  if (!SizeIsPossible(*array)) return E_INVALIDARG;
  SAFEARRAY* made = CopyDescriptor(*array);
  if (made == nullptr) return E_OUTOFMEMORY;
  // Counting a reference may run an object's code, which must not end the source.
  const bool calls_objects = (made->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT | FADF_RECORD)) != 0;
  if (calls_objects) {
    const HRESULT locked = SafeArrayLock(array);
    if (FAILED(locked)) {
      SafeArrayDestroy(made);
      return locked;
    }
  }
  const std::size_t cells = CellCount(*array);
  HRESULT result = S_OK;
  if (array->pvData != nullptr) {
    made->pvData = NewElements(cells * array->cbElements);
    result = made->pvData == nullptr ? E_OUTOFMEMORY : InitElements(*made, made->pvData, 0, cells);
  }
  const bool plain = (made->fFeatures & (FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT | FADF_RECORD)) == 0;
  if (plain && made->pvData != nullptr) {
    std::memcpy(made->pvData, array->pvData, cells * array->cbElements);
  } else if (made->pvData != nullptr) {
    for (std::size_t cell = 0; SUCCEEDED(result) && cell < cells; ++cell) {
      result = CopyElement(*made, AddressOf(*array, cell), AddressOf(*made, cell));
    }
  }
  if (calls_objects) SafeArrayUnlock(array);
  if (FAILED(result)) {
    SafeArrayDestroy(made);  // cells not reached are zero
    return result;
  }
  *copy = made;
  return S_OK;
}

// Gives the last dimension new bounds: elements that remain are kept, new ones
// zeroed, others released. DISP_E_ARRAYISLOCKED for a locked or fixed array; on
// failure the array is as before.
HRESULT SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* last) {
  if (array == nullptr || last == nullptr || array->cDims == 0) return E_INVALIDARG;
  if (array->cLocks != 0 || (array->fFeatures & (FADF_FIXEDSIZE | kLentMemory)) != 0) return DISP_E_ARRAYISLOCKED;
  if (last->cElements != 0 && std::int64_t{last->lLbound} + last->cElements - 1 > INT32_MAX) return E_INVALIDARG;
  const SAFEARRAYBOUND before = array->rgsabound[0];
  const std::size_t cells_before = CellCount(*array);
  array->rgsabound[0] = *last;
  const bool possible = SizeIsPossible(*array);
  const std::size_t cells = possible ? CellCount(*array) : 0;
  array->rgsabound[0] = before;
  if (!possible) return E_OUTOFMEMORY;

  // The last index varies slowest, so what remains is a beginning. It moves to
  // new memory before anything is released.
  void* data = NewElements(cells * array->cbElements);
  if (data == nullptr) return E_OUTOFMEMORY;
  const std::size_t kept = array->pvData == nullptr ? 0 : cells < cells_before ? cells : cells_before;
  const HRESULT result = InitElements(*array, data, kept, cells - kept);
  if (FAILED(result)) {
    std::free(data);
    return result;
  }
  array->cLocks = 1;  // against objects that reach this array when they end
  if (array->pvData != nullptr) {
    ReleaseElements(*array, kept, cells_before - kept);
    std::memcpy(data, array->pvData, kept * array->cbElements);
    std::free(array->pvData);
  }
  array->pvData = data;
  array->rgsabound[0] = *last;
  array->cLocks = 0;
  return S_OK;
}

// The address of an element, in the array's own memory. `indices` in natural
// order, one for each dimension; DISP_E_BADINDEX when one is out of bounds.
HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element) {
  if (array == nullptr || indices == nullptr || element == nullptr) return E_INVALIDARG;
  if (array->cDims == 0) return DISP_E_BADINDEX;
  const SAFEARRAYBOUND* bounds = array->rgsabound;
  std::size_t cell = 0;
  std::size_t stride = 1;
  for (UINT i = 0; i < array->cDims; ++i) {
    const SAFEARRAYBOUND& bound = bounds[array->cDims - 1 - i];
    const std::int64_t offset = std::int64_t{indices[i]} - bound.lLbound;
    if (offset < 0 || offset >= bound.cElements) return DISP_E_BADINDEX;
    cell += static_cast<std::size_t>(offset) * stride;
    stride *= bound.cElements;
  }
  if (array->pvData == nullptr) return E_INVALIDARG;
  *element = AddressOf(*array, cell);
  return S_OK;
}

// A copy of an element, owned by the caller, into `*value` (BSTR*, VARIANT*,
// IUnknown** ...), whose old content is ignored.
HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* value) {
  if (value == nullptr) return E_INVALIDARG;
  void* element = nullptr;
  const HRESULT result = SafeArrayPtrOfIndex(array, indices, &element);
  return FAILED(result) ? result : CopyElement(*array, element, value);
}

// Replaces an element by a copy of `value`: a text or an object itself, and for
// every other type its address. A null text or object is allowed.
HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* value) {
  void* element = nullptr;
  const HRESULT found = SafeArrayPtrOfIndex(array, indices, &element);
  if (FAILED(found)) return found;
  if ((array->fFeatures & FADF_BSTR) != 0) {
    BSTR copy = nullptr;
    const HRESULT result = CopyText(static_cast<BSTR>(value), &copy);
    if (FAILED(result)) return result;
    BSTR previous = *static_cast<BSTR*>(element);
    *static_cast<BSTR*>(element) = copy;
    SysFreeString(previous);
    return S_OK;
  }
  if ((array->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) != 0) {
    auto* object = static_cast<IUnknown*>(value);
    if (object != nullptr) object->AddRef();
    IUnknown* previous = *static_cast<IUnknown**>(element);
    *static_cast<IUnknown**>(element) = object;
    if (previous != nullptr) previous->Release();
    return S_OK;
  }
  if (value == nullptr) return E_INVALIDARG;
  if ((array->fFeatures & FADF_VARIANT) != 0) {
    return VariantCopy(static_cast<VARIANT*>(element), static_cast<const VARIANT*>(value));
  }
  return CopyElement(*array, value, element);
}

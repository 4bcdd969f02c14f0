// Arrays: making and ending them, bounds, types and locks. 16 hidden bytes
// before the descriptor tell the element type: the IID of interface arrays, the
// IRecordInfo (last 8 bytes) of records, else the type (last 4 bytes).
#include "platform/automation/safe_array.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "platform/automation/late_object.h"
#include "platform/automation/variant.h"

static_assert(sizeof(Orvix::WaitingEnd) <= Orvix::kHiddenBytes);

namespace Orvix {
namespace {

constexpr ULONG kMostLocks = 65535;
constexpr UINT kMostDimensions = 65535;

char* HiddenEnd(const SAFEARRAY& array) { return reinterpret_cast<char*>(const_cast<SAFEARRAY*>(&array)); }

USHORT FeaturesOf(VARTYPE type) {
  switch (type) {
    case VT_BSTR:
      return FADF_BSTR | FADF_HAVEVARTYPE;
    case VT_VARIANT:
      return FADF_VARIANT | FADF_HAVEVARTYPE;
    case VT_DISPATCH:
      return FADF_DISPATCH | FADF_HAVEIID;
    case VT_UNKNOWN:
      return FADF_UNKNOWN | FADF_HAVEIID;
    case VT_RECORD:
      return FADF_RECORD;
    default:
      return FADF_HAVEVARTYPE;
  }
}

// Writes element type and size; false when there can be no such array.
bool Describe(SAFEARRAY& array, VARTYPE type, void* extra) {
  array.fFeatures = FeaturesOf(type);
  array.cbElements = SizeOfType(type);
  if (type == VT_RECORD) {
    auto* info = static_cast<IRecordInfo*>(extra);
    if (info == nullptr || FAILED(info->GetSize(&array.cbElements)) || array.cbElements == 0) return false;
    info->AddRef();
    SetRecordInfo(array, info);
  } else if ((array.fFeatures & FADF_HAVEIID) != 0) {
    const IID& usual = type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
    std::memcpy(HiddenEnd(array) - sizeof(IID), extra != nullptr ? extra : &usual, sizeof(IID));
  } else {
    const std::uint32_t wide_type = type;
    std::memcpy(HiddenEnd(array) - sizeof wide_type, &wide_type, sizeof wide_type);
  }
  return array.cbElements != 0;
}

bool BoundIsPossible(const SAFEARRAYBOUND& bound) {
  return bound.cElements == 0 || std::int64_t{bound.lLbound} + bound.cElements - 1 <= std::numeric_limits<LONG>::max();
}

void Discard(SAFEARRAY* array) {
  if (IRecordInfo* info = RecordInfoOf(*array)) info->Release();
  FreeDescriptor(array);
}

// Ends the elements of an array that is locked, then the array.
void EndArray(SAFEARRAY* array) noexcept {
  if (array->pvData != nullptr) ReleaseElements(*array, 0, CellCount(*array));
  array->cLocks = 0;
  if (IRecordInfo* info = RecordInfoOf(*array)) {
    SetRecordInfo(*array, nullptr);
    info->Release();
  }
  if ((array->fFeatures & kLentMemory) != 0) return;
  std::free(array->pvData);
  FreeDescriptor(array);
}

// The bound of a dimension that counts from 1: stored last dimension first.
const SAFEARRAYBOUND& BoundOf(const SAFEARRAY& array, UINT dimension) {
  const SAFEARRAYBOUND* bounds = array.rgsabound;
  return bounds[array.cDims - dimension];
}

}  // namespace

SAFEARRAY* NewDescriptor(UINT dimensions) noexcept {
  const std::size_t bytes = offsetof(SAFEARRAY, rgsabound) + dimensions * sizeof(SAFEARRAYBOUND);
  char* block = static_cast<char*>(std::calloc(1, kHiddenBytes + std::max(bytes, sizeof(SAFEARRAY))));
  if (block == nullptr) return nullptr;
  auto* array = reinterpret_cast<SAFEARRAY*>(block + kHiddenBytes);
  array->cDims = static_cast<std::uint16_t>(dimensions);
  return array;
}

void FreeDescriptor(SAFEARRAY* array) noexcept { std::free(HiddenEnd(*array) - kHiddenBytes); }

std::size_t CellCount(const SAFEARRAY& array) noexcept {
  if (array.cDims == 0) return 0;
  std::size_t cells = 1;
  for (UINT dimension = 1; dimension <= array.cDims; ++dimension) cells *= BoundOf(array, dimension).cElements;
  return cells;
}

bool SizeIsPossible(const SAFEARRAY& array) noexcept {
  const std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
  std::uint64_t bytes = array.cbElements;
  bool empty = false;
  for (UINT dimension = 1; dimension <= array.cDims; ++dimension) {
    empty = empty || BoundOf(array, dimension).cElements == 0;
  }
  // A dimension without elements makes the others harmless, however large.
  for (UINT dimension = 1; !empty && dimension <= array.cDims; ++dimension) {
    bytes *= BoundOf(array, dimension).cElements;
    if (bytes > most) return false;
  }
  return true;
}

void* NewElements(std::size_t bytes) noexcept { return std::calloc(1, std::max<std::size_t>(bytes, 1)); }

IRecordInfo* RecordInfoOf(const SAFEARRAY& array) noexcept {
  if ((array.fFeatures & FADF_RECORD) == 0) return nullptr;
  IRecordInfo* info = nullptr;
  std::memcpy(&info, HiddenEnd(array) - sizeof info, sizeof info);
  return info;
}

void SetRecordInfo(SAFEARRAY& array, IRecordInfo* info) noexcept {
  std::memcpy(HiddenEnd(array) - sizeof info, &info, sizeof info);
}

}  // namespace Orvix

using namespace Orvix;

// A new array, owned by the caller, with zeroed elements: null for a type that
// has no arrays, no or more than 65535 dimensions, an upper bound beyond 32
// bits, more than 4 GB, or exhausted memory. `bounds` in natural order.
SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  return SafeArrayCreateEx(type, dimensions, bounds, nullptr);
}

// The same; `extra` is the IRecordInfo of VT_RECORD (required), or the IID of
// an array of interfaces.
SAFEARRAY* SafeArrayCreateEx(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds, void* extra) {
  if (bounds == nullptr || dimensions == 0 || dimensions > kMostDimensions) return nullptr;
  if (SizeOfType(type) == 0 && type != VT_RECORD) return nullptr;
  if (!std::all_of(bounds, bounds + dimensions, BoundIsPossible)) return nullptr;
  SAFEARRAY* array = NewDescriptor(dimensions);
  if (array == nullptr) return nullptr;
  std::reverse_copy(bounds, bounds + dimensions, array->rgsabound);
  if (!Describe(*array, type, extra) || !SizeIsPossible(*array)) {
    Discard(array);
    return nullptr;
  }
  array->pvData = NewElements(CellCount(*array) * array->cbElements);
  if (array->pvData == nullptr) {
    Discard(array);
    return nullptr;
  }
  if (FAILED(InitElements(*array, array->pvData, 0, CellCount(*array)))) {
    SafeArrayDestroy(array);
    return nullptr;
  }
  return array;
}

// One dimension from `lowerBound` on.
SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG elements) {
  SAFEARRAYBOUND bound{elements, lowerBound};
  SAFEARRAY* array = SafeArrayCreate(type, 1, &bound);
  if (array != nullptr) array->fFeatures |= FADF_CREATEVECTOR;
  return array;
}

// Ends the array and its elements. DISP_E_ARRAYISLOCKED while it is locked;
// null is no error.
HRESULT SafeArrayDestroy(SAFEARRAY* array) {
  if (array == nullptr) return S_OK;
  if (array->cLocks != 0) return DISP_E_ARRAYISLOCKED;
  // Locked while elements end: an object among them may reach this array.
  array->cLocks = 1;
  const bool nests = (array->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT)) != 0;
  if (nests && (array->fFeatures & kLentMemory) == 0) {
    // What such an array needs in order to wait lies where its type is told.
    auto* const entry = static_cast<WaitingEnd*>(static_cast<void*>(HiddenEnd(*array) - kHiddenBytes));
    EndsOfThisThread().Run(entry, [](WaitingEnd* waiting) noexcept {
      EndArray(reinterpret_cast<SAFEARRAY*>(reinterpret_cast<char*>(waiting) + kHiddenBytes));
    });
  } else {
    EndArray(array);
  }
  return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* array) { return array == nullptr ? 0 : array->cDims; }

UINT SafeArrayGetElemsize(SAFEARRAY* array) { return array == nullptr ? 0 : array->cbElements; }

// Bounds of a dimension that counts from 1; DISP_E_BADINDEX for any other. The
// upper bound of a dimension without elements is one below the lower.
HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  if (array == nullptr || bound == nullptr) return E_INVALIDARG;
  if (dimension == 0 || dimension > array->cDims) return DISP_E_BADINDEX;
  *bound = BoundOf(*array, dimension).lLbound;
  return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  if (array == nullptr || bound == nullptr) return E_INVALIDARG;
  if (dimension == 0 || dimension > array->cDims) return DISP_E_BADINDEX;
  const SAFEARRAYBOUND& found = BoundOf(*array, dimension);
  // Wraps for an empty dimension at the very lowest bound.
  *bound = static_cast<LONG>(static_cast<ULONG>(found.lLbound) + found.cElements - 1);
  return S_OK;
}

// The element type; E_INVALIDARG for a foreign descriptor that does not tell.
HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type) {
  if (array == nullptr || type == nullptr) return E_INVALIDARG;
  const USHORT features = array->fFeatures;
  if ((features & FADF_RECORD) != 0) {
    *type = VT_RECORD;
  } else if ((features & FADF_HAVEVARTYPE) != 0) {
    std::uint32_t wide_type = 0;
    std::memcpy(&wide_type, HiddenEnd(*array) - sizeof wide_type, sizeof wide_type);
    *type = static_cast<VARTYPE>(wide_type);
  } else if ((features & FADF_DISPATCH) != 0) {
    *type = VT_DISPATCH;
  } else if ((features & FADF_UNKNOWN) != 0) {
    *type = VT_UNKNOWN;
  } else if ((features & FADF_BSTR) != 0) {
    *type = VT_BSTR;
  } else if ((features & FADF_VARIANT) != 0) {
    *type = VT_VARIANT;
  } else {
    return E_INVALIDARG;
  }
  return S_OK;
}

// The record info of an array of records, with a reference for the caller;
// E_INVALIDARG for other arrays.
HRESULT SafeArrayGetRecordInfo(SAFEARRAY* array, IRecordInfo** info) {
  if (array == nullptr || info == nullptr || (array->fFeatures & FADF_RECORD) == 0) return E_INVALIDARG;
  *info = RecordInfoOf(*array);
  if (*info != nullptr) (*info)->AddRef();
  return S_OK;
}

// A locked array can be neither ended nor re-dimensioned. E_UNEXPECTED for the
// 65536th lock.
HRESULT SafeArrayLock(SAFEARRAY* array) {
  if (array == nullptr) return E_INVALIDARG;
  // Threads that read one array count their locks side by side.
  const std::atomic_ref<ULONG> locks(array->cLocks);
  ULONG count = locks;
  do {
    if (count >= kMostLocks) return E_UNEXPECTED;
  } while (!locks.compare_exchange_weak(count, count + 1));
  return S_OK;
}

// Takes one lock away; E_UNEXPECTED when there is none.
HRESULT SafeArrayUnlock(SAFEARRAY* array) {
  if (array == nullptr) return E_INVALIDARG;
  const std::atomic_ref<ULONG> locks(array->cLocks);
  ULONG count = locks;
  do {
    if (count == 0) return E_UNEXPECTED;
  } while (!locks.compare_exchange_weak(count, count - 1));
  return S_OK;
}

// Locks the array and gives its memory, first index varying fastest.
HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
  if (array == nullptr || data == nullptr) return E_INVALIDARG;
  const HRESULT result = SafeArrayLock(array);
  *data = SUCCEEDED(result) ? array->pvData : nullptr;
  return result;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) { return SafeArrayUnlock(array); }

// Program identifiers ("Orvix.classString") and the class identifiers that they
// stand for, as the registry has them.
#include <cstring>
#include <new>

#include "platform/automation/classes_root.h"
#include "platform/automation/guid_text.h"

namespace Orvix {

namespace {

std::optional<GUID> FindClass(const Text& name) {
  std::optional<Text> text = ReadClassesText(name + u"\\CLSID");
  if (!text) {
    // A name without version may stand for the current one.
    const std::optional<Text> current = ReadClassesText(name + u"\\CurVer");
    if (current && !current->empty()) text = ReadClassesText(*current + u"\\CLSID");
  }
  return text ? ParseGuid(*text) : std::nullopt;
}

}  // namespace

}  // namespace Orvix

// CO_E_CLASSSTRING, and zeros, for a name that is not registered.
HRESULT ORVIX_CALL CLSIDFromProgID(const OLECHAR* name, CLSID* clsid) {
  if (name == nullptr || clsid == nullptr) return E_INVALIDARG;
  *clsid = {};
  // An empty name would be the root's own keys, a backslash the keys of others.
  const Orvix::TextView view(name);
  if (view.empty() || view.find(u'\\') != Orvix::TextView::npos) return CO_E_CLASSSTRING;
  try {
    const std::optional<GUID> found = Orvix::FindClass(Orvix::Text(view));
    if (!found) return CO_E_CLASSSTRING;
    *clsid = *found;
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

// The caller frees the name with CoTaskMemFree. REGDB_E_CLASSNOTREG when the class
// has none.
HRESULT ORVIX_CALL ProgIDFromCLSID(REFCLSID clsid, OLECHAR** name) {
  if (name == nullptr) return E_INVALIDARG;
  *name = nullptr;
  try {
    const std::optional<Orvix::Text> found = Orvix::ReadClassesText(u"CLSID\\" + Orvix::GuidText(clsid) + u"\\ProgID");
    if (!found) return REGDB_E_CLASSNOTREG;
    const std::size_t bytes = (found->size() + 1) * sizeof(OLECHAR);
    auto* copy = static_cast<OLECHAR*>(CoTaskMemAlloc(bytes));
    if (copy == nullptr) return E_OUTOFMEMORY;
    std::memcpy(copy, found->c_str(), bytes);
    *name = copy;
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

// Random calls by name: members are found by the type library, arguments are of all
// kinds and numbers. In the second mode some of them are objects of the caller that
// misbehave in every way that does not break their own memory.
#include <filesystem>
#include <memory>
#include <set>

#include "attack/attack.h"
#include "orvix/host.h"
#include "orvix/orvix.h"

namespace Orvix::attack {

namespace {

constexpr int kCallsOfOneChild = 5000;

// Sorting an empty list does not return, and callers rely on it.
bool IsCalled(TextView name) { return name.find(u"Sort") == TextView::npos && name.find(u"Soft") == TextView::npos; }

struct Function {
  std::size_t object;
  DISPID id;
  WORD kind;
  int parameters;
  std::string name;
};

// Everything that one child works with.
struct World {
  explicit World(Trial& the_trial, bool hostile);
  ~World();
  void MakeObjects();
  void DropObjects();
  void CallOne(int depth);
  void SpoilVariable();
  VARIANT AnyValue();
  Text AnyText();

  Trial& trial;
  std::vector<IDispatch*> objects;  // of the component
  std::vector<std::unique_ptr<class Hostile>> hostile;
  std::vector<Function> functions;
  std::set<std::pair<std::size_t, DISPID>> left_out;  // object and identifier of what is not called
  std::vector<VARIANT*> variables;                    // of the calls under way
  Progress* progress = nullptr;
};

// An object of the caller. It lives as long as its world.
class Hostile final : public IDispatch {
 public:
  explicit Hostile(World& world) : world_(world) {}
  LONG references = 1;

  HRESULT QueryInterface(REFIID iid, void** object) override {
    Act();
    if (world_.trial.Chance(10)) {
      *object = this;  // left behind by a failure: nobody may release it
      return E_NOINTERFACE;
    }
    if (iid != IID_IUnknown && iid != IID_IDispatch) {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    ++references;
    return S_OK;
  }
  ULONG AddRef() override {
    ++references;
    Act();
    return static_cast<ULONG>(references);
  }
  ULONG Release() override {
    --references;
    Act();
    return static_cast<ULONG>(references);
  }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID* ids) override {
    Act();
    *ids = world_.trial.Chance(20) ? DISPID_UNKNOWN : 7;
    return *ids == 7 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO* exception, UINT*) override {
    Act();
    if (result != nullptr) *result = world_.AnyValue();
    if (!world_.trial.Chance(25)) return S_OK;
    constexpr HRESULT kCodes[] = {DISP_E_EXCEPTION, E_FAIL, DISP_E_MEMBERNOTFOUND, E_OUTOFMEMORY, 1, -1};
    const HRESULT code = kCodes[world_.trial.Pick(std::size(kCodes))];
    if (result != nullptr) VariantClear(result);
    if (code == DISP_E_EXCEPTION && exception != nullptr && world_.trial.Chance(70)) {
      exception->scode = static_cast<SCODE>(world_.trial.Pick(0x100000000ULL));
      exception->wCode = static_cast<WORD>(world_.trial.Pick(3));
      exception->bstrDescription = NewBstr(world_.AnyText());
    }
    return code;
  }

 private:
  // Changes another argument of a call under way, or calls a member itself.
  void Act() {
    if (busy_ > 2) return;
    ++busy_;
    if (world_.trial.Chance(20)) world_.SpoilVariable();
    if (world_.trial.Chance(5)) world_.CallOne(busy_);
    --busy_;
  }

  World& world_;
  inline static int busy_ = 0;
};

World::World(Trial& the_trial, bool has_hostile) : trial(the_trial) {
  // Nothing outside is opened, moved, shown or waited for.
  OxHost host{};
  host.size = sizeof host;
  host.MessageBox = [](void*, const OLECHAR*, LONG, const OLECHAR*) -> LONG { return 1; };
  host.SHFileOperationA = [](void*, void*) -> LONG { return 0; };
  host.ShellExecuteA = [](void*, LONG, const char*, const char*, const char*, const char*, LONG) -> LONG { return 2; };
  host.WinHelpA = [](void*, LONG, const char*, LONG, LONG) -> LONG { return 0; };
  host.HtmlHelpA = [](void*, LONG, const char*, LONG, LONG) -> LONG { return 0; };
  host.GetOpenFileNameA = [](void*, void*) -> LONG { return 1; };
  host.sndPlaySoundA = [](void*, const char*, LONG) -> LONG { return 0; };
  host.Sleep = [](void*, std::uint32_t) {};
  std::uint32_t (*const ticks)(void*) = [](void*) -> std::uint32_t {
    static std::uint32_t now = 0;
    return now += 0x10000000;  // waiting is soon over
  };
  host.GetTickCount = ticks;
  OxSetHost(&host);
  for (int i = 0; has_hostile && i < 4; ++i) hostile.push_back(std::make_unique<Hostile>(*this));
  MakeObjects();
  for (std::size_t i = 0; i < objects.size(); ++i) {
    ITypeInfo* info = nullptr;
    if (objects[i]->GetTypeInfo(0, 0, &info) != S_OK) continue;
    FUNCDESC* function = nullptr;
    for (UINT at = 0; info->GetFuncDesc(at, &function) == S_OK; ++at) {
      BSTR name = nullptr;
      info->GetDocumentation(function->memid, &name, nullptr, nullptr, nullptr);
      if (IsCalled(ViewOf(name))) {
        functions.push_back(
            {i, function->memid, static_cast<WORD>(function->invkind), function->cParams, ToUtf8(ViewOf(name))});
      } else {
        left_out.emplace(i, function->memid);
      }
      SysFreeString(name);
      info->ReleaseFuncDesc(function);
    }
    info->Release();
  }
}

World::~World() { DropObjects(); }

// A stack may hold itself, or another that holds it.
void World::DropObjects() {
  for (IDispatch* object : objects) {
    OLECHAR reset[] = u"Reset";
    OLECHAR* names[] = {reset};
    DISPID id = 0;
    DISPPARAMS none{};
    if (object->GetIDsOfNames(IID_NULL, names, 1, 0, &id) == S_OK) {
      object->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr);
    }
  }
  for (IDispatch* object : objects) object->Release();
  objects.clear();
}

void World::MakeObjects() {
  for (const CLSID* clsid : {&CLSID_classOrvix, &CLSID_classFilename, &CLSID_classDirectory, &CLSID_classString,
                             &CLSID_classStack, &CLSID_classStackObject, &CLSID_CSHFileOp}) {
    IClassFactory* factory = nullptr;
    IDispatch* object = nullptr;
    DllGetClassObject(*clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object));
    factory->Release();
    objects.push_back(object);
  }
}

Text World::AnyText() {
  static const Text kTexts[] = {u"",     u"a",    u",",         u"a,b,c",           Text(3, u'\0'),
                                u"12",   u"&HFF", u"1/2",       u"\u20AC\u0416",    u"x\\y",
                                u"..",   u"*.*",  u"Q:\\a.txt", Text(1, u'\xD800'), u"|*?",
                                u"a.b.", u"//s",  u"Text",      Text(600, u'x'),    Text(70000, u'y')};
  return kTexts[trial.Pick(std::size(kTexts))];
}

// Owned by the caller.
VARIANT World::AnyValue() {
  constexpr LONG kNumbers[] = {0, 1, 2, 3, 5, 16, 255, 256, 300, -1, -2, 70000, 2147483647, -2147483647 - 1};
  const LONG number = kNumbers[trial.Pick(std::size(kNumbers))];
  VARIANT value{};
  switch (trial.Pick(15)) {
    case 0:
      break;
    case 1:
      value.vt = VT_NULL;
      break;
    case 2:
      value.vt = VT_ERROR;
      value.scode = trial.Chance(50) ? DISP_E_PARAMNOTFOUND : E_FAIL;
      break;
    case 3:
      value.vt = VT_I2;
      value.iVal = static_cast<SHORT>(number);
      break;
    case 4:
      value.vt = VT_R8;
      value.dblVal = number * 1.5e5;
      break;
    case 5:
      value.vt = VT_BOOL;
      value.boolVal = static_cast<VARIANT_BOOL>(trial.Pick(3)) - 1;
      break;
    case 6:
      value.vt = VT_DATE;
      value.date = number;
      break;
    case 7:
    case 8: {
      value.vt = trial.Chance(20) ? VT_UNKNOWN : VT_DISPATCH;
      if (trial.Chance(20)) break;
      IDispatch* object = objects.empty() ? nullptr : objects[trial.Pick(objects.size())];
      if (!hostile.empty() && trial.Chance(60)) object = hostile[trial.Pick(hostile.size())].get();
      if (object != nullptr) object->AddRef();
      value.pdispVal = object;
      break;
    }
    case 9:
    case 10: {
      constexpr VARTYPE kTypes[] = {VT_VARIANT, VT_BSTR, VT_UI1, VT_R4};
      const VARTYPE type = kTypes[trial.Pick(std::size(kTypes))];
      SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(trial.Pick(3)), static_cast<LONG>(trial.Pick(3)) - 1}, {1, 0}};
      value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
      value.parray = trial.Chance(25) ? nullptr : SafeArrayCreate(type, trial.Chance(20) ? 2 : 1, bounds);
      if (type == VT_VARIANT && value.parray != nullptr && value.parray->cDims == 1 && bounds[0].cElements > 0) {
        static_cast<VARIANT*>(value.parray->pvData)[0] = AnyValue();
      }
      break;
    }
    case 11:
      value.vt = VT_I4;
      value.lVal = number;
      break;
    default:
      value.vt = VT_BSTR;
      value.bstrVal = trial.Chance(10) ? nullptr : NewBstr(AnyText());
  }
  return value;
}

// Gives a variable of a call under way another value, as a script does.
void World::SpoilVariable() {
  if (variables.empty()) return;
  VARIANT* const variable = variables[trial.Pick(variables.size())];
  VARIANT fresh = AnyValue();  // which may come back here
  VARIANT old = *variable;
  *variable = fresh;
  if (FAILED(VariantClear(&old))) {
    // It is locked: the script hears of it, and its variable stays.
    std::swap(old, *variable);
    VariantClear(&old);
  }
}

void World::CallOne(int depth) {
  if (functions.empty()) return;
  const Function& function = functions[trial.Pick(functions.size())];
  std::snprintf(progress->words, sizeof progress->words, "depth %d, %s", depth, function.name.c_str());
  const std::size_t parameters = static_cast<std::size_t>(function.parameters);
  const std::size_t count = trial.Chance(20) ? trial.Pick(parameters + 2) : parameters;
  const std::size_t kept = variables.size();
  std::vector<VARIANT> held(count);
  std::vector<VARIANT> values(count);
  for (std::size_t i = 0; i < count; ++i) {
    held[i] = AnyValue();
    values[i] = held[i];
    if (trial.Chance(25) && held[i].vt != VT_EMPTY && held[i].vt != VT_NULL) {
      values[i].vt = static_cast<VARTYPE>(held[i].vt | VT_BYREF);
      values[i].byref = &held[i].llVal;
    } else if (trial.Chance(40)) {
      values[i].vt = VT_BYREF | VT_VARIANT;
      values[i].pvarVal = &held[i];
      variables.push_back(&held[i]);
    }
  }
  const bool puts = (function.kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPID named[] = {puts ? DISPID_PROPERTYPUT : static_cast<DISPID>(trial.Pick(3))};
  const bool names_one = count > 0 && (puts || trial.Chance(10));
  DISPPARAMS params{values.data(), names_one ? named : nullptr, static_cast<UINT>(count), names_one ? 1U : 0U};
  const WORD kind = trial.Chance(2) ? static_cast<WORD>(trial.Pick(16)) : function.kind;
  const DISPID other = static_cast<DISPID>(trial.Pick(200)) - 50;
  const DISPID id = trial.Chance(1) && !left_out.contains({function.object, other}) ? other : function.id;
  VARIANT result{};
  EXCEPINFO exception{};
  UINT wrong = 0;
  IDispatch* const object = objects[function.object];
  object->AddRef();
  const HRESULT code =
      object->Invoke(id, IID_NULL, 0, kind, &params, trial.Chance(25) ? nullptr : &result, &exception, &wrong);
  object->Release();
  variables.resize(kept);
  if (code == DISP_E_EXCEPTION) {
    if (exception.scode >= 0) trial.Finding(function.name + " raised " + std::to_string(exception.scode));
  } else if (code != S_OK && (static_cast<ULONG>(code) & 0xFFFFFF00U) != 0x80020000U && code != E_INVALIDARG &&
             code != E_OUTOFMEMORY && code != E_UNEXPECTED) {
    trial.Finding(function.name + " gave the code " + std::to_string(code));
  }
  for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) SysFreeString(text);
  VariantClear(&result);
  for (VARIANT& value : held) VariantClear(&value);
}

void RunCalls(Trial& trial, bool hostile) {
  const Scratch scratch;
  for (std::uint64_t batch = 0; trial.TimeLeft(); ++batch) {
    const std::uint64_t seed = trial.seed() + batch;
    InChild(trial, 120, [&](Progress& progress) {
      std::filesystem::current_path(scratch.Native());
      Trial own(hostile ? "objects" : "calls", seed, 1);
      World world(own, hostile);
      world.progress = &progress;
      for (int call = 0; call < kCallsOfOneChild; ++call) {
        progress.step = static_cast<std::uint64_t>(call);
        if (call % 500 == 499 && !hostile) {
          world.DropObjects();
          world.MakeObjects();
        }
        world.CallOne(0);
      }
      std::snprintf(progress.words, sizeof progress.words, "the end");
      world.DropObjects();
      for (const auto& object : world.hostile) {
        if (object->references < 1) own.Finding("an object was released too often");
      }
      return own.findings() == 0 ? 0 : 3;
    });
    trial.runs += kCallsOfOneChild;
  }
}

}  // namespace

void Calls(Trial& trial) { RunCalls(trial, /*hostile=*/false); }
void Objects(Trial& trial) { RunCalls(trial, /*hostile=*/true); }

}  // namespace Orvix::attack
